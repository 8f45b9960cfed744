#pragma once

#include <string>

#include "base/variant.h"

namespace quillet {

// Where a host keeps a control's settings with its own document. It lives for one call: a control
// reads or writes its settings and lets go of it.
//
// Values describe themselves; a bag may give one back in another form than it took (a text for a
// number, say). Pictures pass as objects that are of the class Picture. A bag that fails throws a
// run-time error.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  // The key's value; the default when the key is absent.
  virtual Variant ReadProperty(const std::string& key, const Variant& defaultValue) = 0;
  // The bag may leave out a value that equals the default.
  virtual void WriteProperty(const std::string& key, const Variant& value,
                             const Variant& defaultValue) = 0;
};

}  // namespace quillet
