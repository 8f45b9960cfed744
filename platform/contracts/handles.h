#pragma once

#include <cstdint>

namespace quillet {

// Handles are as wide as the platform's own. They are narrowed only where the control shows one to
// its host. Zero names nothing.
enum class BitmapHandle : std::uintptr_t { None = 0 };
enum class DCHandle : std::uintptr_t { None = 0 };
enum class WindowHandle : std::uintptr_t { None = 0 };
enum class GlobalHandle : std::uintptr_t { None = 0 };

}  // namespace quillet
