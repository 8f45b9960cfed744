#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace quillet {

// Sets a variable of the process's environment and puts the old value back.
class EnvironmentVariable {
 public:
  EnvironmentVariable(const char* name, const std::string& value) : m_name(name) {
    if (const char* const old = std::getenv(name)) m_old = old;
    setenv(name, value.c_str(), 1);
  }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
  ~EnvironmentVariable() {
    if (m_old)
      setenv(m_name, m_old->c_str(), 1);
    else
      unsetenv(m_name);
  }

 private:
  const char* m_name;
  std::optional<std::string> m_old;
};

}  // namespace quillet
