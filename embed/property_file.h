#pragma once

#include <string>
#include <vector>

#include "embed/property_text.h"
#include "platform/contracts/platform.h"
#include "platform/contracts/property_bag.h"

namespace quillet {

// A property bag as a readable text file (embed/property_text.h). Values that equal their default
// are left out. Keys that nobody reads are no error. The platform must outlive it.
class PropertyFile : public PropertyBag {
 public:
  explicit PropertyFile(Platform& platform) : m_platform(platform) {}

  // In place of everything kept so far. std::runtime_error, with the file's name and the line's
  // number, for a file that is malformed; nothing is kept then. The same for one that cannot be
  // read.
  void Load(const std::string& fileName);
  // The file is replaced when the new one is complete. Errors as of Files.
  void Save(const std::string& fileName) const;

  // Run-time errors of PictureServices for pictures, 13 for an object that is no picture.
  Variant ReadProperty(const std::string& key, const Variant& defaultValue) override;
  void WriteProperty(const std::string& key, const Variant& value,
                     const Variant& defaultValue) override;

 private:
  PictureFile FileOf(const PictureRef& picture) const;
  PictureRef PictureOf(const PictureFile& file) const;

  Platform& m_platform;
  std::vector<Property> m_properties;
};

}  // namespace quillet
