#include "postprocess/computerSystem.h"

#include "base/formatString.h"
#include "base/quantities.h"
#include "collect/hostFacts.h"
#include "postprocess/mapping.h"
#include "postprocess/memorySlots.h"

namespace {

constexpr Row kPower[] = {
    {"system-sleep-timer",         {"System_Sleep_Timer"},              copied      },
    {"disk-sleep-timer",           {"Disk_Sleep_Timer"},                copied      },
    {"display-sleep-timer",        {"Display_Sleep_Timer"},             copied      },
    {"sleep-on-power-button",      {"Sleep_On_Power_Button"},           oneIf("Yes")},
    {"auto-restart-on-power-loss", {"Automatic_Restart_On_Power_Loss"}, oneIf("Yes")},
    {"wake-on-lan",                {"Wake_On_LAN"},                     oneIf("Yes")},
    {"wake-on-ac-change",          {"Wake_On_AC_Change"},               oneIf("Yes")},
    {"wake-on-clamshell-open",     {"Wake_On_Clamshell_Open"},          oneIf("Yes")},
    {"reduce-brightness",          {"ReduceBrightness"},                oneIf("Yes")},
    {"display-sleep-uses-dim",     {"Display_Sleep_Uses_Dim"},          oneIf("Yes")},
};

void writeComputer(kevaDoc& snapshot, const Item& hardware, platform::Host& host) {
  Tag& computer = branch(snapshot, {"System", "Computer-system"});
  const bool hasModel = hardware.has("machine_model");
  computer.setAttribute("model", hasModel ? hardware.value("machine_model") : TagValue(""));
  const bool hasUuid = hardware.has("platform_UUID");
  computer.setAttribute("uuid",
                        hasUuid ? hardware.value("platform_UUID") : TagValue(platformUuid(host)));

  Tag& chassis = branch(snapshot, {"System", "Chassis"});
  chassis.setAttribute("manuf", TagValue("Apple Inc."));
  copyPresent(hardware, "serial_number", chassis, "serial");
}

// The slots of every bank are numbered from 1, so that a second bank overwrites the first; the
// section "Memory" has them all.
void writeSlot(kevaDoc& snapshot, const MemorySlot& slot) {
  Tag& tag = markedChild(branch(snapshot, {"System", "Mem-slots"}),
                         formatString("mem-slot:%u", slot.number));
  const bool used = slot.item.text("dimm_status") == "ok";
  tag.setAttribute("used", TagValue(used ? "1" : "0"));
  if (!used) return;
  const double megabytes = strictQuantity(SizeToMB, slot.item, "dimm_size");
  const std::string bytes = bytesText(strictQuantity(SizeToBytes, slot.item, "dimm_size"));
  tag.setAttribute("capacity", TagValue(truncateToInteger(megabytes)), "base-value", bytes.c_str());
}

void writePower(kevaDoc& snapshot, const Item& information) {
  Entries profiles(snapshot, {"System", "PowerManagement"}, "Profile:");
  for (const auto& tag : information.tag().children()) {
    const Item profile(*tag);
    Tag& entry =
        profiles.add(tag->name() == "AC_Power" ? TagValue("AC Power") : TagValue(tag->name()));
    write(kPower, profile, entry);
    // Also without a profile: the last one that has a setting decides.
    write(kPower, profile, branch(snapshot, {"System", "PowerManagement"}));
  }
}

}  // namespace

void PostProcessComputerSystem(kevaDoc& snapshot, const kevaDoc& raw, platform::Host& host) {
  const std::vector<Item> hardware = items(raw, "SPHardwareDataType");
  if (!hardware.empty()) writeComputer(snapshot, hardware.front(), host);
  for (const MemorySlot& slot : memorySlots(raw)) writeSlot(snapshot, slot);
  for (const Item& item : items(raw, "SPPowerDataType")) {
    if (item.text("_name") != "sppower_information") continue;
    writePower(snapshot, item);
    break;
  }
}
