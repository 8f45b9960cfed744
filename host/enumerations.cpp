#include "host/enumerations.h"

#include "host/text.h"

namespace quillet {
namespace {

constexpr struct {
  ValueKind kind;
  const char* name;
  Long value;
} kNames[] = {
    {ValueKind::ImageColorType, "twBlackWhite", twBlackWhite},
    {ValueKind::ImageColorType, "twGrayScale", twGrayScale},
    {ValueKind::ImageColorType, "twRGB", twRGB},
    {ValueKind::ImageType, "twBITMAP", twBITMAP},
    {ValueKind::ImageType, "twJPEG", twJPEG},
    {ValueKind::ImageType, "twGIF", twGIF},
    {ValueKind::ImageType, "twTIFF", twTIFF},
    {ValueKind::ImageType, "twPNG", twPNG},
    {ValueKind::FitType, "twFITNONE", twFITNONE},
    {ValueKind::FitType, "twFITINTO", twFITINTO},
    {ValueKind::FitType, "twFITWIDTH", twFITWIDTH},
    {ValueKind::FitType, "twFITSTRECH", twFITSTRECH},
};

}  // namespace

std::optional<Long> EnumerationValue(ValueKind kind, std::string_view name) {
  for (const auto& entry : kNames)
    if (entry.kind == kind && EqualsIgnoringCase(entry.name, name)) return entry.value;
  return std::nullopt;
}

const char* NameOfKind(ValueKind kind) {
  switch (kind) {
    case ValueKind::None:
      return "";
    case ValueKind::Int16:
      return "Integer";
    case ValueKind::Int32:
      return "Long";
    case ValueKind::Float32:
      return "Single";
    case ValueKind::Boolean:
      return "Boolean";
    case ValueKind::String:
      return "String";
    case ValueKind::Picture:
      return "Picture";
    case ValueKind::OleColor:
      return "OLE_COLOR";
    case ValueKind::ImageColorType:
      return "IMAGE_COLORTYPE";
    case ValueKind::ImageType:
      return "IMAGE_TYPE";
    case ValueKind::FitType:
      return "FIT_TYPE";
  }
  return "";
}

}  // namespace quillet
