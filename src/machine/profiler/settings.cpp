#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "machine/cleanText.h"
#include "machine/profiler/item.h"
#include "machine/profiler/tables.h"
#include "machine/quantity.h"

namespace machine::profiler {

namespace {

constexpr std::size_t kFirewall = tableAt("firewall");
constexpr std::size_t kPower = tableAt("power");
constexpr std::size_t kBattery = tableAt("battery");

// --- firewall

Value mode(const PropertyList& value) {
  constexpr struct {
    std::string_view token;
    const char* mode;
  } kModes[] = {
      {"spfirewall_globalstate_allow_all",         "allow_all"},
      {"spfirewall_globalstate_off",               "allow_all"},
      {"spfirewall_globalstate_limit_connections", "limit"    },
      {"spfirewall_globalstate_block_all",         "block_all"},
  };
  for (const auto& known : kModes) {
    if (value.text() != nullptr && *value.text() == known.token) return known.mode;
  }
  return {};
}

Value onOrOff(const PropertyList& value) {
  const Value on = flag(value);
  if (!isKnown(on)) return {};
  return std::get<bool>(on) ? "on" : "off";
}

Value rule(const PropertyList& value) {
  constexpr struct {
    std::string_view token;
    const char* rule;
  } kRules[] = {
      {"spfirewall_allow_all",   "allow"     },
      {"spfirewall_allow_local", "local_only"},
      {"spfirewall_block_all",   "block"     },
  };
  for (const auto& known : kRules) {
    if (value.text() != nullptr && *value.text() == known.token) return known.rule;
  }
  return {};
}

constexpr struct {
  const char* key;
  const char* name;
  Convert convert;
} kGlobals[] = {
    {"spfirewall_globalstate",    "mode",         mode   },
    {"spfirewall_stealthenabled", "stealth_mode", onOrOff},
    {"spfirewall_loggingenabled", "logging",      onOrOff},
};
constexpr struct {
  const char* key;
  const char* kind;
} kRuleLists[] = {
    {"spfirewall_services",     "service"    },
    {"spfirewall_applications", "application"},
};

void addFirewallRow(TableData& table, const char* kind, Value name, Value setting) {
  Row row = emptyRow(kFirewall);
  row[columnAt("firewall", "kind")] = kind;
  row[columnAt("firewall", "name")] = std::move(name);
  row[columnAt("firewall", "setting")] = std::move(setting);
  table.rows.push_back(std::move(row));
}

void readFirewall(const Profile& profile, TableData& table) {
  table.recorded = profile.has("SPFirewallDataType");
  profile.forEach("SPFirewallDataType", [&](const PropertyList& item) {
    for (const auto& global : kGlobals) {
      const PropertyList* value = item.find(global.key);
      if (value != nullptr) addFirewallRow(table, "global", global.name, global.convert(*value));
    }
    for (const auto& list : kRuleLists) {
      const PropertyList* rules = item.find(list.key);
      if (rules == nullptr || rules->dictionary() == nullptr) continue;
      for (const auto& [name, value] : *rules->dictionary()) {
        addFirewallRow(table, list.kind, textValue(name), rule(value));
      }
    }
  });
}

// --- power

constexpr Line kProfileLines[] = {
    {"system_sleep_min",       {"System Sleep Timer"},              integer},
    {"disk_sleep_min",         {"Disk Sleep Timer"},                integer},
    {"display_sleep_min",      {"Display Sleep Timer"},             integer},
    {"sleep_on_power_button",  {"Sleep On Power Button"},           flag   },
    {"restart_on_power_loss",  {"Automatic Restart On Power Loss"}, flag   },
    {"wake_on_lan",            {"Wake On LAN"},                     flag   },
    {"wake_on_ac_change",      {"Wake On AC Change"},               flag   },
    {"wake_on_clamshell_open", {"Wake On Clamshell Open"},          flag   },
    {"reduce_brightness",      {"ReduceBrightness"},                flag   },
    {"dim_before_sleep",       {"Display Sleep Uses Dim"},          flag   },
    {"hibernate_mode",         {"Hibernate Mode"},                  integer},
    {"low_power_mode",         {"LowPowerMode"},                    flag   },
};
constexpr auto kProfile = cells("power", kProfileLines);

void addProfiles(const PropertyList& item, TableData& table) {
  for (const auto& [name, settings] : *item.dictionary()) {
    if (settings.dictionary() == nullptr) continue;
    Row row = emptyRow(kPower);
    row[columnAt("power", "profile")] = textValue(name);
    write(kProfile, settings, row);
    table.rows.push_back(std::move(row));
  }
}

// --- battery

// A number of per cent, or a text that begins with it: "99%".
Value percent(const PropertyList& value) {
  std::optional<double> share;
  const Value number = integer(value);
  if (isKnown(number)) share = static_cast<double>(std::get<std::int64_t>(number));
  if (value.text() != nullptr) share = leadingNumber(*value.text());
  constexpr double kMost = 1000;  // what is more is no share
  if (!share || *share < 0 || *share > kMost) return {};
  return static_cast<std::int64_t>(std::lround(*share));
}

constexpr Line kModelLines[] = {
    {"serial",       {"sppower_battery_serial_number"},    stated},
    {"model",        {"sppower_battery_device_name"},      text  },
    {"manufacturer", {"sppower_battery_manufacturer"},     text  },
    {"firmware",     {"sppower_battery_firmware_version"}, text  },
};
constexpr auto kModel = cells("battery", kModelLines);
constexpr Line kHealthLines[] = {
    {"condition",            {"sppower_battery_health"},                  text   },
    {"cycles",               {"sppower_battery_cycle_count"},             integer},
    {"maximum_capacity_pct", {"sppower_battery_health_maximum_capacity"}, percent},
};
constexpr auto kHealth = cells("battery", kHealthLines);
constexpr Line kChargeLines[] = {
    {"charge_pct",    {"sppower_battery_state_of_charge"}, percent},
    {"charging",      {"sppower_battery_is_charging"},     flag   },
    {"fully_charged", {"sppower_battery_fully_charged"},   flag   },
};
constexpr auto kCharge = cells("battery", kChargeLines);

// Older systems say the charge in mAh, and what the battery can hold now.
Value chargeFromCapacity(const PropertyList& charge) {
  const auto current = integerIn(charge, "sppower_battery_current_capacity");
  const auto most = integerIn(charge, "sppower_battery_max_capacity");
  if (!current || !most || *current < 0 || *most <= 0 || *current > *most) return {};
  return static_cast<std::int64_t>(
      std::lround(static_cast<double>(*current) * 100 / static_cast<double>(*most)));
}

void addBattery(const PropertyList& item, TableData& table) {
  if (flagIn(item, "sppower_battery_installed") == false) return;
  Row row = emptyRow(kBattery);
  if (const PropertyList* model = item.find("sppower_battery_model_info"))
    write(kModel, *model, row);
  if (const PropertyList* health = item.find("sppower_battery_health_info"))
    write(kHealth, *health, row);
  if (const PropertyList* charge = item.find("sppower_battery_charge_info")) {
    row[columnAt("battery", "charge_pct")] = chargeFromCapacity(*charge);
    write(kCharge, *charge, row);
  }
  if (std::ranges::any_of(row, isKnown)) table.rows.push_back(std::move(row));
}

}  // namespace

void readProfiledSettings(const Profile& profile, Description& machine) {
  readFirewall(profile, machine[kFirewall]);
  machine[kPower].recorded = machine[kBattery].recorded = profile.has("SPPowerDataType");
  profile.forEach("SPPowerDataType", [&](const PropertyList& item) {
    const std::string_view name = textIn(item, "_name");
    if (name == "sppower_information") addProfiles(item, machine[kPower]);
    if (name == "spbattery_information") addBattery(item, machine[kBattery]);
  });
}

}  // namespace machine::profiler
