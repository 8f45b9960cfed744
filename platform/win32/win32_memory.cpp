#include "platform/win32/win32_memory.h"

#include "platform/win32/sdk.h"

namespace quillet {
namespace {

HGLOBAL Native(GlobalHandle block) {
  return reinterpret_cast<HGLOBAL>(block);
}

}  // namespace

GlobalHandle Win32Memory::GlobalAlloc(std::size_t bytes) {
  const GlobalHandle block{reinterpret_cast<std::uintptr_t>(::GlobalAlloc(GHND, bytes))};
  if (block != GlobalHandle::None) m_live.insert(block);
  return block;
}

// The system locks any number that may be an address; asked for a size it looks closer.
void* Win32Memory::GlobalLock(GlobalHandle block) {
  return GlobalSize(block) == 0 ? nullptr : ::GlobalLock(Native(block));
}

void Win32Memory::GlobalUnlock(GlobalHandle block) {
  if (block != GlobalHandle::None) ::GlobalUnlock(Native(block));
}

std::size_t Win32Memory::GlobalSize(GlobalHandle block) const {
  return block == GlobalHandle::None ? 0 : ::GlobalSize(Native(block));
}

bool Win32Memory::GlobalFree(GlobalHandle block) {
  if (block == GlobalHandle::None || ::GlobalFree(Native(block)) != nullptr) return false;
  m_live.erase(block);
  return true;
}

}  // namespace quillet
