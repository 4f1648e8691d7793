#include "postprocess/processList.h"

#include <utility>

void PostProcessProcesses(kevaDoc& snapshot, const kevaDoc& raw) {
  const Tag* processes = raw.top().findChild("Processes");
  if (processes == nullptr) return;
  Tag copy;
  copy.copyFrom(*processes);
  snapshot.top().addChild(std::move(copy));
}
