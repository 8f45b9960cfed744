#pragma once

#include <utility>

namespace quillet {

// A counted reference to a COM object.
template <typename Interface>
class ComPtr {
 public:
  ComPtr() = default;
  // Takes a reference of its own.
  explicit ComPtr(Interface* object) noexcept : m_object(object) {
    if (m_object) m_object->AddRef();
  }
  ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_object) {}
  ComPtr(ComPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~ComPtr() {
    if (m_object) m_object->Release();
  }

  Interface* get() const noexcept { return m_object; }
  Interface* operator->() const noexcept { return m_object; }
  explicit operator bool() const noexcept { return m_object != nullptr; }
  // Gives the reference away, to a caller who releases it.
  [[nodiscard]] Interface* release() noexcept { return std::exchange(m_object, nullptr); }

  // Where a call stores a reference that it gives us. Releases the one held.
  Interface** Receive() noexcept {
    *this = ComPtr();
    return &m_object;
  }
  void** ReceiveVoid() noexcept { return reinterpret_cast<void**>(Receive()); }

 private:
  Interface* m_object = nullptr;
};

}  // namespace quillet
