#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/types.h"
#include "platform/contracts/source_manager.h"
#include "tests/support/thread_queue.h"

namespace quillet {

// A packed bitmap: a 40-byte header, more that follows it.
std::vector<Byte> PackedBitmap(Long width, Long height, int depth, std::size_t following);

// A source manager with one source that answers as the test says, and otherwise as a source of good
// manners that has one image ready at once. It keeps no states: whatever is asked is answered.
class ScriptedSourceManager : public SourceManager {
 public:
  explicit ScriptedSourceManager(Stage& stage)
      : m_memory(stage.Contracts().memory), m_queue(QueueOf(stage)) {}
  ~ScriptedSourceManager() override;

  // An operation is named by its message and, where that is not enough, what it is about, as in
  // "SET ICAP_XRESOLUTION", "GET CAP_UICONTROLLABLE", "SET DAT_IMAGELAYOUT", "ENABLEDS".
  // It answers so and does nothing else:
  void Answer(const std::string& operation, TW_UINT16 returnCode);
  // It does that instead of what it usually does:
  void Do(const std::string& operation, std::function<TW_UINT16(void* pData)> action);
  // What the capability's container holds; an empty one: no container comes.
  void AnswerContainer(const std::string& capability, std::vector<Byte> container,
                       TW_UINT16 containerType = TWON_ONEVALUE);

  // The image that is transferred: a packed bitmap. A 2 x 1 picture of 24 bits to begin with.
  std::vector<Byte> image = PackedBitmap(2, 1, 24, 8);
  // What the thread's queue gets when the source is enabled: messages of that number, to the
  // parent window, of which the source claims kImageReady and kCloseRequest.
  static constexpr std::uint32_t kImageReady = 0xC001;
  static constexpr std::uint32_t kCloseRequest = 0xC002;
  static constexpr std::uint32_t kUnclaimed = 0xC003;
  std::vector<std::uint32_t> posted{kImageReady};

  // Since the last call, without the events that are not a program's own (PROCESSEVENT of a message
  // below 0xC000), separated by spaces; the values that a SET carries follow it:
  // "SET(ICAP_XRESOLUTION,7,0x4B)".
  std::string TakeCalls();

  // What was last seen of the application and its wishes.
  TW_IDENTITY application{};
  std::vector<TW_UINT32> idsAtOpen;
  TW_USERINTERFACE userInterface{};
  TW_IMAGELAYOUT layout{};
  TW_IDENTITY closedSource{};
  bool parentWasWindow = false;  // behind the pointer that OPENDSM passed
  bool wrongShape = false;       // a call with a destination that does not fit it

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

 private:
  TW_UINT16 Usual(TW_IDENTITY& origin, TW_UINT16 argumentType, TW_UINT16 message, void* pData);
  TW_UINT16 GetCapability(void* pData);
  GlobalHandle Block(const std::vector<Byte>& content);

  GlobalMemory& m_memory;
  std::unique_ptr<ThreadQueue> m_queue;
  std::map<std::string, std::function<TW_UINT16(void*)>> m_script;
  std::string m_calls;
};

}  // namespace quillet
