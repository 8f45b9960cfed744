#include "platform/portable/source_capabilities.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/rounding.h"
#include "platform/portable/test_page.h"

namespace quillet {
namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kFractions = 65536;
constexpr TW_UINT32 kTrue = 1;
constexpr TW_UINT32 kAnyCount = 0xFFFF;  // -1 as 16 bits

TW_UINT32 Whole(int number) {
  return static_cast<TW_UINT16>(number);
}

TW_FIX32 AsFix32(TW_UINT32 item) {
  TW_FIX32 value;
  static_assert(sizeof value == sizeof item);
  std::memcpy(&value, &item, sizeof value);
  return value;
}

TW_UINT32 AsItem(TW_FIX32 value) {
  TW_UINT32 item;
  std::memcpy(&item, &value, sizeof item);
  return item;
}

TW_UINT32 DepthOf(TW_UINT32 pixelType) {
  return pixelType == TWPT_BW ? 1 : pixelType == TWPT_GRAY ? 8 : 24;
}

bool Is16Bits(TW_UINT16 itemType) {
  return itemType != TWTY_FIX32;
}

template <typename T>
void Append(std::vector<Byte>& bytes, const T& value) {
  const auto* const data = reinterpret_cast<const Byte*>(&value);
  bytes.insert(bytes.end(), data, data + sizeof value);
}

void AppendItems(std::vector<Byte>& bytes, TW_UINT16 itemType,
                 const std::vector<TW_UINT32>& items) {
  for (const TW_UINT32 item : items) {
    if (Is16Bits(itemType))
      Append(bytes, static_cast<TW_UINT16>(item));
    else
      Append(bytes, item);
  }
}

TW_UINT32 IndexOf(const std::vector<TW_UINT32>& values, TW_UINT32 value) {
  return static_cast<TW_UINT32>(std::ranges::find(values, value) - values.begin());
}

}  // namespace

TW_FIX32 GlassWidth() {
  return ToFix32(210 / kMillimetresPerInch);
}

TW_FIX32 GlassHeight() {
  return ToFix32(297 / kMillimetresPerInch);
}

TW_FIX32 ToFix32(double value) {
  const Long fractions = ToLong(value * kFractions);
  return {static_cast<TW_INT16>(fractions >> 16), static_cast<TW_UINT16>(fractions & 0xFFFF)};
}

double FromFix32(TW_FIX32 value) {
  return value.Whole + value.Frac / kFractions;
}

SourceCapabilities::SourceCapabilities(const SourceModel& model, GlobalMemory& memory)
    : m_memory(memory) {
  const TW_UINT32 depth = DepthOf(model.pixelType);
  const TW_UINT32 resolution = Whole(model.dotsPerInch);
  const std::vector resolutions{Whole(kMinTestPageResolution), Whole(kMaxTestPageResolution),
                                Whole(1)};
  const bool asked = model.uiControllable;
  const auto size = [&](TW_FIX32 inches) { return model.hasPhysicalSize ? AsItem(inches) : 0; };

  Add({CAP_XFERCOUNT, TWTY_INT16, Kind::OneValue, asked, kAnyCount, 0, {}});
  Add({ICAP_PIXELTYPE,
       TWTY_UINT16,
       Kind::Enumeration,
       asked,
       model.pixelType,
       0,
       {TWPT_BW, TWPT_GRAY, TWPT_RGB}});
  Add({ICAP_BITDEPTH, TWTY_UINT16, Kind::Enumeration, asked, depth, 0, {depth}});
  Add({ICAP_XRESOLUTION, TWTY_FIX32, Kind::Range, asked, resolution, 0, resolutions});
  Add({ICAP_YRESOLUTION, TWTY_FIX32, Kind::Range, asked, resolution, 0, resolutions});
  Add({ICAP_PHYSICALWIDTH, TWTY_FIX32, Kind::OneValue, false, size(GlassWidth()), 0, {}});
  Add({ICAP_PHYSICALHEIGHT, TWTY_FIX32, Kind::OneValue, false, size(GlassHeight()), 0, {}});
  Add({ICAP_UNITS, TWTY_UINT16, Kind::Enumeration, asked, TWUN_INCHES, 0, {TWUN_INCHES}});
  Add({ICAP_XFERMECH, TWTY_UINT16, Kind::Enumeration, asked, TWSX_NATIVE, 0, {TWSX_NATIVE}});
  Add({CAP_INDICATORS, TWTY_BOOL, Kind::OneValue, true, kTrue, 0, {}});
  Add({CAP_UICONTROLLABLE, TWTY_BOOL, Kind::OneValue, false, asked ? kTrue : 0, 0, {}});
  Add({CAP_SUPPORTEDCAPS, TWTY_UINT16, Kind::Array, false, 0, 0, {}});
  std::vector<TW_UINT32> caps;
  for (const Entry& entry : m_entries) caps.push_back(entry.cap);
  m_entries.back().values = std::move(caps);
}

void SourceCapabilities::Add(Entry entry) {
  entry.current = entry.fallback;
  m_entries.push_back(std::move(entry));
}

SourceCapabilities::Entry* SourceCapabilities::Find(TW_UINT16 cap) {
  const auto found = std::ranges::find(m_entries, cap, &Entry::cap);
  return found == m_entries.end() ? nullptr : &*found;
}

TW_UINT32 SourceCapabilities::Current(TW_UINT16 cap) const {
  return std::ranges::find(m_entries, cap, &Entry::cap)->current;
}

int SourceCapabilities::XResolution() const {
  return AsFix32(Current(ICAP_XRESOLUTION)).Whole;
}

int SourceCapabilities::YResolution() const {
  return AsFix32(Current(ICAP_YRESOLUTION)).Whole;
}

SourceAnswer SourceCapabilities::Perform(TW_UINT16 message, TW_CAPABILITY& capability) {
  Entry* const entry = Find(capability.Cap);
  if (!entry) return SourceAnswer::Failure(TWCC_CAPUNSUPPORTED);
  const bool isList = entry->kind == Kind::Array;
  switch (message) {
    case MSG_GET:
      return AnswerAll(capability, *entry);
    case MSG_GETCURRENT:
      return isList ? AnswerAll(capability, *entry)
                    : AnswerOneValue(capability, entry->itemType, entry->current);
    case MSG_GETDEFAULT:
      return isList ? AnswerAll(capability, *entry)
                    : AnswerOneValue(capability, entry->itemType, entry->fallback);
    case MSG_SET:
      if (!entry->settable) return SourceAnswer::Failure(TWCC_CAPBADOPERATION);
      return Set(*entry, capability);
    case MSG_RESET:
      if (!entry->settable) return SourceAnswer::Failure(TWCC_CAPBADOPERATION);
      entry->current = entry->fallback;
      if (entry->cap == ICAP_PIXELTYPE) FollowPixelType();
      return AnswerOneValue(capability, entry->itemType, entry->current);
    default:
      return SourceAnswer::Failure(TWCC_BADPROTOCOL);
  }
}

SourceAnswer SourceCapabilities::Set(Entry& entry, const TW_CAPABILITY& capability) {
  const auto value = ReadOneValue(capability);
  if (!value || value->ItemType != entry.itemType) return SourceAnswer::Failure(TWCC_BADVALUE);
  const TW_UINT32 item = Is16Bits(entry.itemType) ? value->Item & 0xFFFF : value->Item;
  const SourceAnswer answer = Take(entry, item);
  if (answer.returnCode != TWRC_FAILURE && entry.cap == ICAP_PIXELTYPE) FollowPixelType();
  return answer;
}

// A value between two steps of a range becomes the nearest one, which the answer tells.
SourceAnswer SourceCapabilities::Take(Entry& entry, TW_UINT32 item) {
  const auto refused = SourceAnswer::Failure(TWCC_BADVALUE);
  switch (entry.kind) {
    case Kind::Enumeration:
      if (std::ranges::find(entry.values, item) == entry.values.end()) return refused;
      break;
    case Kind::Range: {
      const double wanted = FromFix32(AsFix32(item));
      if (wanted < FromFix32(AsFix32(entry.values[0])) ||
          wanted > FromFix32(AsFix32(entry.values[1])))
        return refused;
      entry.current = AsItem(ToFix32(RoundHalfEven(wanted)));
      return {entry.current == item ? TWRC_SUCCESS : TWRC_CHECKSTATUS, TWCC_SUCCESS};
    }
    default: {
      const bool isBoolean = entry.itemType == TWTY_BOOL;
      const bool isCount = item == kAnyCount || (item >= 1 && item < 0x8000);
      if (isBoolean ? item > kTrue : !isCount) return refused;
    }
  }
  entry.current = item;
  return {};
}

// Each pixel type has one depth.
void SourceCapabilities::FollowPixelType() {
  Entry& depth = *Find(ICAP_BITDEPTH);
  depth.current = depth.fallback = DepthOf(Current(ICAP_PIXELTYPE));
  depth.values = {depth.current};
}

std::optional<TW_ONEVALUE> SourceCapabilities::ReadOneValue(const TW_CAPABILITY& capability) {
  TW_ONEVALUE value;
  if (capability.ConType != TWON_ONEVALUE) return {};
  if (m_memory.GlobalSize(capability.hContainer) < sizeof value) return {};
  const GlobalLockGuard lock(m_memory, capability.hContainer);
  if (!lock.get()) return {};
  std::memcpy(&value, lock.get(), sizeof value);
  return value;
}

SourceAnswer SourceCapabilities::Answer(TW_CAPABILITY& capability, TW_UINT16 container,
                                        const std::vector<Byte>& bytes) {
  const GlobalHandle block = m_memory.GlobalAlloc(bytes.size());
  const GlobalLockGuard lock(m_memory, block);
  if (!lock.get()) return SourceAnswer::Failure(TWCC_LOWMEMORY);
  std::memcpy(lock.get(), bytes.data(), bytes.size());
  capability.ConType = container;
  capability.hContainer = block;
  return {};
}

SourceAnswer SourceCapabilities::AnswerOneValue(TW_CAPABILITY& capability, TW_UINT16 itemType,
                                                TW_UINT32 item) {
  std::vector<Byte> bytes;
  Append(bytes, TW_ONEVALUE{itemType, item});
  return Answer(capability, TWON_ONEVALUE, bytes);
}

SourceAnswer SourceCapabilities::AnswerAll(TW_CAPABILITY& capability, const Entry& entry) {
  const auto& values = entry.values;
  const auto count = static_cast<TW_UINT32>(values.size());
  std::vector<Byte> bytes;
  switch (entry.kind) {
    case Kind::OneValue:
      return AnswerOneValue(capability, entry.itemType, entry.current);
    case Kind::Enumeration:
      Append(bytes, TW_ENUMERATION{entry.itemType, count, IndexOf(values, entry.current),
                                   IndexOf(values, entry.fallback)});
      AppendItems(bytes, entry.itemType, values);
      return Answer(capability, TWON_ENUMERATION, bytes);
    case Kind::Range:
      Append(bytes, TW_RANGE{entry.itemType, values[0], values[1], values[2], entry.fallback,
                             entry.current});
      return Answer(capability, TWON_RANGE, bytes);
    case Kind::Array:
      Append(bytes, TW_ARRAY{entry.itemType, count});
      AppendItems(bytes, entry.itemType, values);
      return Answer(capability, TWON_ARRAY, bytes);
  }
  return SourceAnswer::Failure(TWCC_BUMMER);
}

}  // namespace quillet
