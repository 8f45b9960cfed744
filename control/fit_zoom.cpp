#include "base/rounding.h"
#include "control/TWAIN.h"

namespace quillet {

void TWAIN::Fit(FIT_TYPE iType) {
  m_Zoom = 100;
  m_FitType = iType;
  if (iType == twFITNONE) {
    ShowPicture(m_Picture);
    return;
  }
  PIC24->CopyFromPicture(m_Picture);
  const double viewWidth = m_surface->picTwain().ScaleWidth();
  const double viewHeight = m_surface->picTwain().ScaleHeight();
  switch (iType) {
    case twFITINTO:
      PIC24->ResizeToFit(ToLong(viewWidth), ToLong(viewHeight), true);
      break;
    case twFITWIDTH:
      // Without a picture there is no ratio, and nothing to show.
      if (PIC24->Width() > 0) {
        const double ratio = static_cast<double>(BitmapHeight()) / BitmapWidth();
        PIC24->Resize(ToLong(viewWidth), ToLong(ratio * viewWidth));
      }
      break;
    case twFITSTRECH:
      PIC24->Resize(ToLong(viewWidth), ToLong(viewHeight));
      break;
    default:
      break;  // an unknown mode shows a copy at the picture's own size
  }
  ShowPicture(PIC24->CopyToPicture());
  PIC24->CopyFromPicture(nullptr);
}

void TWAIN::Zoom(Integer iFactory) {
  if (!m_Picture) return;
  m_Zoom = iFactory;
  m_FitType = twFITNONE;
  // Single precision, but a double product: 110 per cent of 15 pixels is 16.5000003, thus 17.
  const auto factor = static_cast<Single>(iFactory * 0.01);
  const Long width = ToLong(BitmapWidth() * static_cast<double>(factor));
  const Long height = ToLong(BitmapHeight() * static_cast<double>(factor));
  PIC24->CopyFromPicture(m_Picture);
  PIC24->Resize(width, height);
  ShowPicture(PIC24->CopyToPicture());
  PIC24->CopyFromPicture(nullptr);
}

void TWAIN::ApplyZoom() {
  if (m_Zoom > 100)
    Zoom(m_Zoom);
  else if (m_FitType != twFITNONE)
    Fit(m_FitType);
  else
    m_DisplayPicture = m_Picture;
}

}  // namespace quillet
