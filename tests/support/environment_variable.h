#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillet {

// The variable that names the folder for temporary files.
#ifdef _WIN32
inline constexpr const char* kTemporaryFolder = "TMP";
inline void SetVariable(const char* name, const char* value) {
  _putenv_s(name, value ? value : "");
}
#else
inline constexpr const char* kTemporaryFolder = "TMPDIR";
inline void SetVariable(const char* name, const char* value) {
  if (value)
    setenv(name, value, 1);
  else
    unsetenv(name);
}
#endif

// Sets a variable of the process's environment and puts the old value back.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value) : m_name(name) {
    if (const char* const old = std::getenv(name)) m_old = old;
    SetVariable(name, value.c_str());
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() { SetVariable(m_name, m_old ? m_old->c_str() : nullptr); }

 private:
  const char* m_name;
  std::optional<std::string> m_old;
};

}  // namespace quillet
