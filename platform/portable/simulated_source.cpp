#include "platform/portable/simulated_source.h"

#include <cstring>
#include <utility>

namespace quillet {
namespace {

// Messages that sources post to the application's window, and the command of a dialog's button.
constexpr std::uint32_t kImageReady = 0xC1A0;
constexpr std::uint32_t kCloseRequested = 0xC1A1;
constexpr std::uint32_t kCommand = 0x0111;
constexpr std::uintptr_t kScanButton = 1;
constexpr std::uintptr_t kCancelButton = 2;

SourceAnswer SequenceError() {
  return SourceAnswer::Failure(TWCC_SEQERROR);
}
SourceAnswer BadProtocol() {
  return SourceAnswer::Failure(TWCC_BADPROTOCOL);
}

TW_FRAME WholeGlass() {
  return {{}, {}, GlassWidth(), GlassHeight()};
}

}  // namespace

SimulatedSource::SimulatedSource(const SourceModel& model, const SourceSetting& setting)
    : m_model(model),
      m_setting(setting),
      m_capabilities(model, setting.memory),
      m_frame(WholeGlass()) {}

SimulatedSource::~SimulatedSource() {
  LeaveEnabled();
}

SourceAnswer SimulatedSource::Perform(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message,
                                      void* data) {
  if (group == DG_CONTROL) return Control(argumentType, message, data);
  if (group != DG_IMAGE) return BadProtocol();
  if (argumentType == DAT_IMAGELAYOUT) return Layout(message, *static_cast<TW_IMAGELAYOUT*>(data));
  if (argumentType == DAT_IMAGENATIVEXFER && message == MSG_GET)
    return Transfer(*static_cast<GlobalHandle*>(data));
  return BadProtocol();
}

SourceAnswer SimulatedSource::Control(TW_UINT16 argumentType, TW_UINT16 message, void* data) {
  switch (argumentType) {
    case DAT_CAPABILITY: {
      const bool changes = message == MSG_SET || message == MSG_RESET;
      if (changes && m_state != State::Open) return SequenceError();
      return m_capabilities.Perform(message, *static_cast<TW_CAPABILITY*>(data));
    }
    case DAT_USERINTERFACE:
      if (message == MSG_ENABLEDS) return Enable(*static_cast<TW_USERINTERFACE*>(data));
      return message == MSG_DISABLEDS ? Disable() : BadProtocol();
    case DAT_EVENT:
      if (message != MSG_PROCESSEVENT) return BadProtocol();
      return ProcessEvent(*static_cast<TW_EVENT*>(data));
    case DAT_PENDINGXFERS:
      return PendingTransfers(message, *static_cast<TW_PENDINGXFERS*>(data));
    default:
      return BadProtocol();
  }
}

SourceAnswer SimulatedSource::Enable(const TW_USERINTERFACE& userInterface) {
  if (m_state != State::Open) return SequenceError();
  if (!m_setting.messages.IsWindow(userInterface.hParent))
    return SourceAnswer::Failure(TWCC_BADVALUE);
  const bool showsDialog = userInterface.ShowUI != 0 || m_model.insistsOnDialog;
  if (showsDialog) {
    m_dialog =
        m_setting.messages.CreateOwnedWindow(userInterface.hParent, [this](const MSG& message) {
          if (message.message == kCommand) OnCommand(message.wParam == kScanButton);
        });
    if (m_dialog == WindowHandle::None) return SourceAnswer::Failure(TWCC_LOWMEMORY);
  }
  m_parent = userInterface.hParent;
  m_scanning = !showsDialog;
  m_idleTask = m_setting.messages.AddIdleTask([this] { OnIdle(); });
  m_state = State::Enabled;
  const bool unasked = showsDialog && userInterface.ShowUI == 0;
  return {unasked ? TWRC_CHECKSTATUS : TWRC_SUCCESS, TWCC_SUCCESS};
}

SourceAnswer SimulatedSource::Disable() {
  if (m_state != State::Enabled) return SequenceError();
  LeaveEnabled();
  return {};
}

void SimulatedSource::LeaveEnabled() {
  if (!IsEnabled()) return;
  m_setting.messages.RemoveIdleTask(m_idleTask);
  m_setting.messages.DestroyWindow(std::exchange(m_dialog, WindowHandle::None));
  DropImage();
  m_pending = 0;
  m_scanning = false;
  m_state = State::Open;
}

// Scans what was started, or asks the user what to do with the dialog.
void SimulatedSource::OnIdle() {
  if (m_state != State::Enabled || m_pending != 0) return;
  if (std::exchange(m_scanning, false)) {
    m_pending = m_model.imagesPerScan;
    MakeImage();
    m_setting.messages.PostMessageA(m_parent, kImageReady, 0, 0);
  } else if (m_dialog != WindowHandle::None) {
    const bool scan = m_setting.user.PressesScan();
    m_setting.messages.PostMessageA(m_dialog, kCommand, scan ? kScanButton : kCancelButton, 0);
  }
}

void SimulatedSource::OnCommand(bool scan) {
  if (m_state != State::Enabled || m_pending != 0) return;
  if (scan)
    m_scanning = true;
  else
    m_setting.messages.PostMessageA(m_parent, kCloseRequested, 0, 0);
}

SourceAnswer SimulatedSource::ProcessEvent(TW_EVENT& event) {
  if (m_state < State::Enabled) return SequenceError();
  if (!event.pEvent) return SourceAnswer::Failure(TWCC_BADVALUE);
  MSG message;
  std::memcpy(&message, event.pEvent, sizeof message);
  event.TWMessage = MSG_NULL;
  if (message.hwnd == m_parent && message.message == kImageReady && m_pending != 0) {
    if (m_state == State::Enabled) m_state = State::Ready;
    event.TWMessage = MSG_XFERREADY;
  } else if (message.hwnd == m_parent && message.message == kCloseRequested) {
    event.TWMessage = MSG_CLOSEDSREQ;
  } else if (m_dialog == WindowHandle::None || message.hwnd != m_dialog) {
    return {TWRC_NOTDSEVENT, TWCC_SUCCESS};
  }
  return {TWRC_DSEVENT, TWCC_SUCCESS};
}

SourceAnswer SimulatedSource::PendingTransfers(TW_UINT16 message, TW_PENDINGXFERS& pending) {
  switch (message) {
    case MSG_GET:
      break;
    case MSG_ENDXFER:
      if (m_state < State::Ready) return SequenceError();
      DropImage();
      --m_pending;
      m_state = m_pending == 0 ? State::Enabled : State::Ready;
      break;
    case MSG_RESET:
      if (m_state != State::Ready) return SequenceError();
      DropImage();
      m_pending = 0;
      m_state = State::Enabled;
      break;
    default:
      return BadProtocol();
  }
  pending = {m_pending, 0};
  return {};
}

SourceAnswer SimulatedSource::Layout(TW_UINT16 message, TW_IMAGELAYOUT& layout) {
  const bool changes = message == MSG_SET || message == MSG_RESET;
  if (changes && m_state != State::Open) return SequenceError();
  SourceAnswer answer;
  switch (message) {
    case MSG_GET:
    case MSG_GETCURRENT:
      break;
    case MSG_GETDEFAULT:
      layout = {WholeGlass(), 1, 1, 1};
      return {};
    case MSG_SET:
      if (!m_model.uiControllable) return SourceAnswer::Failure(TWCC_BADPROTOCOL);
      answer = SetLayout(layout.Frame);
      break;
    case MSG_RESET:
      m_frame = WholeGlass();
      break;
    default:
      return BadProtocol();
  }
  if (answer.returnCode != TWRC_FAILURE && message != MSG_SET) layout = {m_frame, 1, 1, 1};
  return answer;
}

// A frame that reaches beyond the glass is cut, which the answer tells.
SourceAnswer SimulatedSource::SetLayout(TW_FRAME frame) {
  const auto lessThan = [](TW_FIX32 a, TW_FIX32 b) { return FromFix32(a) < FromFix32(b); };
  const TW_FRAME glass = WholeGlass();
  const bool isInside = !lessThan(frame.Left, {}) && !lessThan(frame.Top, {}) &&
                        lessThan(frame.Left, glass.Right) && lessThan(frame.Top, glass.Bottom);
  if (!isInside || !lessThan(frame.Left, frame.Right) || !lessThan(frame.Top, frame.Bottom))
    return SourceAnswer::Failure(TWCC_BADVALUE);
  bool isCut = false;
  const auto cut = [&](TW_FIX32 edge, TW_FIX32 most) {
    if (!lessThan(most, edge)) return edge;
    isCut = true;
    return most;
  };
  frame.Right = cut(frame.Right, glass.Right);
  frame.Bottom = cut(frame.Bottom, glass.Bottom);
  m_frame = frame;
  return {isCut ? TWRC_CHECKSTATUS : TWRC_SUCCESS, TWCC_SUCCESS};
}

SourceAnswer SimulatedSource::Transfer(GlobalHandle& image) {
  if (m_state != State::Ready) return SequenceError();
  if (m_image == GlobalHandle::None) MakeImage();
  if (m_image == GlobalHandle::None) return SourceAnswer::Failure(TWCC_LOWMEMORY);
  image = std::exchange(m_image, GlobalHandle::None);
  m_state = State::Transferring;
  return {TWRC_XFERDONE, TWCC_SUCCESS};
}

void SimulatedSource::MakeImage() {
  m_image = m_setting.glass.Scan(m_setting.memory,
                                 {m_frame, m_capabilities.PixelType(), m_capabilities.XResolution(),
                                  m_capabilities.YResolution()});
}

void SimulatedSource::DropImage() {
  if (m_image != GlobalHandle::None)
    m_setting.memory.GlobalFree(std::exchange(m_image, GlobalHandle::None));
}

}  // namespace quillet
