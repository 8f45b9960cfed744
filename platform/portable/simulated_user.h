#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

// The person in front of the dialogs of source manager and sources. What they will do is said
// before the dialog opens; a dialog that nothing was said for is cancelled.
class SimulatedUser {
 public:
  // Picks the source of that name in the next source chooser.
  void WillChoose(std::string sourceName);
  // Presses Scan, or Cancel, when next asked by a source's dialog.
  void WillPressScan(bool scan);

  // The chooser's question: one of the names, compared without case, or none for cancelled.
  std::optional<std::string> Choose(const std::vector<std::string>& names);
  // The source dialog's question: true for Scan.
  bool PressesScan();

 private:
  std::deque<std::string> m_choices;
  std::deque<bool> m_presses;
};

}  // namespace quillet
