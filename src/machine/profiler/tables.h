#pragma once

#include "machine/description.h"
#include "machine/profiler/profile.h"

// The tables as the profiler's document tells them. Each function fills the tables in its name and
// marks those as recorded whose data types the document holds; what the asset record tells stays.

namespace machine::profiler {

void readProfiledMachine(const Profile& profile, Description& machine);
void readProfiledMemory(const Profile& profile, Description& machine);
void readProfiledStorage(const Profile& profile, Description& machine);  // disks, volumes
void readProfiledUsb(const Profile& profile, Description& machine);
void readProfiledDisplays(const Profile& profile, Description& machine);  // displays, video
void readProfiledAdapters(const Profile& profile, Description& machine);  // and the workgroup
void readProfiledPrinters(const Profile& profile, Description& machine);
void readProfiledSoftware(const Profile& profile, Description& machine);
void readProfiledSettings(const Profile& profile,
                          Description& machine);  // firewall, power, battery
void readProfiledDevices(const Profile& profile, Description& machine);

}  // namespace machine::profiler
