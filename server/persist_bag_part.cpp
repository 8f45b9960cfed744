#include "server/persist_bag_part.h"

#include "platform/contracts/property_bag.h"
#include "platform/win32/text.h"
#include "server/com_variant.h"
#include "server/twain_interfaces.h"

namespace quillet {
namespace {

void RequireBag(HRESULT result, const std::string& key) {
  if (result == E_OUTOFMEMORY) throw RunTimeError(ErrorNumber::OutOfMemory);
  if (FAILED(result))
    throw RunTimeError(ErrorNumber::AutomationError, "the property bag fails at " + key);
}

ValueKind KindOf(const Variant& value) {
  if (std::holds_alternative<ObjectRef>(value)) return ValueKind::Picture;
  return std::holds_alternative<std::string>(value) ? ValueKind::String : ValueKind::None;
}

bool IsDefault(const Variant& value, const Variant& defaultValue) {
  if (const auto* object = std::get_if<ObjectRef>(&value))
    return SameObject(*object, VariantToObject(defaultValue));
  // A default may be of another width.
  return VariantToString(value) == VariantToString(defaultValue);
}

// A container's bag as the core knows bags.
class HostsBag : public PropertyBag {
 public:
  HostsBag(IPropertyBag& bag, IErrorLog* log, bool writesAll, Win32Pictures& pictures)
      : m_bag(bag), m_log(log), m_writesAll(writesAll), m_pictures(pictures) {}

  Variant ReadProperty(const std::string& key, const Variant& defaultValue) override {
    UniqueVariant found;
    const HRESULT result = m_bag.Read(Utf16(key).c_str(), &found.get(), m_log);
    // A key that the bag does not hold.
    if (result == E_INVALIDARG || (SUCCEEDED(result) && found.get().vt == VT_EMPTY))
      return defaultValue;
    RequireBag(result, key);
    return FromVariant(found.get(), KindOf(defaultValue), m_pictures);
  }

  void WriteProperty(const std::string& key, const Variant& value,
                     const Variant& defaultValue) override {
    const auto* object = std::get_if<ObjectRef>(&value);
    const bool isNothing = object && !*object;
    if (isNothing || (!m_writesAll && IsDefault(value, defaultValue))) return;
    UniqueVariant written;
    ToVariant(value, written.get());
    RequireBag(m_bag.Write(Utf16(key).c_str(), &written.get()), key);
  }

 private:
  IPropertyBag& m_bag;
  IErrorLog* m_log;
  bool m_writesAll;
  Win32Pictures& m_pictures;
};

}  // namespace

HRESULT PersistBagPart::GetClassID(::CLSID* id) {
  if (!id) return E_POINTER;
  *id = kControlClass;
  return S_OK;
}

HRESULT PersistBagPart::InitNew() {
  return Enter([&] {
    m_core.InitNew();
    return S_OK;
  });
}

HRESULT PersistBagPart::Load(IPropertyBag* bag, IErrorLog* log) {
  if (!bag) return E_POINTER;
  return Enter([&] {
    HostsBag settings(*bag, log, false, m_core.Pictures());
    m_core.ControlToLoad().ReadProperties(settings);
    m_core.Notifier().SetDirty(false);
    return S_OK;
  });
}

HRESULT PersistBagPart::Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) {
  if (!bag) return E_POINTER;
  return Enter([&] {
    HostsBag settings(*bag, nullptr, saveAll != FALSE, m_core.Pictures());
    m_core.Control().WriteProperties(settings);
    if (clearDirty) m_core.Notifier().SetDirty(false);
    return S_OK;
  });
}

}  // namespace quillet
