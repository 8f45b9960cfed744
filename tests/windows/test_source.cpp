// A data source for the system's own manager: a flatbed with one page, 4 by 3 inches, that checks
// the order of what it is asked. The environment variable QUILLET_TEST_SOURCE says how it tells
// that an image is ready, or what else happens once it is enabled:
//
//   posted   a registered message to the application's window, claimed when it comes back (usual)
//   told     by calling the manager
//   window   the same, but only when a window of its own got a message by the application's loop
//   left     as window, and it leaves that window behind
//   closed   it asks to be closed, by calling the manager
//
// Where QUILLET_TEST_SOURCE_LOG names a file, what was out of order is written there. Where
// QUILLET_TEST_SOURCE_PAGE names a BMP file, that is the page, as it is.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/windows/test_manager.h"
#include "tests/windows/test_page.h"

namespace {

using namespace quillet;

constexpr TW_FIX32 kWidth{4, 0};
constexpr TW_FIX32 kHeight{3, 0};

std::string Variable(const char* name) {
  char value[MAX_PATH] = "";
  ::GetEnvironmentVariableA(name, value, sizeof value);
  return value;
}

// The manager that opened the source: the one library that has such an entry point and is loaded.
ManagerEntry LoadedManager() {
  for (const wchar_t* name : {L"twaindsm.dll", L"twain_32.dll"}) {
    if (const HMODULE module = ::GetModuleHandleW(name))
      return reinterpret_cast<ManagerEntry>(
          reinterpret_cast<void*>(::GetProcAddress(module, "DSM_Entry")));
  }
  return nullptr;
}

template <typename T>
T Read(const void* pData) {
  T value;
  std::memcpy(&value, pData, sizeof value);
  return value;
}

template <typename T>
void Give(void* pData, const T& value) {
  std::memcpy(pData, &value, sizeof value);
}

// A BMP file's bitmap, which its receiver frees; null for a file that is none.
HGLOBAL PackedFrom(const std::string& fileName) {
  std::ifstream file(fileName, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  if (bytes.size() <= sizeof(::BITMAPFILEHEADER)) return nullptr;
  const std::size_t size = bytes.size() - sizeof(::BITMAPFILEHEADER);
  const HGLOBAL block = ::GlobalAlloc(GHND, size);
  std::memcpy(::GlobalLock(block), bytes.data() + sizeof(::BITMAPFILEHEADER), size);
  ::GlobalUnlock(block);
  return block;
}

class Source {
 public:
  TW_UINT16 Answer(TW_IDENTITY* application, TW_UINT32 group, TW_UINT16 argumentType,
                   TW_UINT16 message, void* pData) {
    if (application) m_application = *application;
    switch (argumentType) {
      case DAT_IDENTITY:
        return Identity(message, pData);
      case DAT_CAPABILITY:
        return In(4) ? Capability(message, pData) : TWRC_FAILURE;
      case DAT_IMAGELAYOUT:
        return In(4) && group == DG_IMAGE ? TWRC_SUCCESS : TWRC_FAILURE;
      case DAT_USERINTERFACE:
        return message == MSG_ENABLEDS ? Enable(pData) : Disable();
      case DAT_EVENT:
        return ProcessEvent(pData);
      case DAT_IMAGENATIVEXFER:
        return Transfer(pData);
      case DAT_PENDINGXFERS:
        return EndTransfer(pData);
      case DAT_STATUS:
        Give(pData, TW_STATUS{TWCC_SEQERROR, 0});
        return TWRC_SUCCESS;
      default:
        return Wrong("an operation that it does not know");
    }
  }

 private:
  TW_UINT16 Wrong(const char* what) {
    const std::string log = Variable("QUILLET_TEST_SOURCE_LOG");
    if (std::FILE* const file = log.empty() ? nullptr : std::fopen(log.c_str(), "a")) {
      std::fprintf(file, "%s in state %d\n", what, m_state);
      std::fclose(file);
    }
    return TWRC_FAILURE;
  }
  // The states of the protocol: 4 open, 5 enabled, 6 an image is ready, 7 transferred.
  bool In(int state) {
    if (m_state != state) Wrong("an operation");
    return m_state == state;
  }

  TW_UINT16 Identity(TW_UINT16 message, void* pData) {
    switch (message) {
      case MSG_GET: {
        auto identity = Read<TW_IDENTITY>(pData);
        const TW_UINT32 id = identity.Id;
        identity = {};
        identity.Id = id;
        identity.ProtocolMajor = 1;
        identity.ProtocolMinor = 9;
        identity.SupportedGroups = DG_CONTROL | DG_IMAGE;
        std::strcpy(identity.ProductName, "Test source");
        Give(pData, identity);
        return TWRC_SUCCESS;
      }
      case MSG_OPENDS:
        if (!In(3)) return TWRC_FAILURE;
        m_identity = Read<TW_IDENTITY>(pData);
        m_state = 4;
        return TWRC_SUCCESS;
      case MSG_CLOSEDS:
        if (!In(4)) return TWRC_FAILURE;
        m_state = 3;
        return TWRC_SUCCESS;
      default:
        return Wrong("an operation on its identity");
    }
  }

  TW_UINT16 Capability(TW_UINT16 message, void* pData) {
    auto capability = Read<TW_CAPABILITY>(pData);
    const HGLOBAL container = reinterpret_cast<HGLOBAL>(capability.hContainer);
    if (message == MSG_SET) {
      if (capability.ConType != TWON_ONEVALUE || ::GlobalSize(container) < sizeof(TW_ONEVALUE))
        return Wrong("a container that is not one value");
      const auto value = Read<TW_ONEVALUE>(::GlobalLock(container));
      ::GlobalUnlock(container);
      if (capability.Cap == ICAP_XRESOLUTION) m_resolution = static_cast<int>(value.Item & 0xFFFF);
      if (capability.Cap == ICAP_PIXELTYPE)
        m_pixelType = static_cast<TW_UINT16>(value.Item & 0xFFFF);
      return TWRC_SUCCESS;
    }
    TW_ONEVALUE value{TWTY_BOOL, 1};
    if (capability.Cap == ICAP_PHYSICALWIDTH) value = {TWTY_FIX32, Read<TW_UINT32>(&kWidth)};
    if (capability.Cap == ICAP_PHYSICALHEIGHT) value = {TWTY_FIX32, Read<TW_UINT32>(&kHeight)};
    const HGLOBAL answer = ::GlobalAlloc(GHND, sizeof value);
    Give(::GlobalLock(answer), value);
    ::GlobalUnlock(answer);
    capability.ConType = TWON_ONEVALUE;
    capability.hContainer = quillet::GlobalHandle{reinterpret_cast<std::uintptr_t>(answer)};
    Give(pData, capability);
    return TWRC_SUCCESS;
  }

  TW_UINT16 Enable(void* pData) {
    if (!In(4)) return TWRC_FAILURE;
    m_state = 5;
    m_way = Variable("QUILLET_TEST_SOURCE");
    const HWND parent = reinterpret_cast<HWND>(Read<TW_USERINTERFACE>(pData).hParent);
    if (!::IsWindow(parent)) return Wrong("a parent that is no window");
    if (m_way == "told") {
      Tell(MSG_XFERREADY);
    } else if (m_way == "closed") {
      Tell(MSG_CLOSEDSREQ);
    } else if (m_way == "window" || m_way == "left") {
      // Owned by the parent, as sources' dialogs are.
      m_window = ::CreateWindowExW(0, L"STATIC", L"Test source", WS_POPUP, 0, 0, 50, 50, parent,
                                   nullptr, nullptr, nullptr);
      ::SetTimer(m_window, reinterpret_cast<UINT_PTR>(this), 20, &Ticked);
    } else {
      ::PostMessageA(parent, m_ready, 0, 0);
    }
    return TWRC_SUCCESS;
  }

  static void CALLBACK Ticked(HWND window, UINT, UINT_PTR source, DWORD) {
    ::KillTimer(window, source);
    reinterpret_cast<Source*>(source)->Tell(MSG_XFERREADY);
  }

  void Tell(TW_UINT16 message) {
    if (message == MSG_XFERREADY) m_state = 6;
    if (const ManagerEntry manager = LoadedManager())
      manager(&m_identity, &m_application, DG_CONTROL, DAT_NULL, message, nullptr);
  }

  TW_UINT16 Disable() {
    if (!In(5)) return TWRC_FAILURE;
    if (m_window && m_way != "left") ::DestroyWindow(m_window);
    m_window = nullptr;
    m_state = 4;
    return TWRC_SUCCESS;
  }

  TW_UINT16 ProcessEvent(void* pData) {
    auto event = Read<TW_EVENT>(pData);
    event.TWMessage = MSG_NULL;
    const auto message = Read<::MSG>(event.pEvent);
    const bool isOurs = message.message == m_ready && m_state == 5;
    if (isOurs) {
      event.TWMessage = MSG_XFERREADY;
      m_state = 6;
    }
    Give(pData, event);
    return isOurs ? TWRC_DSEVENT : TWRC_NOTDSEVENT;
  }

  TW_UINT16 Transfer(void* pData) {
    if (!In(6)) return TWRC_FAILURE;
    m_state = 7;
    const std::string file = Variable("QUILLET_TEST_SOURCE_PAGE");
    Give(pData, file.empty() ? TestPage{m_resolution, m_pixelType}.Packed() : PackedFrom(file));
    return TWRC_XFERDONE;
  }

  TW_UINT16 EndTransfer(void* pData) {
    if (!In(7)) return TWRC_FAILURE;
    m_state = 5;
    Give(pData, TW_PENDINGXFERS{});
    return TWRC_SUCCESS;
  }

  const UINT m_ready = ::RegisterWindowMessageA("Quillet test source: image ready");
  int m_state = 3;
  std::string m_way;
  HWND m_window = nullptr;
  TW_IDENTITY m_application{};
  TW_IDENTITY m_identity{};
  int m_resolution = 100;
  TW_UINT16 m_pixelType = TWPT_RGB;
};

}  // namespace

extern "C" __declspec(dllexport) quillet::TW_UINT16 WINAPI
    DS_Entry(quillet::TW_IDENTITY* pOrigin, quillet::TW_UINT32 group,
             quillet::TW_UINT16 argumentType, quillet::TW_UINT16 message, void* pData) {
  static Source source;
  return source.Answer(pOrigin, group, argumentType, message, pData);
}
