#include "tests/support/scripted_source_manager.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "platform/contracts/bitmap_services.h"
#include "twain/protocol_names.h"

namespace quillet {
namespace {

std::string NameOfOperation(TW_UINT16 argumentType, TW_UINT16 message, const void* pData) {
  const std::string name = NameOf(ProtocolConstant::Message, message).substr(4);
  if (argumentType == DAT_CAPABILITY) {
    TW_CAPABILITY capability;
    std::memcpy(&capability, pData, sizeof capability);
    return name + " " + NameOf(ProtocolConstant::Capability, capability.Cap);
  }
  if (message == MSG_SET || message == MSG_GET)
    return name + " " + NameOf(ProtocolConstant::ArgumentType, argumentType);
  return name;
}

// Numbers from here on are made by programs at run time.
constexpr std::uint32_t kFirstOwn = 0xC000;

std::uint32_t MessageOf(const void* pData) {
  TW_EVENT event;
  std::memcpy(&event, pData, sizeof event);
  return static_cast<const MSG*>(event.pEvent)->message;
}

template <typename T>
std::vector<Byte> BytesOf(const T& value) {
  std::vector<Byte> bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

}  // namespace

ScriptedSourceManager::~ScriptedSourceManager() = default;

void ScriptedSourceManager::Answer(const std::string& operation, TW_UINT16 returnCode) {
  Do(operation, [returnCode](void*) { return returnCode; });
}

void ScriptedSourceManager::Do(const std::string& operation,
                               std::function<TW_UINT16(void* pData)> action) {
  m_script[operation] = std::move(action);
}

void ScriptedSourceManager::AnswerContainer(const std::string& capability,
                                            std::vector<Byte> container, TW_UINT16 containerType) {
  Do("GET " + capability, [this, containerType, container = std::move(container)](void* pData) {
    TW_CAPABILITY answer;
    std::memcpy(&answer, pData, sizeof answer);
    answer.ConType = containerType;
    answer.hContainer = container.empty() ? GlobalHandle::None : Block(container);
    std::memcpy(pData, &answer, sizeof answer);
    return TWRC_SUCCESS;
  });
}

std::string ScriptedSourceManager::TakeCalls() {
  return std::exchange(m_calls, {});
}

TW_UINT16 ScriptedSourceManager::DSM_Entry(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest,
                                           TW_UINT32 group, TW_UINT16 argumentType,
                                           TW_UINT16 message, void* pData) {
  const bool toManager = argumentType == DAT_PARENT || argumentType == DAT_IDENTITY;
  const bool isImage = argumentType == DAT_IMAGELAYOUT || argumentType == DAT_IMAGENATIVEXFER;
  if (toManager == (pDest != nullptr) || group != (isImage ? DG_IMAGE : DG_CONTROL))
    wrongShape = true;
  const std::string operation = NameOfOperation(argumentType, message, pData);
  const bool isForeign = message == MSG_PROCESSEVENT && MessageOf(pData) < kFirstOwn;
  if (!isForeign) {
    if (!m_calls.empty()) m_calls += ' ';
    m_calls += operation;
  }
  if (argumentType == DAT_CAPABILITY && message == MSG_SET) {
    TW_CAPABILITY capability;
    std::memcpy(&capability, pData, sizeof capability);
    TW_ONEVALUE value{};
    const GlobalLockGuard lock(m_memory, capability.hContainer);
    if (lock.get() && m_memory.GlobalSize(capability.hContainer) == sizeof value)
      std::memcpy(&value, lock.get(), sizeof value);
    char text[32];
    std::snprintf(text, sizeof text, "(%d,0x%X)", value.ItemType,
                  static_cast<unsigned>(value.Item));
    m_calls += text;
  }
  if (message == MSG_OPENDSM) {
    application = *pOrigin;
    idsAtOpen.push_back(TW_UINT32{pOrigin->Id});
    WindowHandle parent;
    std::memcpy(&parent, pData, sizeof parent);
    parentWasWindow = m_queue->IsWindow(parent);
  }
  const auto scripted = m_script.find(operation);
  if (scripted == m_script.end()) return Usual(*pOrigin, argumentType, message, pData);
  const auto action = scripted->second;
  return action(pData);
}

TW_UINT16 ScriptedSourceManager::Usual(TW_IDENTITY& origin, TW_UINT16 argumentType,
                                       TW_UINT16 message, void* pData) {
  switch (message) {
    case MSG_OPENDSM:
      origin.Id = 77;
      return TWRC_SUCCESS;
    case MSG_OPENDS:
    case MSG_USERSELECT: {
      TW_IDENTITY source{};
      source.Id = message == MSG_OPENDS ? 1 : 2;
      std::memcpy(pData, &source, sizeof source);
      return TWRC_SUCCESS;
    }
    case MSG_CLOSEDS:
      std::memcpy(&closedSource, pData, sizeof closedSource);
      return TWRC_SUCCESS;
    case MSG_GET:
      if (argumentType == DAT_CAPABILITY) return GetCapability(pData);
      *static_cast<GlobalHandle*>(pData) = Block(image);
      return TWRC_XFERDONE;
    case MSG_SET:
      if (argumentType == DAT_IMAGELAYOUT) std::memcpy(&layout, pData, sizeof layout);
      return TWRC_SUCCESS;
    case MSG_ENABLEDS:
      std::memcpy(&userInterface, pData, sizeof userInterface);
      for (const std::uint32_t number : posted) m_queue->Post(userInterface.hParent, number);
      return TWRC_SUCCESS;
    case MSG_PROCESSEVENT: {
      TW_EVENT event;
      std::memcpy(&event, pData, sizeof event);
      if (event.TWMessage != MSG_NULL) wrongShape = true;
      const std::uint32_t number = MessageOf(pData);
      if (number == kUnclaimed || number < kFirstOwn) return TWRC_NOTDSEVENT;
      event.TWMessage = number == kImageReady ? MSG_XFERREADY : MSG_CLOSEDSREQ;
      std::memcpy(pData, &event, sizeof event);
      return TWRC_DSEVENT;
    }
    default:
      return TWRC_SUCCESS;
  }
}

// Interface controllable; 8.5 x 11.69 inches.
TW_UINT16 ScriptedSourceManager::GetCapability(void* pData) {
  TW_CAPABILITY capability;
  std::memcpy(&capability, pData, sizeof capability);
  TW_ONEVALUE value{TWTY_BOOL, 1};
  if (capability.Cap == ICAP_PHYSICALWIDTH) value = {TWTY_FIX32, 0x80000008};
  if (capability.Cap == ICAP_PHYSICALHEIGHT) value = {TWTY_FIX32, 0xB0A4000B};
  capability.hContainer = Block(BytesOf(value));
  std::memcpy(pData, &capability, sizeof capability);
  return TWRC_SUCCESS;
}

GlobalHandle ScriptedSourceManager::Block(const std::vector<Byte>& content) {
  const GlobalHandle block = m_memory.GlobalAlloc(content.size());
  const GlobalLockGuard lock(m_memory, block);
  std::memcpy(lock.get(), content.data(), content.size());
  return block;
}

std::string ScriptedSourceManager::AnsiText(const std::string& text, std::size_t maxBytes) const {
  return text.substr(0, maxBytes);
}

std::vector<Byte> PackedBitmap(Long width, Long height, int depth, std::size_t following) {
  BITMAPINFOHEADER header;
  header.biWidth = width;
  header.biHeight = height;
  header.biBitCount = static_cast<std::uint16_t>(depth);
  std::vector<Byte> bytes = BytesOf(header);
  bytes.resize(bytes.size() + following);
  return bytes;
}

}  // namespace quillet
