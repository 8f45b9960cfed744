// A data source manager's library in which every operation is answered by the test that loaded it.

#include "tests/windows/test_manager.h"

namespace {

quillet::ManagerEntry& Behind() {
  static quillet::ManagerEntry entry = nullptr;
  return entry;
}

}  // namespace

extern "C" {

__declspec(dllexport) quillet::TW_UINT16 WINAPI
    DSM_Entry(quillet::TW_IDENTITY* pOrigin, quillet::TW_IDENTITY* pDest, quillet::TW_UINT32 group,
              quillet::TW_UINT16 argumentType, quillet::TW_UINT16 message, void* pData) {
  return Behind() ? Behind()(pOrigin, pDest, group, argumentType, message, pData)
                  : quillet::TWRC_FAILURE;
}

__declspec(dllexport) void WINAPI AnswerBy(quillet::ManagerEntry entry) {
  Behind() = entry;
}
}
