#include "base/runtime_error.h"
#include "embed/stage.h"
#include "embed/win32_dialog_user.h"
#include "embed/win32_window.h"
#include "platform/win32/win32_platform.h"

namespace quillet {
namespace {

class Win32Stage : public Stage {
 public:
  Platform& Contracts() override { return m_contracts; }
  CensusCounts Census() const override { return m_platform.Census(); }
  std::unique_ptr<ControlWindow> OpenWindow(int width, int height) override {
    return std::make_unique<Win32Window>(m_platform, m_user, width, height);
  }

 private:
  Win32Platform m_platform;
  Win32DialogUser m_user;
  AttendedDialogs m_dialogs{m_platform.Contracts().dialogs, m_user};
  Platform m_contracts{m_platform.Contracts().bitmaps, m_platform.Contracts().pictures,
                       m_platform.Contracts().memory,  m_platform.Contracts().messages,
                       m_platform.Contracts().sources, m_platform.Contracts().files,
                       m_platform.Contracts().codecs,  m_dialogs,
                       m_platform.Contracts().forms,   m_platform.Contracts().system};
};

}  // namespace

std::vector<KnownSource> KnownSources() {
  return {};
}

std::unique_ptr<Stage> MakeStage(const Machine& machine) {
  if (machine.noManager || !machine.source.empty() || !machine.page.empty())
    throw RunTimeError(ErrorNumber::ActionNotSupported, "scanners are real on this platform");
  return std::make_unique<Win32Stage>();
}

}  // namespace quillet
