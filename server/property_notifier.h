#pragma once

#include <vector>

#include "platform/contracts/site.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"

namespace quillet {

// The control's site towards its container: remembers that there is something to save, and tells
// every connected sink which property changed.
class PropertyNotifier : public Site {
 public:
  // The cookie undoes the connection; cookies are not used twice.
  DWORD Connect(ComPtr<IPropertyNotifySink> sink);
  bool Disconnect(DWORD cookie);
  // Nobody is told any more.
  void Close() noexcept;

  bool IsDirty() const noexcept { return m_dirty; }
  void SetDirty(bool dirty) noexcept { m_dirty = dirty; }

  // Every sink is told; then the first that failed makes the call a failure: its own number where
  // it has the form of a run-time error, else 440. A sink that implements nothing has not failed.
  void PropertyChanged(std::string_view name) override;

 private:
  struct Connection {
    DWORD cookie;
    ComPtr<IPropertyNotifySink> sink;
  };

  bool IsConnected(DWORD cookie) const;

  std::vector<Connection> m_connections;
  DWORD m_nextCookie = 1;
  bool m_dirty = false;
};

}  // namespace quillet
