#pragma once

#include <algorithm>
#include <vector>

#include "base/types.h"

namespace quillet {

// Where a layout starts from: the picture box's inside in pixels, the control surface in twips.
struct LayoutStart {
  Single boxWidth = 0, boxHeight = 0;
  Single controlWidth = 0, controlHeight = 0;

  bool operator==(const LayoutStart&) const = default;
};

// The layouts that run inside one another, each started by the resize that the one around it
// caused.
//
// A picture that fits the whole area but not beside one scroll bar would make the two bars change
// places for ever. A layout that starts from where an earlier one of its nest started can only
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
      if (--m_nest.m_depth > 0) return;
      m_nest.m_settled = false;
      m_nest.m_starts.clear();
    }

    void Settle() noexcept { m_nest.m_settled = true; }

    void StartFrom(const LayoutStart& start) {
      auto& starts = m_nest.m_starts;
      if (std::find(starts.begin(), starts.end(), start) != starts.end())
        m_nest.m_settled = true;
      else
        starts.push_back(start);
    }

   private:
    LayoutNest& m_nest;
  };

 private:
  int m_depth = 0;
  bool m_settled = false;
  std::vector<LayoutStart> m_starts;
};

}  // namespace quillet
