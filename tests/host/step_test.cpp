#include "host/step.h"

#include <gtest/gtest.h>

#include "host/usage_error.h"

namespace quillet {
namespace {

// What a step means, in words that a table can hold.
struct Meaning {
  static std::string Of(Bar bar) { return bar == Bar::Horizontal ? "h" : "v"; }
  static std::string Join(std::initializer_list<int> numbers) {
    std::string text;
    for (const int number : numbers) text.append(" ").append(std::to_string(number));
    return text;
  }

  std::string operator()(const ReadProperty& read) const {
    return std::string("read ") + read.member->name;
  }
  std::string operator()(const WriteProperty& write) const {
    return std::string("write ") + write.member->name + " [" + write.value + "]";
  }
  std::string operator()(const CallMethod& call) const {
    std::string text = std::string("call ") + call.member->name;
    for (const auto& argument : call.arguments) text += argument ? " [" + *argument + "]" : " -";
    return text;
  }
  std::string operator()(const TakeSnapshot& snapshot) const {
    return "snapshot [" + snapshot.file + "]";
  }
  std::string operator()(const ResizeControl& size) const {
    return "resize" + Join({size.width, size.height});
  }
  std::string operator()(const DragThumb& drag) const {
    return "drag " + Of(drag.bar) + Join({drag.value});
  }
  std::string operator()(const ClickArrow& click) const {
    return "arrow " + Of(click.bar) + (click.forward ? " forward" : " back");
  }
  std::string operator()(const ClickPage& click) const {
    return "page " + Of(click.bar) + (click.forward ? " forward" : " back");
  }
  std::string operator()(const UseMouse& mouse) const {
    return "mouse" +
           Join({static_cast<int>(mouse.action), mouse.x, mouse.y, mouse.button, mouse.shift});
  }
  std::string operator()(const PressKey& key) const {
    return "key" + Join({static_cast<int>(key.action), key.code, key.shift});
  }
  std::string operator()(const ReportLayout&) const { return "layout"; }
  std::string operator()(const KeepPicture& keep) const { return "keep [" + keep.name + "]"; }
  std::string operator()(const ChooseSource& choose) const { return "choose " + choose.name; }
  std::string operator()(const PressSourceButton& button) const {
    return button.scan ? "press Scan" : "press Cancel";
  }
  std::string operator()(const TypeFileName& answer) const {
    return "type [" + answer.fileName + "] " + (answer.yes ? "yes" : "no");
  }
  std::string operator()(const CancelFileDialog&) const { return "cancel"; }
  std::string operator()(const CloseWindow&) const { return "close"; }
  std::string operator()(const LoadProperties& load) const { return "load [" + load.file + "]"; }
  std::string operator()(const SaveProperties& save) const { return "save [" + save.file + "]"; }
  std::string operator()(const ClickForm& click) const {
    return std::string("click ") + click.control;
  }
};

TEST(Step, MeansWhatItsFirstMarkSays) {
  const struct {
    const char* text;
    const char* meaning;
  } cases[] = {
      {"Quality", "read Quality"},
      {"FILENAME", "read filename"},
      {"flip", "call Flip"},
      {"Quality=90", "write Quality [90]"},
      {"filename=a=b:c,d\\,e", "write filename [a=b:c,d\\,e]"},
      {"Picture=", "write Picture []"},
      {"MouseIcon=@x", "write MouseIcon [@x]"},
      {"Contrast:40", "call Contrast [40]"},
      {"Fit:", "call Fit -"},
      {"Crop:1,2,3,4", "call Crop [1] [2] [3] [4]"},
      {"ShowSave:,title=a:b", "call ShowSave - [title=a:b]"},
      {"ShowSave:a\\,b,\\c\\,\\\\,", "call ShowSave [a,b] [\\c,\\,]"},
      {"ShowLoad:,,", "call ShowLoad - - -"},
      {"Scan:Page 1, or \\, 2", "call Scan [Page 1, or \\, 2]"},
      {"SaveAdd:", "call SaveAdd []"},
      {"@snapshot:a,b=c.png", "snapshot [a,b=c.png]"},
      {"@Resize:0x32767", "resize 0 32767"},
      {"@scroll:h,-20", "drag h -20"},
      {"@arrow:v,+", "arrow v forward"},
      {"@page:H,-", "page h back"},
      {"@mouse:down,3,4", "mouse 0 3 4 1 0"},
      {"@mouse:move,-3,4", "mouse 1 -3 4 0 0"},
      {"@mouse:move,3,4,5,7", "mouse 1 3 4 5 7"},
      {"@mouse:dblclick,3,4,2,1", "mouse 4 3 4 2 1"},
      {"@key:press,65", "key 1 65 0"},
      {"@key:up,13,4", "key 2 13 4"},
      {"@layout", "layout"},
      {"@keep:Before", "keep [before]"},
      {"@choose:feeder", "choose feeder"},
      {"@source:Scan", "press Scan"},
      {"@source:cancel", "press Cancel"},
      {"@answer:a, b=c:d.jpg", "type [a, b=c:d.jpg] yes"},
      {"@Answer-No:/x.tif", "type [/x.tif] no"},
      {"@close", "close"},
      {"@cancel", "cancel"},
      {"@load-properties:a, b", "load [a, b]"},
      {"@save-properties:c=d", "save [c=d]"},
      {"@ok", "click cmdOK"},
      {"@web", "click lblAddress"},
  };
  for (const auto& [text, meaning] : cases)
    EXPECT_EQ(std::visit(Meaning{}, ParseStep(text).action), meaning) << text;
}

TEST(Step, WhatCannotRunIsWrongUsage) {
  const char* const cases[] = {
      "",
      "=5",
      "Qualty",
      "Qualty=5",
      "Qualty:5",
      "hDC=5",
      "Quality:5",
      "Flip=5",
      " Quality",
      "@",
      "@dance",
      "@layout:",
      "@layout=1",
      "@keep",
      "@keep:",
      "@choose",
      "@source:later",
      "@answer",
      "@answer:",
      "@answer-no:",
      "@cancel:",
      "@snapshot",
      "@snapshot:",
      "@resize:800",
      "@resize:-1x5",
      "@resize:800x32768",
      "@resize:8x6x4",
      "@scroll:h",
      "@scroll:x,5",
      "@scroll:h,32768",
      "@scroll:h,5,6",
      "@arrow:h,1",
      "@page:v,",
      "@mouse:click,1",
      "@mouse:press,1,1",
      "@mouse:down,1,1,3",
      "@mouse:down,1,1,0",
      "@mouse:click,1,1,1,8",
      "@mouse:click,1.5,1",
      "@key:down",
      "@key:down,x",
      "@key:down,1,2,3",
  };
  for (const char* text : cases) EXPECT_THROW(ParseStep(text), UsageError) << text;
}

}  // namespace
}  // namespace quillet
