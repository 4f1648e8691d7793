#pragma once

#include <memory>
#include <string>

#include "collect/hostFacts.h"
#include "keva/kevaDoc.h"

// The record that identifies the scanned machine to the inventory ("AssetInfo"): names, addresses,
// how it was scanned, and in "control" the key figures of its inventory.

struct AssetFacts {
  HostFacts host;
  NetworkFacts network;
  std::string computerName;
  std::string login;
  std::string serialNumber;
  std::string timestamp;  // long form, of the present
};

// The record of a scan. The operating system, the number of monitors and the volumes are read from
// the snapshot.
std::unique_ptr<kevaDoc> buildAssetInfo(const AssetFacts& facts, const kevaDoc& snapshot,
                                        bool nativeByteOrder);

// The record of a debug file, of which no inventory is made: it says who the machine is, when it
// was tried, and nothing of what the machine has. Of the facts it uses the network's, the
// computer's name and the time.
std::unique_ptr<kevaDoc> buildDebugAssetInfo(const AssetFacts& facts, bool nativeByteOrder);
