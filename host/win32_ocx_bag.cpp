#include "host/win32_ocx_bag.h"

#include <utility>

#include "platform/win32/text.h"
#include "server/com_variant.h"

namespace quillet {

void OcxBag::Close() {
  m_bag = nullptr;
  if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
}

HRESULT OcxBag::Read(LPCOLESTR name, VARIANT* value, IErrorLog*) {
  if (!name || !value) return E_POINTER;
  if (!m_bag) return E_UNEXPECTED;
  try {
    const Variant found = m_bag->ReadProperty(Utf8(name), Omitted{});
    if (std::holds_alternative<Omitted>(found)) return E_INVALIDARG;
    ::VariantInit(value);
    ToVariant(found, *value);
    return S_OK;
  } catch (...) {
    m_failure = std::current_exception();
    return E_FAIL;
  }
}

HRESULT OcxBag::Write(LPCOLESTR name, VARIANT* value) {
  if (!name || !value) return E_POINTER;
  if (!m_bag) return E_UNEXPECTED;
  try {
    const bool isObject = value->vt == VT_DISPATCH || value->vt == VT_UNKNOWN;
    const ValueKind kind = isObject ? ValueKind::Picture : ValueKind::None;
    // The control leaves out its defaults itself; no value is none.
    m_bag->WriteProperty(Utf8(name), FromVariant(*value, kind, m_pictures), {});
    return S_OK;
  } catch (...) {
    m_failure = std::current_exception();
    return E_FAIL;
  }
}

}  // namespace quillet
