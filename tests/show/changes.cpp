#include "show/changes.h"

#include <gtest/gtest.h>

#include "show/machines.h"

// Changes as people read them.

using machine::Description;
using machine::Value;

namespace {

std::string told(const Description& before, const Description& after) {
  return show::render(show::changeLines(inspect::compare(before, after, {}).changes), 80, false);
}

Value text(const char* value) {
  return std::string(value);
}

Value number(std::int64_t value) {
  return value;
}

}  // namespace

TEST(Changes, AreReadAsPeopleSayThem) {
  Description before(machine::Source::Debug);
  Description after(machine::Source::Debug);
  const auto add = [&](std::string_view table, Cells old, Cells now) {
    if (old.size() != 0) addRow(before, table, old);
    if (now.size() != 0) addRow(after, table, now);
  };
  const std::string longText(70, 'x');
  add("machine",
      {
          {"os_version",           text("14.4")},
          {"integrity_protection", Value(true) }
  },
      {{"os_version", text("14.5")}, {"integrity_protection", Value(false)}});
  add("disks",
      {
          {"model",      text("A")           },
          {"size_bytes", number(500107862016)}
  },
      {{"model", text("A")}, {"size_bytes", number(500107862017)}});
  add("disks",
      {
  },
      {{"model", text("B\33[2J\nC")}, {"size_bytes", number(1000204886016)}});
  add("usb",
      {
          {"name",         text("Hub") },
          {"speed_mbit_s", Value(480.0)},
          {"power_ma",     number(100) }
  },
      {{"name", text("Hub")}, {"speed_mbit_s", Value(5000.0)}, {"power_ma", number(500)}});
  add("disks",
      {
          {"model",  text("C") },
          {"serial", text("S1")}
  },
      {{"model", text("C")}, {"serial", text("S2")}});
  for (const char* path : {"/1", "/2"}) {
    add("software",
        {
            {"path",    text(path)  },
            {"name",    text("Tool")},
            {"version", text("1")   }
    },
        {});
  }
  add("software",
      {
          {"path",      text("/3")      },
          {"name",      text("App")     },
          {"version",   text("1")       },
          {"info",      text("1, Maker")},
          {"signed_by", text("Me")      }
  },
      {{"path", text("/3")},
       {"name", text("App")},
       {"version", text("2")},
       {"info", text("2, Maker")},
       {"signed_by", longText}});
  EXPECT_EQ(told(before, after),
            "  system version 14.4 -> 14.5\n"
            "  integrity protection yes -> no\n"
            "  disk A: size 500107862016 -> 500107862017 bytes\n"
            "- disk C S1\n"
            "+ disk B\\u001B[2J C 1 TB\n"
            "+ disk C S2\n"
            "  USB device Hub: speed 480 -> 5000 Mbit/s, power 100 -> 500 mA\n"
            "- application Tool 1 (2 times)\n"
            "  App 1 -> 2, signed by Me -> " +
                std::string(49, 'x') + "…\n");
}
