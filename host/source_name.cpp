#include "host/source_name.h"

#include <algorithm>

#include "embed/stage.h"
#include "host/text.h"
#include "host/usage_error.h"

namespace quillet {

void CheckSource(const std::string& name) {
  const std::vector<KnownSource> sources = KnownSources();
  const bool isKnown = std::any_of(sources.begin(), sources.end(), [&](const KnownSource& source) {
    return EqualsIgnoringCase(source.name, name);
  });
  if (!sources.empty() && !isKnown) throw UsageError("there is no source " + name);
}

}  // namespace quillet
