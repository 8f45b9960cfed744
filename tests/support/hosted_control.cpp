#include "tests/support/hosted_control.h"

#include <sstream>
#include <utility>

namespace quillet {

// Site and sink in one.
class HostedControl::Recorder : public EventSink, public Site {
 public:
  explicit Recorder(HostedControl& owner) : m_owner(owner), m_log(owner.m_log) {}

  void Invoke(Event event, std::span<Variant> arguments) override {
    std::string line = Describe(event).name;
    for (const Variant& argument : arguments) line.append(" ").append(VariantToString(argument));
    m_log->push_back(line);
    if (m_owner.onEvent) m_owner.onEvent(event, arguments);
  }

  void PropertyChanged(std::string_view name) override {
    m_log->push_back(std::string("notify ").append(name));
  }

 private:
  HostedControl& m_owner;
  std::shared_ptr<std::vector<std::string>> m_log;
};

HostedControl::HostedControl(int width, int height, const Replace& replace,
                             std::unique_ptr<Stage> stageToUse)
    : stage(std::move(stageToUse)),
      contracts(replace ? replace(platform.Contracts()) : platform.Contracts()),
      window(platform.OpenWindow(width, height)) {
  const auto recorder = std::make_shared<Recorder>(*this);
  control = TWAIN::Create(contracts, window->ControlsSurface(), recorder);
  control->InitProperties();
  control->Connect(recorder);
  window->Idle();
  TakeLog();
}

Variant HostedControl::Get(const char* name) {
  return Invoke(*control, NumberOf(name), Access::Get, {});
}

PictureRef HostedControl::Picture() {
  return std::dynamic_pointer_cast<quillet::Picture>(VariantToObject(Get("Picture")));
}

void HostedControl::Put(const char* name, Variant value) {
  Invoke(*control, NumberOf(name), Access::Put, {&value, 1});
}

void HostedControl::PutPicture(const PictureRef& picture) {
  Variant value = ObjectRef(picture);
  Invoke(*control, NumberOf("Picture"), Access::PutRef, {&value, 1});
}

void HostedControl::Assign(Long width, Long height) {
  PutPicture(PictureOf(platform.Contracts(), width, height, Gradient));
}

std::string HostedControl::Layout() const {
  const auto surface = window->ControlsSurface();
  std::ostringstream text;
  text << surface->picTwain().ScaleWidth() << "x" << surface->picTwain().ScaleHeight();
  if (surface->HScroll1().Visible() || surface->VScroll1().Visible()) text << " ";
  if (surface->HScroll1().Visible()) text << "h";
  if (surface->VScroll1().Visible()) text << "v";
  return text.str();
}

PixelRows24 HostedControl::Screen() {
  const Snapshot snapshot = window->Capture();
  const auto surface = window->ControlsSurface();
  const int border = surface->UserControl().BorderStyle() == 1 ? 2 : 0;
  return RowsOf(static_cast<Long>(surface->picTwain().ScaleWidth()),
                static_cast<Long>(surface->picTwain().ScaleHeight()), [&](Long x, Long y) {
                  const auto at =
                      static_cast<std::size_t>(3 * ((y + border) * snapshot.width + x + border));
                  return Pixel{snapshot.rgb[at + 2], snapshot.rgb[at + 1], snapshot.rgb[at]};
                });
}

std::vector<std::string> HostedControl::TakeLog() {
  return std::exchange(*m_log, {});
}

}  // namespace quillet
