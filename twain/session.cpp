// The conversation's frame: the message window, the identities, opening and closing.

#include <algorithm>
#include <cstring>
#include <utility>

#include "twain/cTwain.h"
#include "twain/conversation.h"

namespace quillet {
namespace {

constexpr const char* kManufacturer = "Quillet Imaging";
constexpr const char* kProductFamily = "Fenwright";
constexpr const char* kDefaultTitle = "Corvane Twain ActiveX";
constexpr std::size_t kLongestString = 32;

}  // namespace

TW_UINT16 cTwain::CallManager(TW_UINT16 argumentType, TW_UINT16 message, void* pData) {
  return m_platform.sources.DSM_Entry(&m_AppIdentity, nullptr, DG_CONTROL, argumentType, message,
                                      pData);
}

TW_UINT16 cTwain::CallSource(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message,
                             void* pData) {
  return m_platform.sources.DSM_Entry(&m_AppIdentity, &m_SourceIdentity, group, argumentType,
                                      message, pData);
}

Long cTwain::OpenSource(std::string Title) {
  m_AppIdentity = {};
  m_AppIdentity.Version.MajorNum = 1;
  m_AppIdentity.Version.Language = TWLG_ENGLISH_USA;
  m_AppIdentity.Version.Country = TWCY_USA;
  m_AppIdentity.ProtocolMajor = 1;
  m_AppIdentity.ProtocolMinor = 9;
  m_AppIdentity.SupportedGroups = DG_CONTROL | DG_IMAGE;
  if (Title.empty()) Title = kDefaultTitle;
  const auto copy = [&](TW_STR32& field, const std::string& text) {
    const std::string ansi = m_platform.sources.AnsiText(text, kLongestString);
    std::memcpy(field, ansi.data(), std::min(ansi.size(), kLongestString));
  };
  copy(m_AppIdentity.Manufacturer, kManufacturer);
  copy(m_AppIdentity.ProductFamily, kProductFamily);
  copy(m_AppIdentity.ProductName, Title);
  m_SourceIdentity = {};  // asks the manager for its default source

  if (CallManager(DAT_PARENT, MSG_OPENDSM, &m_hWndMsg) != TWRC_SUCCESS) return 1;
  if (CallManager(DAT_IDENTITY, MSG_OPENDS, &m_SourceIdentity) == TWRC_SUCCESS) return 0;
  CallManager(DAT_PARENT, MSG_CLOSEDSM, &m_hWndMsg);
  return 1;
}

Long cTwain::CloseSource() {
  CallManager(DAT_IDENTITY, MSG_CLOSEDS, &m_SourceIdentity);
  return CallManager(DAT_PARENT, MSG_CLOSEDSM, &m_hWndMsg) == TWRC_SUCCESS ? 0 : 1;
}

Long cTwain::SelectDataSource(const std::string& Title) {
  if (m_busy) return 1;
  const BusyGuard busy(m_busy);
  return Converse(Title, [&] {
    return CallManager(DAT_IDENTITY, MSG_USERSELECT, &m_SourceIdentity) == TWRC_SUCCESS ? 0 : 1;
  });
}

}  // namespace quillet
