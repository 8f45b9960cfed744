#include "embed/property_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

#include "base/runtime_error.h"

namespace quillet {
namespace {

// UTF-8 names, whatever the system's own are.
std::filesystem::path PathOf(const std::string& name) {
  return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

bool IsObject(const Variant& value) {
  return std::holds_alternative<ObjectRef>(value) || std::holds_alternative<std::monostate>(value);
}

// One number in several kinds is one value.
bool Equal(const Variant& a, const Variant& b) {
  if (IsObject(a) || IsObject(b))
    return IsObject(a) && IsObject(b) && SameObject(VariantToObject(a), VariantToObject(b));
  return FormatPropertyValue(a) == FormatPropertyValue(b);
}

// Where a file lies for a moment.
class TemporaryFile {
 public:
  explicit TemporaryFile(Files& files)
      : m_files(files), m_name(files.GetTempFileNameA(files.GetTempPathA(), "prp")) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    try {
      m_files.DeleteFile(m_name);
    } catch (const RunTimeError&) {
      // It is left behind.
    }
  }

  const std::string& Name() const noexcept { return m_name; }
  void Write(std::span<const Byte> bytes) { m_files.WriteFile(m_name, {&bytes, 1}); }

 private:
  Files& m_files;
  std::string m_name;
};

std::optional<std::string> ContentOf(const std::string& fileName) {
  std::ifstream file(PathOf(fileName), std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), {}};
  if (!file || file.bad()) return std::nullopt;
  return content;
}

}  // namespace

void PropertyFile::Load(const std::string& fileName) {
  m_properties.clear();
  const auto content = ContentOf(fileName);
  if (!content) throw std::runtime_error("cannot read " + fileName);
  try {
    m_properties = ParseProperties(*content);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(fileName + ", " + error.what());
  }
}

void PropertyFile::Save(const std::string& fileName) const {
  const std::string text = "# Settings of a Quillet control; what is not here has its default.\n" +
                           FormatProperties(m_properties);
  TemporaryFile temporary(m_platform.files);
  const std::vector<Byte> bytes(text.begin(), text.end());
  temporary.Write(bytes);
  m_platform.files.CopyFile(temporary.Name(), fileName);
}

Variant PropertyFile::ReadProperty(const std::string& key, const Variant& defaultValue) {
  const auto property = std::ranges::find(m_properties, key, &Property::key);
  if (property == m_properties.end()) return defaultValue;
  if (const auto* value = std::get_if<Variant>(&property->value)) return *value;
  return ObjectRef(PictureOf(std::get<PictureFile>(property->value)));
}

void PropertyFile::WriteProperty(const std::string& key, const Variant& value,
                                 const Variant& defaultValue) {
  std::erase_if(m_properties, [&](const Property& property) { return property.key == key; });
  if (Equal(value, defaultValue)) return;
  if (!IsObject(value)) {
    m_properties.push_back({key, value});
    return;
  }
  const auto picture = std::dynamic_pointer_cast<Picture>(VariantToObject(value));
  if (!picture) throw RunTimeError(ErrorNumber::TypeMismatch, key + " is no picture");
  m_properties.push_back({key, FileOf(picture)});
}

PictureFile PropertyFile::FileOf(const PictureRef& picture) const {
  if (picture->Kind() == PictureKind::None) return {};
  const TemporaryFile temporary(m_platform.files);
  m_platform.pictures.SavePicture(picture, temporary.Name());
  const auto content = ContentOf(temporary.Name());
  if (!content) throw RunTimeError(ErrorNumber::PathFileAccess, temporary.Name());
  return {{content->begin(), content->end()}};
}

PictureRef PropertyFile::PictureOf(const PictureFile& file) const {
  if (file.bytes.empty()) return m_platform.pictures.EmptyPicture();
  TemporaryFile temporary(m_platform.files);
  temporary.Write(file.bytes);
  return m_platform.pictures.LoadPicture(temporary.Name());
}

}  // namespace quillet
