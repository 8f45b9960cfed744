#pragma once

#include <sys/resource.h>

#include <csignal>
#include <stdexcept>

namespace quillet {

// While it lives no file grows beyond that many bytes: what comes nearest to a full disk and works
// everywhere.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    if (getrlimit(RLIMIT_FSIZE, &m_before) != 0) throw std::runtime_error("no limits");
    rlimit small = m_before;
    small.rlim_cur = bytes;
    if (setrlimit(RLIMIT_FSIZE, &small) != 0) throw std::runtime_error("no limits");
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_before);
    std::signal(SIGXFSZ, m_handler);
  }

 private:
  void (*m_handler)(int);
  rlimit m_before{};
};

}  // namespace quillet
