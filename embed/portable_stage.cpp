#include "embed/portable_stage.h"

#include "embed/portable_window.h"
#include "platform/portable/default_source_file.h"
#include "platform/portable/portable_source_manager.h"
#include "platform/portable/source_model.h"

namespace quillet {

PortableStage::PortableStage(const Machine& machine)
    : m_platform(machine.remembersChoices ? DefaultSourceFile::UserFolder() : "") {
  if (machine.noManager) m_platform.Sources().Uninstall();
  if (const SourceModel* model = FindSourceModel(machine.source))
    m_platform.Sources().UseSource(*model);
  if (!machine.page.empty()) m_platform.PutPageOnGlass(machine.page);
}

std::unique_ptr<ControlWindow> PortableStage::OpenWindow(int width, int height) {
  return std::make_unique<PortableWindow>(m_platform, width, height);
}

std::vector<KnownSource> KnownSources() {
  std::vector<KnownSource> sources;
  for (const SourceModel& model : SourceModels())
    sources.push_back({model.name, model.description});
  return sources;
}

std::unique_ptr<Stage> MakeStage(const Machine& machine) {
  return std::make_unique<PortableStage>(machine);
}

}  // namespace quillet
