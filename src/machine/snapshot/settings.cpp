#include <algorithm>
#include <string>

#include "machine/cleanText.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/sections.h"

namespace machine::snapshot {

namespace {

constexpr std::size_t kFirewallTable = tableAt("firewall");
constexpr std::size_t kPowerTable = tableAt("power");

Value mode(std::string_view status) {
  constexpr const char* kModes[] = {"allow_all", "limit", "block_all"};
  const std::size_t number = std::string_view("012").find(status);
  return status.size() == 1 && number < std::size(kModes) ? Value(kModes[number]) : Value();
}

Value onOrOff(std::string_view state) {
  if (state == "1") return "on";
  return state == "0" ? Value("off") : Value();
}

Value serviceRule(std::string_view status) {
  if (status == "1") return "allow";
  return status == "0" ? Value("block") : Value();
}

// An application that is allowed may be so for the local network only.
Value applicationRule(std::string_view status) {
  return status == "0" ? Value("block") : Value();
}

constexpr struct {
  const char* attribute;
  const char* name;
  Convert convert;
} kGlobals[] = {
    {"status",       "mode",         mode   },
    {"stealth-mode", "stealth_mode", onOrOff},
    {"fw-log",       "logging",      onOrOff},
};
constexpr struct {
  const char* branch;
  const char* prefix;
  const char* kind;
  Convert convert;
} kRules[] = {
    {"Services", "service:", "service",     serviceRule    },
    {"Apps",     "app:",     "application", applicationRule},
};

constexpr Line kProfileLines[] = {
    {"system_sleep_min",       {"system-sleep-timer"},         integer},
    {"disk_sleep_min",         {"disk-sleep-timer"},           integer},
    {"display_sleep_min",      {"display-sleep-timer"},        integer},
    {"sleep_on_power_button",  {"sleep-on-power-button"},      flag   },
    {"restart_on_power_loss",  {"auto-restart-on-power-loss"}, flag   },
    {"wake_on_lan",            {"wake-on-lan"},                flag   },
    {"wake_on_ac_change",      {"wake-on-ac-change"},          flag   },
    {"wake_on_clamshell_open", {"wake-on-clamshell-open"},     flag   },
    {"reduce_brightness",      {"reduce-brightness"},          flag   },
    {"dim_before_sleep",       {"display-sleep-uses-dim"},     flag   },
};
constexpr auto kProfile = cells("power", kProfileLines);

void addFirewallRow(TableData& table, const char* kind, const Value& name, const Value& setting) {
  Row& row = addRow(table, kFirewallTable);
  row[columnAt("firewall", "kind")] = kind;
  row[columnAt("firewall", "name")] = name;
  row[columnAt("firewall", "setting")] = setting;
}

void readFirewall(const TagView& firewall, TableData& table) {
  table.recorded = true;
  for (const auto& global : kGlobals) {
    const auto state = firewall.attribute(global.attribute);
    if (state) addFirewallRow(table, "global", global.name, global.convert(*state));
  }
  for (const auto& rules : kRules) {
    const auto branch = firewall.child(rules.branch);
    if (!branch) continue;
    forEach(*branch, rules.prefix, [&](const TagView& rule) {
      addFirewallRow(table, rules.kind, textValue(rule.value()),
                     rules.convert(rule.attribute("status").value_or("")));
    });
  }
}

}  // namespace

void readSettings(const TagView& top, Description& machine) {
  if (const auto firewall = find(top, {"Security", "Firewall"})) {
    readFirewall(*firewall, machine[kFirewallTable]);
  }
  const auto power = find(top, {"System", "PowerManagement"});
  if (!power) return;
  TableData& table = machine[kPowerTable];
  table.recorded = true;
  forEach(*power, "Profile:", [&table](const TagView& profile) {
    Row& row = addRow(table, kPowerTable);
    write(kProfile, profile, row);
    std::string name(profile.value());
    std::ranges::replace(name, '_', ' ');  // of "Battery Power", as of all but "AC Power"
    row[columnAt("power", "profile")] = textValue(name);
  });
}

}  // namespace machine::snapshot
