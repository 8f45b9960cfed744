#include "twain/trace.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "base/runtime_error.h"
#include "platform/contracts/bitmap_services.h"
#include "platform/contracts/messages.h"
#include "twain/protocol_names.h"

namespace quillet {
namespace {

using Bytes = std::span<const Byte>;

template <typename T>
T Copy(const void* data) {
  T value;
  std::memcpy(&value, data, sizeof value);
  return value;
}

// The record at that offset, as far as the block holds it.
template <typename T>
std::optional<T> At(Bytes block, std::size_t offset = 0) {
  if (offset > block.size() || block.size() - offset < sizeof(T)) return {};
  return Copy<T>(block.data() + offset);
}

// Each with a space before it.
template <typename... Texts>
std::string Words(const Texts&... texts) {
  std::string line;
  ((line += ' ', line += texts), ...);
  return line;
}

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.4f", value);
  std::string number = text;
  while (number.ends_with('0') && !number.ends_with(".0")) number.pop_back();
  return number;
}

std::string Fix32(TW_FIX32 value) {
  return Number(value.Whole + value.Frac / 65536.0);
}

std::string Item(TW_UINT16 itemType, TW_UINT32 item) {
  switch (itemType) {
    case TWTY_FIX32:
      return Fix32(Copy<TW_FIX32>(&item));
    case TWTY_BOOL:
      return (item & 0xFFFF) != 0 ? "True" : "False";
    case TWTY_INT16:
      return std::to_string(static_cast<TW_INT16>(item & 0xFFFF));
    default:
      return std::to_string(item);
  }
}

// FIX32 for TWTY_FIX32.
std::string TypeName(TW_UINT16 itemType) {
  const std::string name = NameOf(ProtocolConstant::ItemType, itemType);
  return name.starts_with("TWTY_") ? name.substr(5) : name;
}

// As many of the listed items as the block holds.
std::string Items(Bytes block, std::size_t offset, TW_UINT16 itemType, TW_UINT32 count) {
  std::string text;
  const std::size_t size = itemType == TWTY_FIX32 ? 4 : 2;
  for (TW_UINT32 i = 0; i < count; ++i, offset += size) {
    const auto wide = size == 4 ? At<TW_UINT32>(block, offset) : std::nullopt;
    const auto narrow = size == 2 ? At<TW_UINT16>(block, offset) : std::nullopt;
    if (!wide && !narrow) return text + " ...";
    text += Words(Item(itemType, wide ? *wide : *narrow));
  }
  return text;
}

std::string Contents(TW_UINT16 container, Bytes block) {
  constexpr const char* kCutShort = " (cut short)";
  switch (container) {
    case TWON_ONEVALUE:
      if (const auto value = At<TW_ONEVALUE>(block))
        return Words(TypeName(value->ItemType), Item(value->ItemType, value->Item));
      return kCutShort;
    case TWON_ENUMERATION:
      if (const auto list = At<TW_ENUMERATION>(block))
        return Words(TypeName(list->ItemType), "one of") +
               Items(block, sizeof *list, list->ItemType, list->NumItems) +
               Words("at index", std::to_string(list->CurrentIndex));
      return kCutShort;
    case TWON_RANGE:
      if (const auto range = At<TW_RANGE>(block)) {
        const auto item = [&](TW_UINT32 value) { return Item(range->ItemType, value); };
        return Words(TypeName(range->ItemType), "from", item(range->MinValue), "to",
                     item(range->MaxValue), "step", item(range->StepSize), "now",
                     item(range->CurrentValue));
      }
      return kCutShort;
    case TWON_ARRAY:
      if (const auto list = At<TW_ARRAY>(block))
        return Words(TypeName(list->ItemType)) +
               Items(block, sizeof *list, list->ItemType, list->NumItems);
      return kCutShort;
    default:
      return Words("container", std::to_string(container));
  }
}

std::string Frame(const TW_FRAME& frame) {
  return Words(Fix32(frame.Left), Fix32(frame.Top), Fix32(frame.Right), Fix32(frame.Bottom));
}

std::string Quoted(const TW_STR32& text) {
  std::string quoted = " \"";
  for (const char c : std::string_view(text, strnlen(text, sizeof text))) {
    if (c == '\n' || c == '\r') {
      quoted += c == '\n' ? "\\n" : "\\r";
      continue;
    }
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted += '"';
}

}  // namespace

TracingSourceManager::TracingSourceManager(SourceManager& manager, GlobalMemory& memory, Sink sink)
    : m_manager(manager), m_memory(memory), m_sink(std::move(sink)) {}

std::string TracingSourceManager::AnsiText(const std::string& text, std::size_t maxBytes) const {
  return m_manager.AnsiText(text, maxBytes);
}

TW_UINT16 TracingSourceManager::DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                                          TW_UINT16 argumentType, TW_UINT16 message, void* pData) {
  std::string line = NameOf(ProtocolConstant::DataGroup, group) + " " +
                     NameOf(ProtocolConstant::ArgumentType, argumentType) + " " +
                     NameOf(ProtocolConstant::Message, message);
  if (pOrigin && pData) line += Sent(*pOrigin, argumentType, message, pData);
  line += " -> ";
  try {
    const TW_UINT16 returnCode =
        m_manager.DSM_Entry(pOrigin, pDest, group, argumentType, message, pData);
    line += NameOf(ProtocolConstant::ReturnCode, returnCode);
    if (pData) line += Received(argumentType, message, returnCode, pData);
    m_sink(line);
    return returnCode;
  } catch (const RunTimeError& error) {
    m_sink(line + "run-time error " + std::to_string(static_cast<int>(error.Number())));
    throw;
  }
}

std::string TracingSourceManager::Sent(const TW_IDENTITY& origin, TW_UINT16 argumentType,
                                       TW_UINT16 message, const void* pData) const {
  switch (argumentType) {
    case DAT_PARENT:
      return message == MSG_OPENDSM ? Quoted(origin.ProductName) : "";
    case DAT_IDENTITY:
      return message == MSG_CLOSEDS ? Quoted(Copy<TW_IDENTITY>(pData).ProductName) : "";
    case DAT_CAPABILITY: {
      const auto capability = Copy<TW_CAPABILITY>(pData);
      const std::string name = Words(NameOf(ProtocolConstant::Capability, capability.Cap));
      return message == MSG_SET ? name + Container(capability) : name;
    }
    case DAT_IMAGELAYOUT:
      return message == MSG_SET ? Frame(Copy<TW_IMAGELAYOUT>(pData).Frame) : "";
    case DAT_USERINTERFACE: {
      const auto userInterface = Copy<TW_USERINTERFACE>(pData);
      return Words("ShowUI", std::to_string(userInterface.ShowUI), "ModalUI",
                   std::to_string(userInterface.ModalUI));
    }
    case DAT_EVENT: {
      const void* const event = Copy<TW_EVENT>(pData).pEvent;
      if (!event) return "";
      char text[16];
      std::snprintf(text, sizeof text, " 0x%04X", static_cast<unsigned>(Copy<MSG>(event).message));
      return text;
    }
    default:
      return "";
  }
}

std::string TracingSourceManager::Received(TW_UINT16 argumentType, TW_UINT16 message,
                                           TW_UINT16 returnCode, const void* pData) const {
  if (returnCode == TWRC_FAILURE || returnCode == TWRC_CANCEL || returnCode == TWRC_ENDOFLIST)
    return "";
  switch (argumentType) {
    case DAT_IDENTITY:
      return message == MSG_CLOSEDS ? "" : Quoted(Copy<TW_IDENTITY>(pData).ProductName);
    case DAT_CAPABILITY:
      return message == MSG_SET ? "" : Container(Copy<TW_CAPABILITY>(pData));
    case DAT_IMAGELAYOUT:
      return message == MSG_SET ? "" : Frame(Copy<TW_IMAGELAYOUT>(pData).Frame);
    case DAT_EVENT: {
      const TW_UINT16 answer = Copy<TW_EVENT>(pData).TWMessage;
      return answer == MSG_NULL ? "" : Words(NameOf(ProtocolConstant::Message, answer));
    }
    case DAT_IMAGENATIVEXFER:
      return Image(Copy<GlobalHandle>(pData));
    case DAT_PENDINGXFERS:
      return Words("Count", std::to_string(Copy<TW_PENDINGXFERS>(pData).Count));
    case DAT_STATUS:
      return Words(NameOf(ProtocolConstant::ConditionCode, Copy<TW_STATUS>(pData).ConditionCode));
    default:
      return "";
  }
}

std::string TracingSourceManager::Container(const TW_CAPABILITY& capability) const {
  const GlobalLockGuard lock(m_memory, capability.hContainer);
  if (!lock.get()) return " (no container)";
  return Contents(capability.ConType, {static_cast<const Byte*>(lock.get()),
                                       m_memory.GlobalSize(capability.hContainer)});
}

std::string TracingSourceManager::Image(GlobalHandle image) const {
  const GlobalLockGuard lock(m_memory, image);
  if (!lock.get()) return " (no image)";
  const auto header =
      At<BITMAPINFOHEADER>({static_cast<const Byte*>(lock.get()), m_memory.GlobalSize(image)});
  if (!header) return " (cut short)";
  return Words(std::to_string(header->biWidth) + "x" + std::to_string(header->biHeight),
               std::to_string(header->biBitCount), "bits");
}

}  // namespace quillet
