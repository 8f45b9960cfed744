#include "platform/win32/win32_surface.h"

namespace quillet {

Win32Surface::Win32Surface(std::shared_ptr<WindowClasses> classes, int insideWidth,
                           int insideHeight)
    : m_link(*this),
      m_control(m_link, classes, insideWidth, insideHeight),
      m_vertical(m_link, m_control, classes, Orientation::Vertical),
      m_horizontal(m_link, m_control, classes, Orientation::Horizontal),
      m_box(m_link, m_control, classes) {}

}  // namespace quillet
