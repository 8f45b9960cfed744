#pragma once

#include <memory>

namespace quillet {

// An object that a host can hold and hand to the control. Shared by reference: an object lives as
// long as anyone holds it.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  // What makes two references the same object. A wrapper around a host's object answers with that
  // object's identity, so that two wrappers of one object are the same.
  virtual const void* Identity() const noexcept { return this; }
};

using ObjectRef = std::shared_ptr<Object>;

inline bool SameObject(const ObjectRef& a, const ObjectRef& b) noexcept {
  return a && b ? a->Identity() == b->Identity() : !a && !b;
}

}  // namespace quillet
