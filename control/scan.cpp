#include "control/TWAIN.h"

namespace quillet {

// The outcome is not reported: a scan of which nothing came shows the picture that was there.
void TWAIN::Scan(std::string& Title) {
  ResetZoom();
  m_Twain->Acquire(m_Picture, m_Resolution, m_ColorType, m_ShowProgress, m_ShowInterface, Title);
  ShowPicture(m_Picture);
}

void TWAIN::SelectSource(std::string& Title) {
  m_Twain->SelectDataSource(Title);
}

}  // namespace quillet
