#include "show/changes.h"

#include <gtest/gtest.h>

#include "support/rows.h"

// Changes as people read them.

using machine::Description;

namespace {

std::string told(const Description& before, const Description& after) {
  return show::render(show::changeLines(inspect::compare(before, after, {}).changes), 80, false);
}

}  // namespace

TEST(Changes, AreReadAsPeopleSayThem) {
  const Description before = described(machine::Source::Debug, R"(
      machine: os_version=14.4 | integrity_protection=true
      disks: model=A | size_bytes=500107862016
      usb: name=Hub | speed_mbit_s=480 | power_ma=100
      disks: model=C | serial=S1
      software: path=/1 | name=Tool | version=1
      software: path=/2 | name=Tool | version=1
      software: path=/4 | name=Moved | version=1
      software: path=/3 | name=App | version=1 | info=1, Maker | signed_by=Me)");
  Description after = described(machine::Source::Debug, R"(
      machine: os_version=14.5 | integrity_protection=false
      disks: model=A | size_bytes=500107862017
      disks: size_bytes=1000204886016)");
  lastValue(after, "disks", "model") = "B\33[2J\nC";
  addRows(after, R"(
      usb: name=Hub | speed_mbit_s=5000 | power_ma=500
      disks: model=C | serial=S2
      software: path=/5 | name=Moved | version=1
      software: path=/3 | name=App | version=2 | info=2, Maker)");
  lastValue(after, "software", "signed_by") = std::string(70, 'x');
  EXPECT_EQ(told(before, after),
            "  system version 14.4 -> 14.5\n"
            "  integrity protection yes -> no\n"
            "  disk A: size 500107862016 -> 500107862017 bytes\n"
            "- disk C S1\n"
            "+ disk B\\u001B[2J C 1 TB\n"
            "+ disk C S2\n"
            "  USB device Hub: speed 480 -> 5000 Mbit/s, power 100 -> 500 mA\n"
            "- application Tool 1 (2 times)\n"
            "- application Moved 1 /4\n"
            "  App 1 -> 2, signed by Me -> " +
                std::string(49, 'x') + "…\n+ application Moved 1 /5\n");
}
