#pragma once

#include <algorithm>
#include <atomic>
#include <utility>
#include <vector>

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"
#include "server/module.h"

namespace quillet {

// The system's enumerator interfaces over a list of items made beforehand. Traits say what an item
// is: `Held`, which keeps it, and `static Out Give(const Held&)`, a copy that the caller frees.
template <typename Interface, typename Out, typename Traits>
class Enumerator final : public Interface {
 public:
  using Items = std::vector<typename Traits::Held>;

  static HRESULT Create(Module& module, Items items, Interface** enumerator) {
    *enumerator = new Enumerator(module, std::move(items), 0);
    return S_OK;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    const bool known = iid == __uuidof(Interface) || iid == IID_IUnknown;
    *object = known ? static_cast<Interface*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP Next(ULONG count, Out* items, ULONG* given) override {
    if (!items || (!given && count != 1)) return E_POINTER;
    const auto left = static_cast<ULONG>(m_items.size() - m_next);
    const ULONG taken = std::min(count, left);
    for (ULONG i = 0; i < taken; ++i) items[i] = Traits::Give(m_items[m_next++]);
    if (given) *given = taken;
    return taken == count ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const auto left = static_cast<ULONG>(m_items.size() - m_next);
    m_next += std::min(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    m_next = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** copy) override {
    if (!copy) return E_POINTER;
    *copy = nullptr;
    try {
      *copy = new Enumerator(m_use.Owner(), m_items, m_next);
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  Enumerator(Module& module, Items items, std::size_t next)
      : m_use(module), m_items(std::move(items)), m_next(next) {}
  ~Enumerator() = default;

  ModuleUse m_use;
  Items m_items;
  std::size_t m_next;
  std::atomic<ULONG> m_references = 1;
};

}  // namespace quillet
