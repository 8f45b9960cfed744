#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

// What the user types into a file dialog, and how they answer the question that it then may ask.
struct FileAnswer {
  std::string fileName;
  bool yes = true;
};

// The person in front of the dialogs of source manager and sources and of the file dialogs. What
// they will do is said before the dialog opens; a dialog that nothing was said for is cancelled.
class SimulatedUser {
 public:
  // Picks the source of that name in the next source chooser.
  void WillChoose(std::string sourceName);
  // Presses Scan, or Cancel, when next asked by a source's dialog.
  void WillPressScan(bool scan);

  // Types that name into the next file dialog, or into the same one when it stays open.
  void WillType(FileAnswer answer);
  // Cancels the next file dialog, or the same one.
  void WillCancelFileDialog();

  // The chooser's question: one of the names, compared without case, or none for cancelled.
  std::optional<std::string> Choose(const std::vector<std::string>& names);
  // The source dialog's question: true for Scan.
  bool PressesScan();
  // A file dialog's question: what is typed, or none for cancelled.
  std::optional<FileAnswer> TypeFileName();

 private:
  std::deque<std::string> m_choices;
  std::deque<bool> m_presses;
  std::deque<std::optional<FileAnswer>> m_fileAnswers;
};

}  // namespace quillet
