#pragma once

#include <atomic>

#include "server/active_part.h"
#include "server/class_info_part.h"
#include "server/connections_part.h"
#include "server/error_info_part.h"
#include "server/in_place_part.h"
#include "server/module.h"
#include "server/object_safety_part.h"
#include "server/ole_control_part.h"
#include "server/ole_object_part.h"
#include "server/persist_bag_part.h"
#include "server/persist_stream_part.h"
#include "server/twain_part.h"
#include "server/view_part.h"

namespace quillet {

// The object that a container makes of the control's class: its lifetime and its interfaces. It can
// be part of another object, which then is its identity.
//
// References may be taken and given back on any thread. Where the last one is given back on another
// thread than its own, which COM's rules forbid, the object stays for ever rather than be destroyed
// there.
class ControlObject final {
 public:
  // Run-time error 7.
  static HRESULT Create(Module& module, ::IUnknown* outer, REFIID iid, void** object);

 private:
  // The object's own IUnknown; the interfaces' ones are the identity's.
  class Inner final : public ::IUnknown {
   public:
    explicit Inner(ControlObject& owner) noexcept : m_owner(owner) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
      return m_owner.Find(iid, object);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return m_owner.AddReference(); }
    STDMETHODIMP_(ULONG) Release() override { return m_owner.EndReference(); }

   private:
    ControlObject& m_owner;
  };

  ControlObject(Module& module, ::IUnknown* outer);
  ~ControlObject() = default;
  HRESULT Find(REFIID iid, void** object) noexcept;
  ULONG AddReference() noexcept { return ++m_references; }
  ULONG EndReference() noexcept;

  ModuleUse m_use;
  std::atomic<ULONG> m_references = 1;
  Inner m_inner{*this};
  ControlCore m_core;
  TwainPart m_twain{m_core};
  ErrorInfoPart m_errorInfo{m_core};
  OleObjectPart m_oleObject{m_core};
  OleControlPart m_oleControl{m_core};
  InPlacePart m_inPlace{m_core};
  ActivePart m_active{m_core};
  ViewPart m_view{m_core};
  PersistStreamPart m_persistStream{m_core};
  PersistBagPart m_persistBag{m_core};
  ConnectionsPart m_connections;
  ClassInfoPart m_classInfo{m_core};
  ObjectSafetyPart m_objectSafety{m_core};
};

}  // namespace quillet
