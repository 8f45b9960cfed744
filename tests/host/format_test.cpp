#include "host/format.h"

#include <gtest/gtest.h>

#include "embed/stage.h"

namespace quillet {
namespace {

TEST(Format, AValueIsOneBareLine) {
  const std::unique_ptr<Stage> stage = MakeStage();
  const BitmapServices& bitmaps = stage->Contracts().bitmaps;
  const struct {
    Variant value;
    const char* bare;
    const char* quoted;
  } cases[] = {
      {Integer{-7}, "-7", "-7"},
      {Single{10.5f}, "10.5", "10.5"},
      {true, "True", "True"},
      {std::string("two words"), "two words", "\"two words\""},
      {std::string("a\r\nb\\n\"") + '\0', R"(a\r\nb\\n"\0)", R"("a\r\nb\\n\"\0")"},
      {std::string(), "", "\"\""},
      {ObjectRef(), "Nothing", "Nothing"},
      {ObjectRef(stage->Contracts().pictures.EmptyPicture()), "0x0", "0x0"},
  };
  for (const auto& [value, bare, quoted] : cases) {
    EXPECT_EQ(FormatValue(value, bitmaps), bare);
    EXPECT_EQ(FormatQuoted(value, bitmaps), quoted);
  }
  const Variant mouse[] = {Integer{1}, Integer{0}, Single{10}, Single{-20}};
  EXPECT_EQ(FormatEvent(Event::MouseDown, mouse, bitmaps), "event MouseDown 1 0 10 -20");
}

TEST(Format, ACensusNamesOnlyWhatIsLeft) {
  EXPECT_EQ(FormatCensus({}), "none");
  EXPECT_EQ(FormatCensus({.bitmaps = 2, .pictures = 1}), "2 bitmaps, 1 picture");
  EXPECT_EQ(FormatCensus({.deviceContexts = 1, .globalBlocks = 3, .windows = 4}),
            "1 device context, 3 global blocks, 4 windows");
}

}  // namespace
}  // namespace quillet
