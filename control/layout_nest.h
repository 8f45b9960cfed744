#pragma once

#include <algorithm>
#include <vector>

#include "base/types.h"

namespace quillet {

// Where a layout starts from: the picture box's inside and the picture in pixels, the control
// surface in twips.
struct LayoutStart {
  Single boxWidth = 0, boxHeight = 0;
  Single controlWidth = 0, controlHeight = 0;
  Long pictureWidth = 0, pictureHeight = 0;
  bool scrollable = false;

  bool operator==(const LayoutStart&) const = default;
};

// The layouts that run inside one another, each started by the resize that the one around it
// caused.
//
// A picture that fits the whole area but not beside one scroll bar would make the two bars change
// places for ever. A layout that starts from where one of those around it started can only
// repeat it, so it settles the nest: until the outermost layout is done the box's resizes start no
// further layouts.
class LayoutNest {
 public:
  // The box's resizes start no layouts.
  bool IsSettled() const noexcept { return m_settled; }

  // One layout, from its start to its end.
  class Layout {
   public:
    explicit Layout(LayoutNest& nest) : m_nest(nest) { ++m_nest.m_depth; }
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;
    ~Layout() {
      if (m_remembered) m_nest.m_starts.pop_back();
      if (--m_nest.m_depth == 0) m_nest.m_settled = false;
    }

    void StartFrom(const LayoutStart& start) {
      auto& starts = m_nest.m_starts;
      if (std::find(starts.begin(), starts.end(), start) != starts.end()) {
        m_nest.m_settled = true;
      } else {
        starts.push_back(start);
        m_remembered = true;
      }
    }

   private:
    LayoutNest& m_nest;
    bool m_remembered = false;
  };

  // While it lives the box's resizes start no layouts.
  class Pause {
   public:
    explicit Pause(LayoutNest& nest) : m_nest(nest), m_before(nest.m_settled) {
      m_nest.m_settled = true;
    }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
    ~Pause() { m_nest.m_settled = m_before; }

   private:
    LayoutNest& m_nest;
    const bool m_before;
  };

 private:
  int m_depth = 0;
  bool m_settled = false;
  std::vector<LayoutStart> m_starts;
};

}  // namespace quillet
