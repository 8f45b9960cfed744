#include "server/registration.h"

#include <vector>

#include "server/twain_interfaces.h"

namespace quillet {
namespace {

constexpr wchar_t kName[] = L"Quillet image-acquisition control";
constexpr wchar_t kProgId[] = L"Quillet.Twain";
constexpr wchar_t kVersionedProgId[] = L"Quillet.Twain.2";
constexpr wchar_t kVersion[] = L"2.0";
constexpr wchar_t kLocale[] = L"409";
constexpr wchar_t kControlCategory[] = L"{40FC6ED4-2438-11CF-A3DB-080036F12502}";
// The system's own marshalling by type library.
constexpr wchar_t kDualMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";
constexpr wchar_t kDispatchMarshaller[] = L"{00020420-0000-0000-C000-000000000046}";
constexpr const wchar_t* kPlatform = sizeof(void*) == 8 ? L"win64" : L"win32";

// A value below Software\Classes.
struct Entry {
  std::wstring key;
  const wchar_t* name;  // null for the key's own value
  std::wstring value;
};

std::wstring Text(REFGUID id) {
  wchar_t text[39];
  ::StringFromGUID2(id, text, static_cast<int>(std::size(text)));
  return text;
}

std::vector<Entry> Entries(const std::wstring& file) {
  const std::wstring controlClass = L"CLSID\\" + Text(kControlClass);
  const std::wstring library = L"TypeLib\\" + Text(kLibraryId);
  const std::wstring version = library + L"\\" + kVersion;
  const std::wstring locale = version + L"\\" + kLocale;
  const std::wstring folder = file.substr(0, file.find_last_of(L'\\'));
  std::vector<Entry> entries{
      {kProgId, nullptr, kName},
      {std::wstring(kProgId) + L"\\CLSID", nullptr, Text(kControlClass)},
      {std::wstring(kProgId) + L"\\CurVer", nullptr, kVersionedProgId},
      {kVersionedProgId, nullptr, kName},
      {std::wstring(kVersionedProgId) + L"\\CLSID", nullptr, Text(kControlClass)},
      {controlClass, nullptr, kName},
      {controlClass + L"\\InprocServer32", nullptr, file},
      {controlClass + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {controlClass + L"\\ProgID", nullptr, kVersionedProgId},
      {controlClass + L"\\VersionIndependentProgID", nullptr, kProgId},
      {controlClass + L"\\TypeLib", nullptr, Text(kLibraryId)},
      {controlClass + L"\\Version", nullptr, kVersion},
      {controlClass + L"\\Control", nullptr, L""},
      {controlClass + L"\\Programmable", nullptr, L""},
      {controlClass + L"\\ToolboxBitmap32", nullptr, file + L", 1"},  // its number in quillet.rc
      {controlClass + L"\\MiscStatus", nullptr, L"0"},
      {controlClass + L"\\MiscStatus\\1", nullptr, std::to_wstring(kMiscStatus)},
      {controlClass + L"\\Implemented Categories", nullptr, L""},
      {controlClass + L"\\Implemented Categories\\" + kControlCategory, nullptr, L""},
      {version, nullptr, L"Quillet"},
      {version + L"\\FLAGS", nullptr, L"0"},
      {version + L"\\HELPDIR", nullptr, folder},
      {locale + L"\\" + kPlatform, nullptr, file},
  };
  const auto addInterface = [&](REFGUID id, const wchar_t* name, const wchar_t* marshaller) {
    const std::wstring key = L"Interface\\" + Text(id);
    entries.insert(entries.end(), {{key, nullptr, name},
                                   {key + L"\\ProxyStubClsid32", nullptr, marshaller},
                                   {key + L"\\TypeLib", nullptr, Text(kLibraryId)},
                                   {key + L"\\TypeLib", L"Version", kVersion}});
  };
  addInterface(kTwainInterface, L"_Twain", kDualMarshaller);
  addInterface(kEventInterface, L"__Twain", kDispatchMarshaller);
  return entries;
}

class UniqueKey {
 public:
  UniqueKey() = default;
  UniqueKey(const UniqueKey&) = delete;
  UniqueKey& operator=(const UniqueKey&) = delete;
  ~UniqueKey() {
    if (m_key) ::RegCloseKey(m_key);
  }

  HKEY get() const noexcept { return m_key; }
  HKEY* Receive() noexcept { return &m_key; }

 private:
  HKEY m_key = nullptr;
};

LSTATUS Write(HKEY classes, const Entry& entry) {
  UniqueKey key;
  const LSTATUS status = ::RegCreateKeyExW(classes, entry.key.c_str(), 0, nullptr, 0, KEY_WRITE,
                                           nullptr, key.Receive(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  // An existing key keeps its own value where ours is none.
  if (!entry.name && entry.value.empty()) return ERROR_SUCCESS;
  const auto size = static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t));
  return ::RegSetValueExW(key.get(), entry.name, 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(entry.value.c_str()), size);
}

bool HasNoKeys(HKEY classes, const std::wstring& name) {
  UniqueKey key;
  DWORD keys = 0;
  return ::RegOpenKeyExW(classes, name.c_str(), 0, KEY_READ, key.Receive()) == ERROR_SUCCESS &&
         ::RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS &&
         keys == 0;
}

// Removes keys, remembering the first failure; one that is not there is none.
class Remover {
 public:
  explicit Remover(HKEY classes) noexcept : m_classes(classes) {}

  LSTATUS Failure() const noexcept { return m_failure; }

  void Tree(const std::wstring& key) {
    const LSTATUS status = ::RegDeleteTreeW(m_classes, key.c_str());
    if (status == ERROR_SUCCESS)
      Note(::RegDeleteKeyW(m_classes, key.c_str()));
    else
      Note(status);
  }
  // True when nothing but the key was left.
  bool IfEmpty(const std::wstring& key) {
    if (!HasNoKeys(m_classes, key)) return false;
    Note(::RegDeleteKeyW(m_classes, key.c_str()));
    return true;
  }

 private:
  void Note(LSTATUS status) {
    if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND && m_failure == ERROR_SUCCESS)
      m_failure = status;
  }

  HKEY m_classes;
  LSTATUS m_failure = ERROR_SUCCESS;
};

LSTATUS RemoveAll(HKEY classes) {
  const std::wstring version = L"TypeLib\\" + Text(kLibraryId) + L"\\" + kVersion;
  const std::wstring locale = version + L"\\" + kLocale;
  Remover remove(classes);
  remove.Tree(L"CLSID\\" + Text(kControlClass));
  remove.Tree(L"Interface\\" + Text(kTwainInterface));
  remove.Tree(L"Interface\\" + Text(kEventInterface));
  remove.Tree(locale + L"\\" + kPlatform);
  // The rest serves programs of both widths.
  if (remove.IfEmpty(locale)) {
    remove.Tree(version + L"\\FLAGS");
    remove.Tree(version + L"\\HELPDIR");
    remove.IfEmpty(version);
    remove.IfEmpty(L"TypeLib\\" + Text(kLibraryId));
    remove.Tree(kProgId);
    remove.Tree(kVersionedProgId);
  }
  return remove.Failure();
}

LSTATUS WriteAll(const RegistrationRoot& root, const std::vector<Entry>& entries) {
  UniqueKey classes;
  LSTATUS status = ::RegCreateKeyExW(root.key, root.path, 0, nullptr, 0, KEY_READ | KEY_WRITE,
                                     nullptr, classes.Receive(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  for (const Entry& entry : entries) {
    status = Write(classes.get(), entry);
    if (status == ERROR_SUCCESS) continue;
    RemoveAll(classes.get());
    break;
  }
  return status;
}

}  // namespace

HRESULT Register(std::span<const RegistrationRoot> roots, const std::wstring& file) noexcept {
  try {
    const std::vector<Entry> entries = Entries(file);
    for (const RegistrationRoot& root : roots)
      if (WriteAll(root, entries) == ERROR_SUCCESS) return S_OK;
    return SELFREG_E_CLASS;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT Unregister(std::span<const RegistrationRoot> roots) noexcept {
  try {
    HRESULT result = S_OK;
    for (const RegistrationRoot& root : roots) {
      UniqueKey classes;
      const LSTATUS opened =
          ::RegOpenKeyExW(root.key, root.path, 0, KEY_READ | KEY_WRITE, classes.Receive());
      // Where nothing may be written nothing was.
      if (opened != ERROR_SUCCESS) continue;
      if (RemoveAll(classes.get()) != ERROR_SUCCESS) result = SELFREG_E_CLASS;
    }
    return result;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace quillet
