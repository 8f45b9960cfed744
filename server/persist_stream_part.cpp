#include "server/persist_stream_part.h"

#include "server/stream_bag.h"
#include "server/twain_interfaces.h"

namespace quillet {

HRESULT PersistStreamPart::GetClassID(::CLSID* id) {
  if (!id) return E_POINTER;
  *id = kControlClass;
  return S_OK;
}

HRESULT PersistStreamPart::IsDirty() {
  return Enter([&] { return m_core.Notifier().IsDirty() ? S_OK : S_FALSE; });
}

HRESULT PersistStreamPart::Load(IStream* stream) {
  if (!stream) return E_POINTER;
  return Enter([&] {
    StreamBag settings(m_core.Pictures());
    settings.ReadFrom(*stream);
    m_core.ControlToLoad().ReadProperties(settings);
    m_core.Notifier().SetDirty(false);
    return S_OK;
  });
}

HRESULT PersistStreamPart::Save(IStream* stream, BOOL clearDirty) {
  if (!stream) return E_POINTER;
  return Enter([&] {
    StreamBag settings(m_core.Pictures());
    m_core.Control().WriteProperties(settings);
    settings.WriteTo(*stream);
    if (clearDirty) m_core.Notifier().SetDirty(false);
    return S_OK;
  });
}

HRESULT PersistStreamPart::GetSizeMax(ULARGE_INTEGER* size) {
  if (!size) return E_POINTER;
  return Enter([&] {
    ComPtr<IStream> stream;
    STATSTG state{};
    HRESULT result = ::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive());
    if (SUCCEEDED(result)) result = Save(stream.get(), FALSE);
    if (SUCCEEDED(result)) result = stream->Stat(&state, STATFLAG_NONAME);
    *size = state.cbSize;
    return result;
  });
}

HRESULT PersistStreamPart::InitNew() {
  return Enter([&] {
    m_core.InitNew();
    return S_OK;
  });
}

}  // namespace quillet
