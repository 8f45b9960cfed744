#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "host/hosted_control.h"
#include "platform/contracts/platform.h"

namespace quillet {

// What the control tells its host while a session lasts. Implementations do not throw.
class SessionEvents {
 public:
  virtual ~SessionEvents() = default;

  virtual void EventRaised(Event event, std::span<Variant> arguments) = 0;
  virtual void PropertyChanged(std::string_view name) = 0;
};

// One control in its window, with what the host keeps beside it. At the end the host first stops
// listening, then lets go of the kept objects, of the control, and of the window.
class Session {
 public:
  // The platform is the one that the control's pictures are of.
  Session(Platform& platform, std::unique_ptr<HostedControl> control, SessionEvents& events);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // std::runtime_error once the window is closed, as from everything that needs the control.
  AttendedWindow& Window() { return Hosted().Window(); }
  bool IsOpen() const { return m_control != nullptr; }
  // The host lets go of the control and closes the window, inside an event too.
  void Close();

  const BitmapServices& Bitmaps() const { return m_platform.bitmaps; }

  Variant Invoke(const Member& member, std::span<Variant> arguments);

  // Text as it was typed, made ready for the control: the names of enumeration values become their
  // numbers. Where a picture is expected, text names a file, `@x` the object kept under that name,
  // and nothing is no picture; errors as of PictureServices::LoadPicture, and std::runtime_error
  // when nothing is kept under that name yet.
  Variant Argument(ValueKind kind, const std::string& text);

  // The control's settings, from a property file before the control is used, and to one. Errors as
  // of PropertyFile and Control.
  void LoadProperties(const std::string& fileName);
  void SaveProperties(const std::string& fileName);

  // Keeps the object that the control's Picture gives now, in place of an earlier one.
  void KeepPicture(const std::string& name);

 private:
  class Listener;

  HostedControl& Hosted();
  ObjectRef PictureNamed(const std::string& text);

  Platform& m_platform;
  std::shared_ptr<Listener> m_listener;
  std::unique_ptr<HostedControl> m_control;  // none once it is let go of
  std::map<std::string, ObjectRef> m_kept;
};

}  // namespace quillet
