#include <cstdint>
#include <string>

#include "base/formatString.h"
#include "base/text.h"
#include "machine/cleanText.h"
#include "machine/quantity.h"
#include "machine/snapshot/item.h"
#include "machine/snapshot/tables.h"

namespace machine {

namespace {

using snapshot::Convert;
using snapshot::flag;
using snapshot::machineRow;
using snapshot::stated;
using snapshot::text;
using snapshot::write;

Value upperText(std::string_view text) {
  return textValue(toUpper(text));
}

Value address(std::string_view text) {
  return text == "0.0.0.0" ? Value() : textValue(text);
}

// "20171231235959.000000+180", local time and the minutes that it is ahead of UTC, as
// "2017-12-31T23:59:59+03:00".
Value isoTime(std::string_view text) {
  constexpr std::string_view kFraction = ".000000";
  constexpr std::size_t kDigits = 14;
  constexpr std::int64_t kMostMinutes = 1440;  // a day
  if (text.size() < kDigits + kFraction.size() + 2) return {};
  const std::string digits(text.substr(0, kDigits));
  if (digits.find_first_not_of("0123456789") != std::string::npos) return {};
  if (text.substr(kDigits, kFraction.size()) != kFraction) return {};
  const char sign = text[kDigits + kFraction.size()];
  if (sign != '+' && sign != '-') return {};
  const auto minutes = wholeNumber(text.substr(kDigits + kFraction.size() + 1));
  if (!minutes || *minutes < 0 || *minutes >= kMostMinutes) return {};
  const auto part = [&](std::size_t from) { return digits.substr(from, 2); };
  return digits.substr(0, 4) + '-' + part(4) + '-' + part(6) + 'T' + part(8) + ':' + part(10) +
         ':' + part(12) + sign +
         formatString("%02d:%02d", static_cast<int>(*minutes / 60),
                      static_cast<int>(*minutes % 60));
}

constexpr snapshot::Line kAssetLines[] = {
    {"serial",       {"serial-number"},             stated   },
    {"uuid",         {"uuid"},                      upperText},
    {"name",         {"int-name"},                  text     },
    {"netbios_name", {"hostname"},                  text     },
    {"user",         {"user-name"},                 text     },
    {"login",        {"login"},                     text     },
    {"ip_address",   {"ip-address"},                address  },
    {"mac_address",  {"mac-address"},               text     },
    {"scanned_at",   {"last-scan", "scan-attempt"}, isoTime  },
};
constexpr auto kAsset = cells("machine", kAssetLines);
constexpr snapshot::Line kStaticLines[] = {
    {"static_ip", {"static-ip"}, flag},
};
constexpr auto kStatic = cells("machine", kStaticLines);
constexpr snapshot::Line kControlLines[] = {
    {"workgroup", {"domain"}, text},
};
constexpr auto kControl = cells("machine", kControlLines);

}  // namespace

void readAsset(const huxread::Document& asset, Description& machine) {
  constexpr std::size_t kAddress = columnAt("machine", "ip_address");
  Row& row = machineRow(machine);
  const auto top = asset.top();
  if (!top) return;
  write(kAsset, *top, row);
  if (isKnown(row[kAddress])) write(kStatic, *top, row);
  if (const auto control = top->child("control")) write(kControl, *control, row);
}

}  // namespace machine
