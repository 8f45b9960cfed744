#include <filesystem>
#include <stdexcept>
#include <string>

#include "host/control_file.h"
#include "host/win32_call_result.h"
#include "host/win32_ocx_control.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/text.h"
#include "server/twain_interfaces.h"

namespace quillet {
namespace {

constexpr wchar_t kRegisteredName[] = L"Quillet.Twain";

// A reference to a loaded library.
class Library {
 public:
  explicit Library(HMODULE module = nullptr) : m_module(module) {}
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    if (m_module) ::FreeLibrary(m_module);
  }

  // One of its entries; null when it has none of that name.
  template <typename Entry>
  Entry Find(const char* name) const {
    return reinterpret_cast<Entry>(reinterpret_cast<void*>(::GetProcAddress(m_module, name)));
  }

 private:
  HMODULE m_module;
};

using FactoryRef = ComPtr<IClassFactory>;

[[noreturn]] void FailToLoad(const std::string& error) {
  throw std::runtime_error("cannot be loaded by a " + std::to_string(8 * sizeof(void*)) +
                           "-bit program (" + error + ")");
}

// By its full name, or the system would look for it in other folders too.
HMODULE Load(const std::string& fileName) {
  const std::filesystem::path file = std::filesystem::absolute(Utf16(fileName));
  if (const HMODULE module = ::LoadLibraryW(file.c_str())) return module;
  const DWORD error = ::GetLastError();
  if (!std::filesystem::is_regular_file(file)) throw std::runtime_error("there is no such file");
  FailToLoad("system error " + std::to_string(error));
}

// The library whose code an object runs.
HMODULE LibraryOf(::IUnknown& object) {
  HMODULE module = nullptr;
  const void* itsCode = **reinterpret_cast<void***>(&object);
  ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, static_cast<LPCWSTR>(itsCode),
                       &module);
  return module;
}

class Win32ControlFile : public ControlFile {
 public:
  explicit Win32ControlFile(HMODULE module) : m_library(module) {}

  std::unique_ptr<HostedControl> Open(Platform& platform, int width, int height) override {
    return std::make_unique<OcxControl>(
        *ClassObject().get(), dynamic_cast<Win32Pictures&>(platform.pictures), width, height);
  }

  bool IsAtRest() const override {
    const auto entry = m_library.Find<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow");
    return entry && entry() == S_OK;
  }

  FactoryRef ClassObject() const {
    const auto entry =
        m_library.Find<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    if (!entry) throw std::runtime_error("holds no control");
    FactoryRef factory;
    const HRESULT result = entry(kControlClass, IID_IClassFactory, factory.ReceiveVoid());
    if (result == CLASS_E_CLASSNOTAVAILABLE) throw std::runtime_error("holds no control");
    RequireCall(result);
    return factory;
  }

 private:
  Library m_library;
};

}  // namespace

std::unique_ptr<ControlFile> LoadControlFile(const std::string& fileName) {
  if (!fileName.empty()) {
    auto file = std::make_unique<Win32ControlFile>(Load(fileName));
    file->ClassObject();
    return file;
  }
  ::CLSID id{};
  if (FAILED(::CLSIDFromProgID(kRegisteredName, &id)))
    throw std::runtime_error("no control is registered as Quillet.Twain");
  FactoryRef factory;
  // Registered for programs of the other width only, or its file is gone.
  const HRESULT result = ::CoGetClassObject(id, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                            factory.ReceiveVoid());
  if (FAILED(result)) FailToLoad(TextOf(result));
  return std::make_unique<Win32ControlFile>(LibraryOf(*factory.get()));
}

}  // namespace quillet
