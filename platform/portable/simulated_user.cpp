#include "platform/portable/simulated_user.h"

#include <strings.h>

#include <algorithm>
#include <utility>

namespace quillet {

void SimulatedUser::WillChoose(std::string sourceName) {
  m_choices.push_back(std::move(sourceName));
}

void SimulatedUser::WillPressScan(bool scan) {
  m_presses.push_back(scan);
}

void SimulatedUser::WillType(FileAnswer answer) {
  m_fileAnswers.emplace_back(std::move(answer));
}

void SimulatedUser::WillCancelFileDialog() {
  m_fileAnswers.emplace_back();
}

std::optional<std::string> SimulatedUser::Choose(const std::vector<std::string>& names) {
  if (m_choices.empty()) return std::nullopt;
  const std::string choice = std::move(m_choices.front());
  m_choices.pop_front();
  const auto chosen = std::ranges::find_if(
      names, [&](const auto& name) { return strcasecmp(name.c_str(), choice.c_str()) == 0; });
  if (chosen == names.end()) return std::nullopt;
  return *chosen;
}

bool SimulatedUser::PressesScan() {
  if (m_presses.empty()) return false;
  const bool scan = m_presses.front();
  m_presses.pop_front();
  return scan;
}

std::optional<FileAnswer> SimulatedUser::TypeFileName() {
  if (m_fileAnswers.empty()) return std::nullopt;
  std::optional<FileAnswer> answer = std::move(m_fileAnswers.front());
  m_fileAnswers.pop_front();
  return answer;
}

}  // namespace quillet
