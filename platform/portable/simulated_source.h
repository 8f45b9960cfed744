#pragma once

#include "platform/portable/portable_memory.h"
#include "platform/portable/portable_messages.h"
#include "platform/portable/scanner_glass.h"
#include "platform/portable/simulated_user.h"
#include "platform/portable/source_capabilities.h"
#include "platform/portable/source_model.h"

namespace quillet {

// What simulated sources work with.
struct SourceSetting {
  PortableMemory& memory;
  PortableMessages& messages;
  SimulatedUser& user;
  const ScannerGlass& glass;
};

// One open data source, in the standard's states 4 to 7; an operation that does not fit the state
// is refused and changes nothing.
//
// It scans, and its user acts, when the thread's queue is empty, so the application paints
// meanwhile. It then posts a message to the application's window and recognises that message when
// the application hands it over as an event. An image is made before it is announced, and is the
// application's once transferred.
class SimulatedSource {
 public:
  SimulatedSource(const SourceModel& model, const SourceSetting& setting);
  SimulatedSource(const SimulatedSource&) = delete;
  SimulatedSource& operator=(const SimulatedSource&) = delete;
  ~SimulatedSource();

  const SourceModel& Model() const { return m_model; }
  // It can be closed only in state 4.
  bool IsEnabled() const { return m_state > State::Open; }

  // One operation that is addressed to the source. `data` is not null.
  SourceAnswer Perform(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message, void* data);

 private:
  enum class State { Open = 4, Enabled = 5, Ready = 6, Transferring = 7 };

  SourceAnswer Control(TW_UINT16 argumentType, TW_UINT16 message, void* data);
  SourceAnswer Enable(const TW_USERINTERFACE& userInterface);
  SourceAnswer Disable();
  SourceAnswer ProcessEvent(TW_EVENT& event);
  SourceAnswer PendingTransfers(TW_UINT16 message, TW_PENDINGXFERS& pending);
  SourceAnswer Layout(TW_UINT16 message, TW_IMAGELAYOUT& layout);
  SourceAnswer SetLayout(TW_FRAME frame);
  SourceAnswer Transfer(GlobalHandle& image);

  void OnIdle();
  void OnCommand(bool scan);
  void MakeImage();
  void DropImage();
  void LeaveEnabled();

  const SourceModel& m_model;
  SourceSetting m_setting;
  SourceCapabilities m_capabilities;
  TW_FRAME m_frame;
  State m_state = State::Open;

  // While enabled.
  WindowHandle m_parent = WindowHandle::None;
  WindowHandle m_dialog = WindowHandle::None;
  int m_idleTask = 0;
  bool m_scanning = false;
  GlobalHandle m_image = GlobalHandle::None;  // made and not transferred yet
  TW_UINT16 m_pending = 0;
};

}  // namespace quillet
