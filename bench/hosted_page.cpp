#include "bench/hosted_page.h"

namespace quillet::bench {

HostedPage::HostedPage(int dotsPerInch)
    : m_window(std::make_unique<PortableWindow>(m_platform, 800, 600)),
      m_control(TWAIN::Create(m_platform.Contracts(), m_window->ControlsSurface(), nullptr)) {
  m_control->InitProperties();
  PutPage(dotsPerInch);
}

void HostedPage::PutPage(int dotsPerInch) {
  PictureRef picture = dotsPerInch == 0 ? m_platform.Contracts().pictures.EmptyPicture()
                                        : PictureOfPage(m_platform.Contracts(), dotsPerInch);
  Variant value = ObjectRef(std::move(picture));
  Invoke(*m_control, NumberOf("Picture"), Access::PutRef, {&value, 1});
  m_window->Idle();
}

Long HostedPage::BitmapWidth() {
  return m_control->BitmapWidth();
}

Long HostedPage::BitmapHeight() {
  return m_control->BitmapHeight();
}

void HostedPage::ClickArrow(bool down) {
  m_window->ClickArrow(Bar::Vertical, down);
  m_window->Idle();
}

}  // namespace quillet::bench
