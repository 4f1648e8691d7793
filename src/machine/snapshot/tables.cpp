#include "machine/snapshot/tables.h"

#include "machine/snapshot/sections.h"

namespace machine {

void readSnapshot(const huxread::Document& document, Description& machine) {
  const auto top = document.top();
  if (!top) return;
  snapshot::readMachine(*top, machine);
  snapshot::readMemory(*top, machine);
  snapshot::readStorage(*top, machine);
  snapshot::readVideo(*top, machine);
  snapshot::readAdapters(*top, machine);
  snapshot::readUsb(*top, machine);
  snapshot::readPrinters(*top, machine);
  snapshot::readLists(*top, machine);
  snapshot::readSettings(*top, machine);
}

}  // namespace machine
