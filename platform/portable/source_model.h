#pragma once

#include <span>
#include <string_view>

#include "twain/protocol.h"

namespace quillet {

// A model of data source: what it is called and how its manners differ from the others'.
struct SourceModel {
  const char* name;
  const char* description;
  // Says that applications may leave its dialog out, and takes settings from them.
  bool uiControllable = true;
  // Shows its dialog although asked to go without.
  bool insistsOnDialog = false;
  // Knows the size of what it scans.
  bool hasPhysicalSize = true;
  // Images that each scan makes, however many were asked for.
  TW_UINT16 imagesPerScan = 1;
  // What it scans with until told otherwise.
  TW_UINT16 pixelType = TWPT_BW;
  TW_UINT16 dotsPerInch = 100;
};

// The models that are installed; the first is the default while the user has chosen none.
std::span<const SourceModel> SourceModels();

// The model of that name, in any case; null for none.
const SourceModel* FindSourceModel(std::string_view name);

}  // namespace quillet
