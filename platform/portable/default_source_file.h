#pragma once

#include <string>

namespace quillet {

// The file in which the source manager keeps the name of the user's default source from process to
// process. It is a convenience: a file that cannot be read is no choice, and one that cannot be
// written is passed over.
class DefaultSourceFile {
 public:
  // In that folder, which is made when it is missing. An empty name: nothing is kept.
  explicit DefaultSourceFile(std::string folder);

  // The folder for the current user: $XDG_STATE_HOME/quillet, else ~/.local/state/quillet; empty
  // when there is no such place.
  static std::string UserFolder();

  // Empty when nothing is kept.
  std::string Read() const;
  // Replaces the file at once: another process reads the old name or the new one.
  void Write(const std::string& name) const;

 private:
  std::string m_folder;
};

}  // namespace quillet
