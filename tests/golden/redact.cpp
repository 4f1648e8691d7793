#include "redact/redact.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "golden/machine.h"
#include "huxread/check.h"
#include "machine/describe.h"
#include "support/fakeHost.h"

// Every machine without its secrets: looked for in another way than the product does.

namespace {

using huxread::Container;
using machine::Description;
using machine::Secret;

std::string replaced(std::string text, const std::string& before, const std::string& after) {
  for (std::size_t at = 0; (at = text.find(before, at)) != std::string::npos; at += after.size()) {
    text.replace(at, before.size(), after);
  }
  return text;
}

// One spelling of all: small letters, straight apostrophes, no separators.
std::string squeezed(const std::string& text) {
  std::string plain = replaced(replaced(toLower(text), "\xE2\x80\x99", "'"), "&apos;", "'");
  std::erase_if(plain,
                [](char c) { return std::string_view(":.- _").find(c) != std::string_view::npos; });
  return plain;
}

std::string textsOf(const Container& file) {
  std::string texts = file.headerText();
  for (const huxread::Section& section : file.sections()) texts += *file.text(section.number);
  return texts;
}

// The lines that differ, each as it was and as it is; how long a deflated section is, zlib decides.
std::string changedLines(const Container& before, const Container& after) {
  std::istringstream old(textsOf(before)), now(textsOf(after));
  std::string changed;
  for (std::string one, other; std::getline(old, one) && std::getline(now, other);) {
    if (one == other || one.starts_with("length=") || one.starts_with("offset=")) continue;
    changed.append("- ").append(one).append("\n+ ").append(other).append("\n");
  }
  return changed;
}

// What has ", " between it.
std::vector<std::string> listed(std::string_view text) {
  std::vector<std::string> items;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(", ", at), text.size());
    items.emplace_back(text.substr(at, end - at));
    at = end + 2;
  }
  return items;
}

// Whether the value stands there as a word; a long one also within others.
bool holds(const std::string& texts, const std::string& value) {
  const auto isWord = [&](std::size_t at) {
    return at < texts.size() && std::isalnum(static_cast<unsigned char>(texts[at])) != 0;
  };
  for (std::size_t at = texts.find(value); at != std::string::npos;
       at = texts.find(value, at + 1)) {
    if (value.size() >= 12 || (!isWord(at - 1) && !isWord(at + value.size()))) return true;
  }
  return false;
}

class Check {
 public:
  Check(const Container& before, const Description& machine, const Container& after,
        const redact::Redacted& result)
      : machine_(machine), texts_(toLower(textsOf(after))), squeezed_(squeezed(texts_)) {
    FakeHost host;
    auto described = machine::describe(after, host);
    EXPECT_TRUE(described);
    if (described) now_ = std::move(*described);
    for (const auto& word : result.common) told_.insert(squeezed(word));
    for (const auto& word : result.everybodys) told_.insert(squeezed(word));
    EXPECT_EQ(huxread::check(after).size(), huxread::check(before).size());
    EXPECT_EQ(after.sections().size(), before.sections().size());
    for (std::size_t i = 0; i < after.sections().size(); ++i) {
      EXPECT_EQ(after.sections()[i].type, before.sections()[i].type);
      EXPECT_EQ(after.sections()[i].timestamp, before.sections()[i].timestamp);
    }
  }

  void tables() {
    for (std::size_t t = 0; t < machine::kTableCount; ++t) {
      const auto& rows = machine_[t].rows;
      ASSERT_EQ(now_[t].rows.size(), rows.size()) << machine::kTables[t].name;
      for (std::size_t r = 0; r < rows.size(); ++r) {
        for (std::size_t c = 0; c < rows[r].size(); ++c) {
          value(machine::kTables[t], machine::kTables[t].columns[c], rows[r][c],
                now_[t].rows[r][c]);
        }
      }
    }
  }

 private:
  void value(const machine::Table& table, const machine::Column& column,
             const machine::Value& before, const machine::Value& after) {
    const std::string name = std::string(table.name) + "." + std::string(column.name);
    const std::string text(machine::textOf(before));
    EXPECT_EQ(after.index(), before.index()) << name << " " << text;
    if (text.empty()) {
      EXPECT_EQ(after, before) << name;  // numbers and flags
    }
    if (column.secret == Secret::None || text.empty()) return;
    const bool whole = column.secret == Secret::Whole;  // also words that stand anywhere
    if (whole) {
      EXPECT_NE(after, before) << name << " " << text;
    }
    const bool list = column.secret == Secret::NetworkAddress;
    for (const std::string& item : list ? listed(text) : std::vector{text}) {
      const std::string home = column.secret == Secret::Home ? homeIn(item) : item;
      const std::string volume = replaced(home, "/Volumes/", "");
      if (whole || home.empty() || told_.contains(squeezed(home)) ||
          told_.contains(squeezed(volume)))
        continue;
      EXPECT_NE(after, before) << name << " " << text;
      if (home.size() < 5) continue;  // can stand anywhere by chance
      EXPECT_FALSE(holds(texts_, toLower(home))) << name << " " << home;
      if (squeezed(home).size() >= 10) {
        EXPECT_EQ(squeezed_.find(squeezed(home)), std::string::npos) << name << " " << home;
      }
    }
  }

  static std::string homeIn(const std::string& path) {
    if (!path.starts_with("/Users/") || path.starts_with("/Users/Shared") || path == "/Users/Guest")
      return "";
    return path.substr(0, path.find('/', 7));
  }

  const Description& machine_;
  Description now_{machine::Source::Snapshot};
  std::string texts_;
  std::string squeezed_;
  std::set<std::string> told_;
};

std::vector<Machine> everyFile() {
  std::vector<Machine> all;
  for (Machine machine : distinctMachines()) {
    for (const bool debug : {false, true}) {
      machine.debug = debug;
      all.push_back(machine);
    }
  }
  return all;
}

// What the product may leave to stand elsewhere; the rest is looked for.
const std::map<std::string, std::set<std::string>> kCommon = {
    {"mac",
     {"247083", "Halden LX27Q", "Office", "Office VPN", "PICTURES", "SERVICE", "Scratch",
      "Tarn Headset 2", "Vault", "Vault Go"}                         },
    {"tower",   {"07A1", "0A-5"}                                     },
    {"virtual", {"runner", "vm"}                                     },
    {"silicon", {"1337", "Archive", "HALDEN LX27Q", "Pinnow USB LAN"}},
};
const std::vector<std::string> kEverybodys = listed(
    "/, /System/Volumes/Data, /home, /net, AirPort, Automatic, Bluetooth, "
    "Bluetooth File Transfer, Bluetooth PAN, Built-in Microphone, Built-in Output, "
    "Card Reader, Data, EFI, Ethernet, Ethernet 1, Ethernet 2, FireWire, Guest, Guest User, "
    "Home, Internet Sharing, MacBook Pro, MacBook Pro Camera, MacBook Pro Microphone, "
    "MacBook Pro Speakers, Macintosh HD, Not Provided, Recovery, Recovery HD, "
    "Thunderbolt Bridge, WORKGROUP, Wi-Fi, _coreaudiod, _mdnsresponder, _windowserver, "
    "disk0s2, disk1s2, disk1s6, disk5s2, empty, en0, en1, home, iSCPreboot, local, "
    "map -hosts, map auto_home, net, root, volumes");

class GoldenRedacted : public testing::TestWithParam<Machine> {};

}  // namespace

TEST_P(GoldenRedacted, HoldsNoSecretAndIsOtherwiseTheSameAlsoTwice) {
  scan(GetParam(), [](const Container& file, const std::string& /*bytes*/) {
    FakeHost host;
    const auto machine = machine::describe(file, host);
    const auto result = redact::redact(file, host, {}, "");
    ASSERT_TRUE(machine && result);
    EXPECT_TRUE(result->left.empty());
    const auto after = Container::parse(result->file);
    ASSERT_TRUE(after) << after.error().message;
    Check(file, *machine, *after, *result).tables();
    const std::string name = GetParam().name;
    expectGolden(name, goldenPage(name, GetParam().debug ? "-debug.redacted" : ".redacted"),
                 changedLines(file, *after));
    EXPECT_THAT(result->common, testing::Each(testing::AnyOfArray(kCommon.at(GetParam().name))));
    EXPECT_THAT(result->everybodys, testing::Each(testing::AnyOfArray(kEverybodys)));
    EXPECT_TRUE(result->parts.empty());
    const auto again = redact::redact(*after, host, {}, "");
    ASSERT_TRUE(again);
    EXPECT_TRUE(again->left.empty());
    for (const redact::Kind kind : {redact::Kind::User, redact::Kind::Host, redact::Kind::Volume}) {
      EXPECT_EQ(again->counts[static_cast<std::size_t>(kind)].values, 0U) << redact::nameOf(kind);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Machines, GoldenRedacted, testing::ValuesIn(everyFile()),
                         [](const auto& machine) {
                           return testName(machine) + (machine.param.debug ? "Debug" : "");
                         });
