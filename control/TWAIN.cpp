#include "control/TWAIN.h"

#include <utility>

#include "base/runtime_error.h"
#include "control/frmAbout.h"

namespace quillet {

std::shared_ptr<TWAIN> TWAIN::Create(Platform& platform, std::shared_ptr<Surface> surface,
                                     std::shared_ptr<Site> site) {
  std::shared_ptr<TWAIN> control(new TWAIN(platform, std::move(surface), std::move(site)));
  control->UserControl_Initialize();
  control->m_door = std::make_unique<SurfaceDoor>(control);
  control->m_surface->Connect(control->m_door.get());
  return control;
}

TWAIN::TWAIN(Platform& platform, std::shared_ptr<Surface> surface, std::shared_ptr<Site> site)
    : m_platform(platform), m_surface(std::move(surface)), m_site(std::move(site)) {}

TWAIN::~TWAIN() {
  m_surface->Connect(nullptr);
  UserControl_Terminate();
}

void TWAIN::UserControl_Initialize() {
  ResetZoom();
  m_surface->VScroll1().PutVisible(false);
  m_surface->HScroll1().PutVisible(false);
  m_Picture = m_platform.pictures.EmptyPicture();
  m_DisplayPicture = m_platform.pictures.EmptyPicture();
  PIC24 = std::make_unique<cPicture24>(m_platform,
                                       [this](Integer percent) { PIC24_Progress(percent); });
  m_Twain = std::make_unique<cTwain>(m_platform);
  m_GDI = std::make_unique<cGDI>(m_platform);
  m_Dialog = std::make_unique<cDialog>(m_platform);
}

void TWAIN::UserControl_Terminate() {
  m_Picture.reset();
  m_DisplayPicture.reset();
  PIC24.reset();
  m_Twain.reset();
  m_GDI.reset();
  m_Dialog.reset();
}

void TWAIN::About() {
  frmAbout(m_platform).Show();
}

void TWAIN::NotifyChanged(std::string_view name) {
  if (m_site) m_site->PropertyChanged(name);
}

}  // namespace quillet
