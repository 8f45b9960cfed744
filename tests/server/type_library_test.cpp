#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "control/dispatch.h"
#include "control/events.h"
#include "host/enumerations.h"
#include "platform/win32/text.h"
#include "tests/server/control_library.h"

// The type library in the built quillet.ocx, held against the core's tables.

namespace quillet {
namespace {

std::string Take(BSTR text) {
  const std::string copy = text ? Utf8({text, ::SysStringLen(text)}) : std::string();
  ::SysFreeString(text);
  return copy;
}

ComPtr<ITypeLib> Library() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(::LoadTypeLibEx(OcxPath().c_str(), REGKIND_NONE, library.Receive()), S_OK);
  return library;
}

ComPtr<ITypeInfo> InfoOf(REFGUID id) {
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(Library()->GetTypeInfoOfGuid(id, info.Receive()), S_OK);
  return info;
}

std::string NameOf(ITypeInfo& info) {
  BSTR name = nullptr;
  info.GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
  return Take(name);
}

// As it is written in a declaration.
std::string TypeText(ITypeInfo& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeText(info, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
      ComPtr<ITypeInfo> other;
      info.GetRefTypeInfo(type.hreftype, other.Receive());
      return other ? NameOf(*other.get()) : "?";
    }
    case VT_I2:
      return "Integer";
    case VT_I4:
      return "Long";
    case VT_R4:
      return "Single";
    case VT_BOOL:
      return "Boolean";
    case VT_BSTR:
      return "String";
    case VT_VOID:
      return "";
    default:
      return std::string("kind ").append(std::to_string(type.vt));
  }
}

std::string KindText(ValueKind kind) {
  return kind == ValueKind::Picture ? "IPictureDisp*" : NameOfKind(kind);
}

// One line tells all there is of a function: number, access, name, parameters, result, help.
std::string Line(long number, ::INVOKEKIND access, const std::string& name,
                 const std::string& parameters, const std::string& result,
                 const std::string& help) {
  std::ostringstream line;
  line << number << ' ' << access << ' ' << name << '(' << parameters << ") " << result << " '"
       << help << "'";
  return line.str();
}

std::string ParametersText(std::span<const Parameter> parameters,
                           std::span<const ValueKind> kinds) {
  std::string text;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const bool isNamed = i < parameters.size();
    text += KindText(kinds[i]) + (isNamed && parameters[i].byReference ? "*" : "");
    if (isNamed) text += std::string(" ") + parameters[i].name;
    if (isNamed && parameters[i].defaultValue)
      text += std::string(" = ") + parameters[i].defaultValue;
    text += ";";
  }
  return text;
}

std::string DefaultText(const PARAMDESC& parameter) {
  if (!(parameter.wParamFlags & PARAMFLAG_FHASDEFAULT)) return "";
  const VARIANT& value = parameter.pparamdescex->varDefaultValue;
  if (value.vt == VT_BSTR)
    return " = " + (value.bstrVal ? Utf8({value.bstrVal, ::SysStringLen(value.bstrVal)}) : "");
  return std::string(" = ").append(std::to_string(value.lVal));
}

std::string LineOf(ITypeInfo& info, const FUNCDESC& function) {
  BSTR names[8] = {};
  UINT count = 0;
  info.GetNames(function.memid, names, 8, &count);
  std::string parameters;
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    parameters += TypeText(info, parameter.tdesc);
    if (static_cast<UINT>(i + 1) < count && function.invkind == INVOKE_FUNC)
      parameters.append(" ").append(Utf8({names[i + 1], ::SysStringLen(names[i + 1])}));
    const bool isOptional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
    EXPECT_EQ(isOptional, (parameter.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0);
    parameters += DefaultText(parameter.paramdesc) + ";";
  }
  BSTR help = nullptr;
  info.GetDocumentation(function.memid, nullptr, &help, nullptr, nullptr);
  const std::string name = Take(names[0]);
  for (UINT i = 1; i < count; ++i) ::SysFreeString(names[i]);
  const bool isWrite = function.invkind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF);
  return Line(function.memid, function.invkind, name, parameters,
              isWrite ? "" : TypeText(info, function.elemdescFunc.tdesc), Take(help));
}

std::vector<std::string> LinesOf(REFGUID id) {
  const ComPtr<ITypeInfo> info = InfoOf(id);
  std::vector<std::string> lines;
  FUNCDESC* function = nullptr;
  for (UINT i = 0; SUCCEEDED(info->GetFuncDesc(i, &function)); ++i) {
    // The system's own functions of IUnknown and IDispatch stand before ours.
    if (!(function->wFuncFlags & FUNCFLAG_FRESTRICTED))
      lines.push_back(LineOf(*info.get(), *function));
    info->ReleaseFuncDesc(function);
  }
  return lines;
}

TEST(TypeLibrary, TheInterfaceHasTheTablesMembersInOrder) {
  std::vector<std::string> expected;
  for (const Member& member : Members()) {
    const ::INVOKEKIND access = member.access == Access::Get      ? INVOKE_PROPERTYGET
                                : member.access == Access::Put    ? INVOKE_PROPERTYPUT
                                : member.access == Access::PutRef ? INVOKE_PROPERTYPUTREF
                                                                  : INVOKE_FUNC;
    expected.push_back(Line(member.number, access, member.name,
                            ParametersText(member.parameters, member.kinds),
                            KindText(member.result), member.help ? member.help : ""));
  }
  EXPECT_EQ(expected.size(), 65u);
  EXPECT_EQ(LinesOf(kTwainInterface), expected);
}

TEST(TypeLibrary, TheEventInterfaceHasTheTablesEventsInOrder) {
  std::vector<std::string> expected;
  for (const EventDescription& event : EventTable())
    expected.push_back(Line(static_cast<long>(event.number), INVOKE_FUNC, event.name,
                            ParametersText(event.parameters, event.kinds), "",
                            event.help ? event.help : ""));
  EXPECT_EQ(expected.size(), 12u);
  EXPECT_EQ(LinesOf(kEventInterface), expected);
}

TEST(TypeLibrary, TheEnumerationsAreTheCores) {
  using Values = std::vector<std::pair<std::string, Long>>;
  const struct {
    GUID id;
    const char* name;
    Values values;
  } kEnumerations[] = {
      {{0x64768653, 0x41A5, 0x4896, {0xA4, 0x98, 0x88, 0xF0, 0xD0, 0x06, 0xAD, 0x05}},
       "IMAGE_COLORTYPE",
       {{"twBlackWhite", quillet::twBlackWhite},
        {"twGrayScale", quillet::twGrayScale},
        {"twRGB", quillet::twRGB}}},
      {{0xFB686C18, 0x7902, 0x4991, {0x92, 0x3F, 0x5A, 0xFF, 0x39, 0x45, 0xF4, 0xDF}},
       "IMAGE_TYPE",
       {{"twBITMAP", quillet::twBITMAP},
        {"twJPEG", quillet::twJPEG},
        {"twGIF", quillet::twGIF},
        {"twTIFF", quillet::twTIFF},
        {"twPNG", quillet::twPNG}}},
      {{0xC5A0A787, 0xEEAC, 0x476F, {0xA7, 0x9D, 0x4C, 0x34, 0x96, 0xAD, 0xA8, 0xEE}},
       "FIT_TYPE",
       {{"twFITNONE", quillet::twFITNONE},
        {"twFITINTO", quillet::twFITINTO},
        {"twFITWIDTH", quillet::twFITWIDTH},
        {"twFITSTRECH", quillet::twFITSTRECH}}},
  };
  for (const auto& expected : kEnumerations) {
    const ComPtr<ITypeInfo> info = InfoOf(expected.id);
    ASSERT_TRUE(info) << expected.name;
    EXPECT_EQ(NameOf(*info.get()), expected.name);
    Values values;
    VARDESC* variable = nullptr;
    for (UINT i = 0; SUCCEEDED(info->GetVarDesc(i, &variable)); ++i) {
      BSTR name = nullptr;
      info->GetDocumentation(variable->memid, &name, nullptr, nullptr, nullptr);
      values.emplace_back(Take(name), variable->lpvarValue->lVal);
      info->ReleaseVarDesc(variable);
    }
    EXPECT_EQ(values, expected.values);
  }
}

TEST(TypeLibrary, TheLibraryAndItsTypesAreMarkedAsPublished) {
  const ComPtr<ITypeLib> library = Library();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, kLibraryId);
  EXPECT_EQ(attributes->lcid, 0x409u);
  EXPECT_EQ(attributes->wMajorVerNum, 2);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  library->ReleaseTLibAttr(attributes);
  BSTR name = nullptr, helpFile = nullptr;
  library->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, &helpFile);
  EXPECT_EQ(Take(name), "Quillet");
  EXPECT_TRUE(Take(helpFile).ends_with("quillet.hlp"));

  const struct {
    GUID id;
    const char* name;
    TYPEKIND kind;
    WORD flags;
  } kTypes[] = {
      {kTwainInterface, "_Twain", TKIND_DISPATCH,
       TYPEFLAG_FHIDDEN | TYPEFLAG_FDUAL | TYPEFLAG_FNONEXTENSIBLE},
      {kEventInterface, "__Twain", TKIND_DISPATCH, TYPEFLAG_FHIDDEN},
      {kControlClass, "Twain", TKIND_COCLASS, TYPEFLAG_FCONTROL | TYPEFLAG_FCANCREATE},
  };
  for (const auto& type : kTypes) {
    const ComPtr<ITypeInfo> info = InfoOf(type.id);
    EXPECT_EQ(NameOf(*info.get()), type.name);
    TYPEATTR* attribute = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attribute), S_OK);
    EXPECT_EQ(attribute->typekind, type.kind);
    EXPECT_EQ(attribute->wTypeFlags & ~TYPEFLAG_FDISPATCHABLE, type.flags) << type.name;
    info->ReleaseTypeAttr(attribute);
  }
  // Everything else that hosts list: the three enumerations.
  EXPECT_EQ(library->GetTypeInfoCount(), 6u);
}

TEST(TypeLibrary, TheClassNamesItsDefaultInterfaces) {
  const ComPtr<ITypeInfo> info = InfoOf(kControlClass);
  const std::pair<std::string, INT> kExpected[] = {
      {"_Twain", IMPLTYPEFLAG_FDEFAULT}, {"__Twain", IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE}};
  for (UINT i = 0; i < 2; ++i) {
    HREFTYPE type = 0;
    INT flags = 0;
    ComPtr<ITypeInfo> implemented;
    ASSERT_EQ(info->GetRefTypeOfImplType(i, &type), S_OK);
    ASSERT_EQ(info->GetImplTypeFlags(i, &flags), S_OK);
    ASSERT_EQ(info->GetRefTypeInfo(type, implemented.Receive()), S_OK);
    EXPECT_EQ(NameOf(*implemented.get()), kExpected[i].first);
    EXPECT_EQ(flags, kExpected[i].second);
  }
}

}  // namespace
}  // namespace quillet
