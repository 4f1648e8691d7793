#pragma once

#include <string>

#include "platform/host.h"
#include "platform/propertyList.h"

// Single facts of the machine, for the asset record and the file's name: read from the parsed
// profile itself, before it becomes a tag tree. What the machine does not say is "".
//
// A data type that the profile lacks is looked for in the profile's last entry, which then has none
// of its keys.

struct HostFacts {
  std::string userName;  // short name of the user who is logged in
  std::string localHostName;
  std::string osName;          // "macOS v10.12 (Sierra)"
  std::string osVersion;       // "Update 6 Version(build) 10.12.6 (16G29)"
  std::string processorSpeed;  // MHz
  std::string platformUuid;
  std::string processorModel;
  std::string processorManufacturer;  // "GenuineIntel" or ""
  std::string packageCount;           // processor packages; "" unless a number
  std::string systemModel;
  std::string systemManufacturer;
  std::string processorCount;   // cores; "" unless a number
  std::string physicalMemory;   // MB
  std::string diskCapacity;     // of the SATA drives together, whole binary GB
  std::string diskFree;         // of their volumes together, binary GB with one decimal
  std::string videoMemory;      // MB, of the first graphics processor
  std::string resolution;       // of the main monitor
  std::string monitorDiagonal;  // of the main monitor, whole inches
};

struct NetworkFacts {
  std::string ipAddress;  // the given one, else the active one, else "0.0.0.0"
  bool staticAddress = false;
  std::string macAddress;  // "00-1C-42-AB-CD-EF"
  std::string netbiosName;
  std::string domain;  // workgroup in upper case
};

// Runs the command for the platform's UUID (platformUuid) when the profile has an entry to read.
HostFacts collectSoftwareHardwareFacts(platform::Host& host, const platform::PropertyList& profile);

// The active connection: the first "en" interface with an address, or the first connection that has
// `ipAddress`, of whatever interface, when that is not empty; domain and NetBIOS name are those of
// its service in the active network location.
NetworkFacts collectNetworkFacts(const platform::PropertyList& profile,
                                 const std::string& ipAddress);

std::string serialNumber(const platform::PropertyList& profile);

// The hardware UUID by way of the I/O registry; "" when it does not say one.
std::string platformUuid(platform::Host& host);
