#include "postprocess/firewall.h"

#include <string>

#include "base/formatString.h"
#include "postprocess/mapping.h"

namespace {

constexpr const char* kLimited = "spfirewall_globalstate_limit_connections";

constexpr struct {
  const char* state;
  const char* status;
} kStates[] = {
    {kLimited,                           "1"},
    {"spfirewall_globalstate_block_all", "2"},
    {"spfirewall_globalstate_allow_all", "0"},
};

constexpr Row kFirewall[] = {
    {"stealth-mode", {"spfirewall_stealthenabled"}, zeroIf("No")},
    {"fw-log",       {"spfirewall_loggingenabled"}, zeroIf("No")},
};

// Of a rule "1" means allowed, "0" blocked.
constexpr Row kRule[] = {
    {"status", {"value"}, orAbsent(zeroIf("spfirewall_block_all"))},
};

void writeRules(const Item& item, const char* source, const char* branchName, const char* prefix,
                Tag& firewall) {
  std::size_t number = 0;
  for (const Item& rule : nestedItems(item, source)) {
    Tag& tag = markedChild(*firewall.child(branchName), formatString("%s%zu", prefix, ++number));
    tag.setValue(rule.value("_name"));
    write(kRule, rule, tag);
  }
}

}  // namespace

void PostProcessFirewall(kevaDoc& snapshot, const kevaDoc& raw) {
  for (const Item& item : items(raw, "SPFirewallDataType")) {
    Tag& firewall = branch(snapshot, {"Security", "Firewall"});
    const SharedText& state = item.text("spfirewall_globalstate");
    for (const auto& row : kStates) {
      if (state == row.state) firewall.setAttribute("status", TagValue(row.status));
    }
    if (state == kLimited) {
      writeRules(item, "spfirewall_services", "Services", "service:", firewall);
      writeRules(item, "spfirewall_applications", "Apps", "app:", firewall);
    }
    write(kFirewall, item, firewall);
  }
}
