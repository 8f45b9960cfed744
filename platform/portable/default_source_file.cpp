#include "platform/portable/default_source_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/replacing_file.h"

namespace quillet {
namespace {

constexpr const char* kFileName = "/default-source";

// Only an absolute path counts.
std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value && *value == '/' ? value : "";
}

}  // namespace

DefaultSourceFile::DefaultSourceFile(std::string folder) : m_folder(std::move(folder)) {}

std::string DefaultSourceFile::UserFolder() {
  if (const std::string state = Variable("XDG_STATE_HOME"); !state.empty())
    return state + "/quillet";
  const std::string home = Variable("HOME");
  return home.empty() ? "" : home + "/.local/state/quillet";
}

std::string DefaultSourceFile::Read() const {
  std::string name;
  if (m_folder.empty()) return name;
  std::ifstream file(m_folder + kFileName);
  std::getline(file, name);
  return name;
}

void DefaultSourceFile::Write(const std::string& name) const {
  if (m_folder.empty()) return;
  try {
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    ReplacingFile file(m_folder + kFileName);
    const std::string line = name + "\n";
    file.Write({reinterpret_cast<const Byte*>(line.data()), line.size()});
    file.Commit();
  } catch (const RunTimeError&) {
  }
}

}  // namespace quillet
