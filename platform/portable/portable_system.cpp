#include "platform/portable/portable_system.h"

#include <dlfcn.h>

#include <ctime>
#include <filesystem>

namespace quillet {
namespace {

// An address inside this module.
constexpr char kHere = 0;

}  // namespace

int PortableSystem::CurrentYear() const {
  constexpr int kFirstYear = 1900;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return kFirstYear + local.tm_year;
}

std::string PortableSystem::ModuleName() const {
  Dl_info module{};
  if (dladdr(&kHere, &module) == 0 || !module.dli_fname) return {};
  return std::filesystem::path(module.dli_fname).stem().string();
}

bool PortableSystem::ShellExecuteA(WindowHandle, const std::string&) {
  return false;
}

}  // namespace quillet
