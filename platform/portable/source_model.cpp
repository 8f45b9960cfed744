#include "platform/portable/source_model.h"

#include <strings.h>

#include <string>

namespace quillet {
namespace {

constexpr SourceModel kModels[] = {
    {.name = "Flatbed", .description = "scans an A4 page as the application asks"},
    {.name = "Panel",
     .description = "takes no settings from applications: 100 dpi, grey",
     .uiControllable = false,
     .pixelType = TWPT_GRAY},
    {.name = "Camera", .description = "knows no physical size", .hasPhysicalSize = false},
    {.name = "Feeder",
     .description = "has a second page pending after the first",
     .imagesPerScan = 2},
    {.name = "Assistant",
     .description = "shows its dialog although asked to go without",
     .insistsOnDialog = true},
};

}  // namespace

std::span<const SourceModel> SourceModels() {
  return kModels;
}

const SourceModel* FindSourceModel(std::string_view name) {
  const std::string wanted(name);
  for (const SourceModel& model : kModels)
    if (strcasecmp(model.name, wanted.c_str()) == 0) return &model;
  return nullptr;
}

}  // namespace quillet
