#include "platform/portable/portable_source_manager.h"

#include <cstring>
#include <utility>
#include <vector>

#include "base/runtime_error.h"

namespace quillet {
namespace {

constexpr const char* kManufacturer = "Quillet Imaging";
constexpr const char* kProductFamily = "Simulated sources";

TW_IDENTITY IdentityOf(const SourceModel& model, TW_UINT32 id) {
  TW_IDENTITY identity{};
  identity.Id = id;
  identity.Version = {1, 0, TWLG_ENGLISH_USA, TWCY_USA, {}};
  identity.ProtocolMajor = 1;
  identity.ProtocolMinor = 9;
  identity.SupportedGroups = DG_CONTROL | DG_IMAGE;
  std::strncpy(identity.Manufacturer, kManufacturer, sizeof identity.Manufacturer - 1);
  std::strncpy(identity.ProductFamily, kProductFamily, sizeof identity.ProductFamily - 1);
  std::strncpy(identity.ProductName, model.name, sizeof identity.ProductName - 1);
  return identity;
}

// A copy: in a packed record the number itself may lie where no reference may point.
TW_UINT32 IdOf(const TW_IDENTITY& identity) {
  return identity.Id;
}

std::string ProductName(const TW_IDENTITY& identity) {
  return {identity.ProductName, strnlen(identity.ProductName, sizeof identity.ProductName)};
}

SourceAnswer Refused(TW_UINT16 condition) {
  return SourceAnswer::Failure(condition);
}

}  // namespace

PortableSourceManager::PortableSourceManager(PortableMemory& memory, PortableMessages& messages,
                                             SimulatedUser& user, DefaultSourceFile defaultSource)
    : m_setting{memory, messages, user, m_glass}, m_file(std::move(defaultSource)) {}

PortableSourceManager::~PortableSourceManager() = default;

TW_UINT16 PortableSourceManager::DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest,
                                           TW_UINT32 group, TW_UINT16 argumentType,
                                           TW_UINT16 message, void* pData) {
  if (!m_installed) throw RunTimeError(ErrorNumber::FileNotFound, "the TWAIN source manager");
  if (!pOrigin) return TWRC_FAILURE;
  const auto found = m_applications.find(IdOf(*pOrigin));
  Application* const application = found == m_applications.end() ? nullptr : &found->second;
  TW_UINT16& condition = !application ? m_condition
                         : pDest      ? application->sourceCondition
                                      : application->condition;
  if (group == DG_CONTROL && argumentType == DAT_STATUS && message == MSG_GET && pData) {
    const TW_STATUS status{std::exchange(condition, TWCC_SUCCESS), 0};
    std::memcpy(pData, &status, sizeof status);
    return TWRC_SUCCESS;
  }

  SourceAnswer answer;
  if (!pData) {
    answer = Refused(TWCC_BADVALUE);
  } else if (!pDest) {
    answer = group == DG_CONTROL ? CallManager(*pOrigin, argumentType, message, pData)
                                 : Refused(TWCC_BADPROTOCOL);
  } else if (!application) {
    answer = Refused(TWCC_SEQERROR);
  } else if (!application->source || pDest->Id != application->sourceId) {
    answer = Refused(TWCC_BADDEST);
  } else {
    answer = application->source->Perform(group, argumentType, message, pData);
  }
  // The application may have just come or gone.
  if (pDest && application)
    application->sourceCondition = answer.condition;
  else if (const auto now = m_applications.find(IdOf(*pOrigin)); now != m_applications.end())
    now->second.condition = answer.condition;
  else
    m_condition = answer.condition;
  return answer.returnCode;
}

SourceAnswer PortableSourceManager::CallManager(TW_IDENTITY& origin, TW_UINT16 argumentType,
                                                TW_UINT16 message, void* data) {
  if (argumentType == DAT_PARENT && message == MSG_OPENDSM) return OpenManager(origin, data);
  const bool closes = argumentType == DAT_PARENT && message == MSG_CLOSEDSM;
  if (!closes && argumentType != DAT_IDENTITY) return Refused(TWCC_BADPROTOCOL);
  const auto found = m_applications.find(IdOf(origin));
  if (found == m_applications.end()) return Refused(TWCC_SEQERROR);
  if (closes) return CloseManager(origin.Id);
  return Identity(found->second, message, *static_cast<TW_IDENTITY*>(data));
}

SourceAnswer PortableSourceManager::OpenManager(TW_IDENTITY& origin, const void* data) {
  ForgetThoseWhoLeft();
  if (m_applications.contains(IdOf(origin))) return Refused(TWCC_SEQERROR);
  WindowHandle parent;
  std::memcpy(&parent, data, sizeof parent);
  if (!m_setting.messages.IsWindow(parent)) return Refused(TWCC_BADVALUE);
  origin.Id = m_nextId++;
  m_applications[IdOf(origin)].parent = parent;
  return {};
}

SourceAnswer PortableSourceManager::CloseManager(TW_UINT32 applicationId) {
  const auto found = m_applications.find(applicationId);
  if (found->second.source && found->second.source->IsEnabled()) return Refused(TWCC_SEQERROR);
  m_applications.erase(found);
  return {};
}

void PortableSourceManager::ForgetThoseWhoLeft() {
  std::erase_if(m_applications, [&](const auto& entry) {
    return !m_setting.messages.IsWindow(entry.second.parent);
  });
}

SourceAnswer PortableSourceManager::Identity(Application& application, TW_UINT16 message,
                                             TW_IDENTITY& identity) {
  switch (message) {
    case MSG_OPENDS:
      return OpenSource(application, identity);
    case MSG_CLOSEDS:
      return CloseSource(application, identity);
    case MSG_USERSELECT:
      return UserSelect(application, identity);
    case MSG_GETDEFAULT:
      identity = IdentityOf(Default(), 0);
      return {};
    case MSG_GETFIRST:
    case MSG_GETNEXT: {
      if (message == MSG_GETFIRST) application.nextModel = 0;
      const auto models = SourceModels();
      if (application.nextModel >= models.size()) return {TWRC_ENDOFLIST, TWCC_SUCCESS};
      identity = IdentityOf(models[application.nextModel++], 0);
      return {};
    }
    default:
      return Refused(TWCC_BADPROTOCOL);
  }
}

// An identity without a name asks for the default source.
SourceAnswer PortableSourceManager::OpenSource(Application& application, TW_IDENTITY& identity) {
  if (application.source) return Refused(TWCC_SEQERROR);
  const std::string name = ProductName(identity);
  const SourceModel* const model = name.empty() ? &Default() : FindSourceModel(name);
  if (!model) return Refused(TWCC_NODS);
  if (IsBusy(*model)) return Refused(TWCC_MAXCONNECTIONS);
  application.source = std::make_unique<SimulatedSource>(*model, m_setting);
  application.sourceId = m_nextId++;
  identity = IdentityOf(*model, application.sourceId);
  return {};
}

SourceAnswer PortableSourceManager::CloseSource(Application& application,
                                                const TW_IDENTITY& identity) {
  if (!application.source || application.source->IsEnabled()) return Refused(TWCC_SEQERROR);
  if (identity.Id != application.sourceId) return Refused(TWCC_BADDEST);
  application.source.reset();
  application.sourceId = 0;
  return {};
}

SourceAnswer PortableSourceManager::UserSelect(const Application& application,
                                               TW_IDENTITY& identity) {
  std::vector<std::string> names;
  for (const SourceModel& model : SourceModels()) names.emplace_back(model.name);
  const auto choice = m_setting.user.Choose(names);
  if (!choice) return {TWRC_CANCEL, TWCC_SUCCESS};
  m_default = FindSourceModel(*choice);
  m_file.Write(m_default->name);
  const bool isOpen = application.source && &application.source->Model() == m_default;
  identity = IdentityOf(*m_default, isOpen ? application.sourceId : 0);
  return {};
}

const SourceModel& PortableSourceManager::Default() {
  if (!m_default) m_default = FindSourceModel(m_file.Read());
  if (!m_default) m_default = &SourceModels().front();
  return *m_default;
}

bool PortableSourceManager::IsBusy(const SourceModel& model) const {
  for (const auto& [id, application] : m_applications)
    if (application.source && &application.source->Model() == &model) return true;
  return false;
}

std::string PortableSourceManager::AnsiText(const std::string& text, std::size_t maxBytes) const {
  if (text.size() <= maxBytes) return text;
  std::size_t end = maxBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

}  // namespace quillet
