#include "postprocess/processList.h"

#include <memory>
#include <utility>

void PostProcessProcesses(kevaDoc& snapshot, const kevaDoc& raw) {
  const Tag* processes = raw.top().findChild("Processes");
  if (processes == nullptr) return;
  auto copy = std::make_unique<Tag>();
  copy->copyFrom(*processes);
  snapshot.top().addChild(std::move(copy));
}
