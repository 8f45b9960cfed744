#pragma once

#include <optional>
#include <vector>

#include "base/types.h"
#include "platform/contracts/global_memory.h"
#include "platform/portable/source_model.h"
#include "twain/protocol.h"

namespace quillet {

// What an operation came to: a return code, and the condition code that tells why.
struct SourceAnswer {
  TW_UINT16 returnCode = TWRC_SUCCESS;
  TW_UINT16 condition = TWCC_SUCCESS;

  static SourceAnswer Failure(TW_UINT16 condition) { return {TWRC_FAILURE, condition}; }
};

// The glass of every source: A4 in inches.
TW_FIX32 GlassWidth();
TW_FIX32 GlassHeight();
TW_FIX32 ToFix32(double value);
double FromFix32(TW_FIX32 value);

// A source's capabilities: their values, and the containers in which they travel. Containers that
// it answers with belong to the asker.
class SourceCapabilities {
 public:
  SourceCapabilities(const SourceModel& model, GlobalMemory& memory);

  // One DAT_CAPABILITY operation.
  SourceAnswer Perform(TW_UINT16 message, TW_CAPABILITY& capability);

  TW_UINT16 PixelType() const { return static_cast<TW_UINT16>(Current(ICAP_PIXELTYPE)); }
  int XResolution() const;
  int YResolution() const;

 private:
  enum class Kind { OneValue, Enumeration, Range, Array };
  struct Entry {
    TW_UINT16 cap;
    TW_UINT16 itemType;
    Kind kind;
    bool settable;
    TW_UINT32 fallback;  // the source's own value
    TW_UINT32 current;
    // Of an enumeration or array the values, of a range least, most and step.
    std::vector<TW_UINT32> values;
  };

  Entry* Find(TW_UINT16 cap);
  TW_UINT32 Current(TW_UINT16 cap) const;
  void Add(Entry entry);
  SourceAnswer Set(Entry& entry, const TW_CAPABILITY& capability);
  SourceAnswer Take(Entry& entry, TW_UINT32 item);
  std::optional<TW_ONEVALUE> ReadOneValue(const TW_CAPABILITY& capability);
  SourceAnswer Answer(TW_CAPABILITY& capability, TW_UINT16 container,
                      const std::vector<Byte>& bytes);
  SourceAnswer AnswerOneValue(TW_CAPABILITY& capability, TW_UINT16 itemType, TW_UINT32 item);
  SourceAnswer AnswerAll(TW_CAPABILITY& capability, const Entry& entry);
  void FollowPixelType();

  GlobalMemory& m_memory;
  std::vector<Entry> m_entries;
};

}  // namespace quillet
