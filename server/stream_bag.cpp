#include "server/stream_bag.h"

#include <cstdint>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr std::uint32_t kMark = 0x32544C51;  // QLT2
// More than any control writes: sizes that are none are found before memory is asked for.
constexpr std::uint32_t kMostSettings = 1000;
constexpr std::uint32_t kLongest = 64u << 20;

enum class Kind : std::uint8_t { Boolean = 1, Integer = 2, Long = 3, String = 4, Picture = 5 };

[[noreturn]] void Fail(const char* what) {
  throw RunTimeError(ErrorNumber::AutomationError, what);
}

void Read(IStream& stream, void* target, std::uint32_t size) {
  ULONG read = 0;
  if (FAILED(stream.Read(target, size, &read)) || read != size) Fail("the settings end too early");
}

template <typename Number>
Number ReadNumber(IStream& stream) {
  Number number{};
  Read(stream, &number, sizeof number);
  return number;
}

std::string ReadText(IStream& stream) {
  const auto length = ReadNumber<std::uint32_t>(stream);
  if (length > kLongest) Fail("these are no settings of this control");
  std::string text(length, '\0');
  Read(stream, text.data(), length);
  return text;
}

void Write(IStream& stream, const void* source, std::size_t size) {
  ULONG written = 0;
  if (FAILED(stream.Write(source, static_cast<ULONG>(size), &written)) || written != size)
    Fail("the settings cannot be written");
}

template <typename Number>
void WriteNumber(IStream& stream, Number number) {
  Write(stream, &number, sizeof number);
}

void WriteText(IStream& stream, const std::string& text) {
  WriteNumber(stream, static_cast<std::uint32_t>(text.size()));
  Write(stream, text.data(), text.size());
}

ComPtr<IStream> MemoryStream() {
  ComPtr<IStream> stream;
  if (FAILED(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive())))
    throw RunTimeError(ErrorNumber::OutOfMemory);
  return stream;
}

std::string PictureContent(const ObjectRef& object) {
  const auto picture = Win32Pictures::ObjectOf(std::dynamic_pointer_cast<Picture>(object));
  if (!picture) return {};
  ComPtr<IPersistStream> persist;
  const ComPtr<IStream> stream = MemoryStream();
  STATSTG state{};
  const LARGE_INTEGER start{};
  if (FAILED(picture->QueryInterface(IID_IPersistStream, persist.ReceiveVoid())) ||
      FAILED(persist->Save(stream.get(), FALSE)) || FAILED(stream->Stat(&state, STATFLAG_NONAME)) ||
      FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr)) || state.cbSize.QuadPart > kLongest)
    Fail("the picture cannot be saved");
  std::string content(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
  Read(*stream.get(), content.data(), static_cast<std::uint32_t>(content.size()));
  return content;
}

ObjectRef PictureFrom(const std::string& content, Win32Pictures& pictures) {
  if (content.empty()) return nullptr;
  const ComPtr<IStream> stream = MemoryStream();
  const LARGE_INTEGER start{};
  Write(*stream.get(), content.data(), content.size());
  ComPtr<IPicture> picture;
  if (FAILED(stream->Seek(start, STREAM_SEEK_SET, nullptr)) ||
      FAILED(::OleLoadPicture(stream.get(), static_cast<LONG>(content.size()), FALSE, IID_IPicture,
                              picture.ReceiveVoid())))
    throw RunTimeError(ErrorNumber::InvalidPicture);
  return pictures.Wrap(picture.get());
}

Variant ReadValue(IStream& stream, Win32Pictures& pictures) {
  switch (ReadNumber<Kind>(stream)) {
    case Kind::Boolean:
      return ReadNumber<std::uint8_t>(stream) != 0;
    case Kind::Integer:
      return ReadNumber<Integer>(stream);
    case Kind::Long:
      return ReadNumber<Long>(stream);
    case Kind::String:
      return ReadText(stream);
    case Kind::Picture:
      return PictureFrom(ReadText(stream), pictures);
  }
  Fail("these are no settings of this control");
}

void WriteValue(IStream& stream, const Variant& value) {
  if (const auto* flag = std::get_if<bool>(&value)) {
    WriteNumber(stream, Kind::Boolean);
    WriteNumber(stream, static_cast<std::uint8_t>(*flag));
  } else if (const auto* integer = std::get_if<Integer>(&value)) {
    WriteNumber(stream, Kind::Integer);
    WriteNumber(stream, *integer);
  } else if (const auto* number = std::get_if<Long>(&value)) {
    WriteNumber(stream, Kind::Long);
    WriteNumber(stream, *number);
  } else if (const auto* object = std::get_if<ObjectRef>(&value)) {
    WriteNumber(stream, Kind::Picture);
    WriteText(stream, PictureContent(*object));
  } else {
    WriteNumber(stream, Kind::String);
    WriteText(stream, VariantToString(value));
  }
}

}  // namespace

void StreamBag::ReadFrom(IStream& stream) {
  if (ReadNumber<std::uint32_t>(stream) != kMark) Fail("these are no settings of this control");
  const auto count = ReadNumber<std::uint32_t>(stream);
  if (count > kMostSettings) Fail("these are no settings of this control");
  m_settings.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    std::string key = ReadText(stream);
    m_settings.emplace_back(std::move(key), ReadValue(stream, m_pictures));
  }
}

void StreamBag::WriteTo(IStream& stream) const {
  WriteNumber(stream, kMark);
  WriteNumber(stream, static_cast<std::uint32_t>(m_settings.size()));
  for (const auto& [key, value] : m_settings) {
    WriteText(stream, key);
    WriteValue(stream, value);
  }
}

Variant StreamBag::ReadProperty(const std::string& key, const Variant& defaultValue) {
  for (const auto& [name, value] : m_settings)
    if (name == key) return value;
  return defaultValue;
}

void StreamBag::WriteProperty(const std::string& key, const Variant& value, const Variant&) {
  m_settings.emplace_back(key, value);
}

}  // namespace quillet
