#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/contracts/source_manager.h"
#include "platform/portable/default_source_file.h"
#include "platform/portable/scanner_glass.h"
#include "platform/portable/simulated_source.h"

namespace quillet {

// A data source manager with simulated sources behind it, held to the standard's states: an
// operation out of turn answers TWRC_FAILURE, and DAT_STATUS then tells why.
//
// Each application (TW_IDENTITY::Id, given at MSG_OPENDSM) has one source open at most; another's
// source is busy. The user's choice becomes the default at once. It leaves the application with the
// chosen source's identity in place of that of the source it has open, so MSG_CLOSEDSM closes a
// source that is still open, unless it is enabled. An application whose window is gone has left.
//
// The ANSI code page of this platform is UTF-8.
class PortableSourceManager : public SourceManager {
 public:
  PortableSourceManager(PortableMemory& memory, PortableMessages& messages, SimulatedUser& user,
                        DefaultSourceFile defaultSource);
  PortableSourceManager(const PortableSourceManager&) = delete;
  PortableSourceManager& operator=(const PortableSourceManager&) = delete;
  ~PortableSourceManager() override;

  TW_UINT16 DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                      TW_UINT16 argumentType, TW_UINT16 message, void* pData) override;
  std::string AnsiText(const std::string& text, std::size_t maxBytes) const override;

  // For the one who sets the machine up. A machine without a manager: every call is run-time
  // error 53.
  void Uninstall() { m_installed = false; }
  // Makes a model the default without remembering it.
  void UseSource(const SourceModel& model) { m_default = &model; }
  ScannerGlass& Glass() { return m_glass; }

 private:
  struct Application {
    WindowHandle parent = WindowHandle::None;
    std::unique_ptr<SimulatedSource> source;
    TW_UINT32 sourceId = 0;
    std::size_t nextModel = 0;  // of MSG_GETNEXT
    TW_UINT16 condition = TWCC_SUCCESS;
    TW_UINT16 sourceCondition = TWCC_SUCCESS;
  };

  SourceAnswer CallManager(TW_IDENTITY& origin, TW_UINT16 argumentType, TW_UINT16 message,
                           void* data);
  SourceAnswer OpenManager(TW_IDENTITY& origin, const void* data);
  SourceAnswer CloseManager(TW_UINT32 applicationId);
  SourceAnswer Identity(Application& application, TW_UINT16 message, TW_IDENTITY& identity);
  SourceAnswer OpenSource(Application& application, TW_IDENTITY& identity);
  SourceAnswer CloseSource(Application& application, const TW_IDENTITY& identity);
  SourceAnswer UserSelect(const Application& application, TW_IDENTITY& identity);
  const SourceModel& Default();
  bool IsBusy(const SourceModel& model) const;
  void ForgetThoseWhoLeft();

  SourceSetting m_setting;
  ScannerGlass m_glass;
  DefaultSourceFile m_file;
  const SourceModel* m_default = nullptr;  // null until it is asked for
  bool m_installed = true;
  std::map<TW_UINT32, Application> m_applications;
  TW_UINT32 m_nextId = 1;
  TW_UINT16 m_condition = TWCC_SUCCESS;  // for those without a connection
};

}  // namespace quillet
