#include "collect/profiler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fakeHost.h"

namespace {

const std::string kCommand = "system_profiler -detailLevel full -xml";
const std::string kProlog =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST "
    "1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n"
    "<array>\n";
const std::string kEpilogue = "</array>\n</plist>\n";

}  // namespace

TEST(Profiler, TakesTheWrapperByItsLength) {
  const struct {
    PieceMode mode;
    std::size_t printed;
    std::string document;
  } cases[] = {
      {PieceMode::First,  18,  ""                       },
      {PieceMode::First,  19,  "<" + kEpilogue          },
      {PieceMode::Middle, 190, ""                       },
      {PieceMode::Middle, 191, kProlog + ">" + kEpilogue},
      {PieceMode::Last,   172, ""                       },
      {PieceMode::Last,   173, kProlog + ">"            },
  };
  for (const auto& [mode, printed, document] : cases) {
    FakeHost host;
    std::string& output = host.outputs[kCommand + " SPx"] = std::string(printed, ' ');
    output[0] = '<';
    if (printed > 172) output[172] = '>';
    std::uint32_t length = 99;
    EXPECT_EQ(profileDataType(host, "SPx", mode, length), document) << printed << " bytes";
    EXPECT_EQ(length, document.empty() ? 0U : 1U) << printed << " bytes";
  }
}

TEST(Profiler, GathersTheDataTypesAndSaysHowFarItGotAfterEverySecondStep) {
  struct : FakeHost {
    std::unique_ptr<platform::CommandOutput> startCommand(const std::string& command) override {
      std::printf(".");
      return FakeHost::startCommand(command);
    }
  } host;
  std::vector<std::string> expected;
  std::vector<std::string> commands;
  for (const std::string type :
       {"Hardware",        "Network",       "Software",     "ParallelATA", "Audio",
        "Bluetooth",       "FireWire",      "Displays",     "Memory",      "Printers",
        "SerialATA",       "ParallelSCSI",  "USB",          "AirPort",     "Firewall",
        "NetworkLocation", "NetworkVolume", "Applications", "StartupItem", "DiscBurning",
        "Storage",         "NVMe",          "Power"}) {
    commands.push_back(kCommand + " SP" + type + "DataType");
    const bool damaged = type == "Hardware" || type == "Audio" || type == "Power";
    const std::string piece = "<string>" + type + (damaged ? "" : "</string>\n");
    host.outputs[commands.back()] = kProlog + piece + kEpilogue;
    if (!damaged) expected.push_back(type);
  }
  testing::internal::CaptureStdout();
  const platform::PropertyList profile = collectProfile(host, true);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "..10%\n..20%\n..30%\n..40%\n..50%\n...60%\n..70%\n..80%\n..90%\n....100%\n");
  std::vector<std::string> found;
  for (const auto& element : *profile.array()) found.push_back(*element.text());
  EXPECT_EQ(found, expected);
  EXPECT_EQ(host.commands, commands);
  EXPECT_THAT(host.readSizes, testing::Each(65536U));
}
