#include "show/card.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "show/columns.h"
#include "show/machines.h"

namespace {

constexpr std::int64_t kNow = 1795274525 + 245;

const std::vector<std::string> kFindings = {"the disk \"Kestrel Backup\" is failing",
                                            "the firewall is off", "three"};

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// Without the escape sequences that this program writes.
std::string withoutColours(std::string text) {
  for (std::size_t at = 0; (at = text.find("\x1B[", at)) != std::string::npos;) {
    text.erase(at, text.find('m', at) + 1 - at);
  }
  return text;
}

}  // namespace

TEST(Card, ShowsAMachineOnOneScreen) {
  EXPECT_EQ(show::card(notebook(), "MARA'(1).hux", kFindings, kNow, {}),
            R"(Mara’s MacBook Pro                                    debug file, agent 17.05.24
MacBook Pro (MacBookPro18,3)  C02XK0AAJGH5   scanned 2026-11-21 16:22, 4 min ago

system    macOS 14.5 (23F79) Sonoma, arm64, up 12 days
chip      Apple M1 Pro, 8 performance + 2 efficiency cores
memory    16 GB LPDDR5, soldered
display   Color LCD 14.2", 3024 x 1964, built-in
          LG HDR 4K, 3840 x 2160
disk      APPLE SSD AP0512R, 500 GB SSD, internal, healthy
          Kestrel Backup, 4 TB HDD, external, failing
volume    Macintosh HD +2    361 of 494 GB used, encrypted APFS
          日本語のバックア…  3.9 of 4 TB used, Journaled HFS+
          Cryptex            9 KB
network   en0 Wi-Fi  192.168.1.20  F8-4D-89-00-11-22
battery   87 % of its capacity left, 312 cycles, Good, 54 % charged
attached  1 USB device
software  318 applications, 12 not from a known developer

! the disk "Kestrel Backup" is failing
! 2 findings more: huxutil verify --complete 'MARA'\''(1).hux'
)");
  const std::string name(40, 'm');
  EXPECT_TRUE(show::card(notebook(), name, kFindings, kNow, {}).ends_with("--complete FILE\n"));
}

TEST(Card, LeavesOutWhatIsNotKnown) {
  EXPECT_EQ(show::card(machine::Description(machine::Source::Snapshot), "a.hux", {}, kNow, {}),
            "a Mac" + std::string(67, ' ') + "snapshot\n\n");
}

TEST(Card, FitsAnyTerminalWhateverTheFileHolds) {
  for (const int width : {-1, 1, 50, 80, 200}) {
    for (const auto& machine : {notebook(), monster()}) {
      const std::string card =
          show::card(machine, std::string(90, 'x'), kFindings, kNow, {true, width, true});
      const std::vector<std::string> lines = linesOf(withoutColours(card));
      EXPECT_LE(lines.size(), 23U);
      for (const std::string& line : lines) {
        EXPECT_LE(show::columnsOf(line), static_cast<std::size_t>(std::clamp(width, 1, 80)))
            << line;
        EXPECT_EQ(show::onOneLine(line), line);
      }
    }
  }
}
