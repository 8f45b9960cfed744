#include "server/connections_part.h"

#include "server/enumerator.h"

namespace quillet {
namespace {

struct PointTraits {
  using Held = ComPtr<IConnectionPoint>;
  static IConnectionPoint* Give(const Held& point) { return Held(point).release(); }
};

}  // namespace

void ConnectionsPart::Close() noexcept {
  m_events.Close();
  m_properties.Close();
}

HRESULT ConnectionsPart::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (!points) return E_POINTER;
  *points = nullptr;
  return Enter([&] {
    return Enumerator<IEnumConnectionPoints, IConnectionPoint*, PointTraits>::Create(
        m_module, {ComPtr<IConnectionPoint>(&m_events), ComPtr<IConnectionPoint>(&m_properties)},
        points);
  });
}

HRESULT ConnectionsPart::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (!point) return E_POINTER;
  *point = nullptr;
  return Enter([&]() -> HRESULT {
    for (ConnectionPoint* own :
         {static_cast<ConnectionPoint*>(&m_events), static_cast<ConnectionPoint*>(&m_properties)})
      if (own->Interface() == iid) {
        *point = ComPtr<IConnectionPoint>(own).release();
        return S_OK;
      }
    return CONNECT_E_NOCONNECTION;
  });
}

}  // namespace quillet
