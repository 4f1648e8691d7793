// The questions that every host answers alike, put to each of them.

#include "platform/host.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <map>

#include "platform/apple/appleHost.h"
#include "platform/portable/portableHost.h"
#include "platform/shown.h"
#include "support/workingFolder.h"

using platform::Bundle;
using platform::Process;

namespace {

// One zone for the whole program: the platform reads it once, and knows no POSIX notation.
[[maybe_unused]] const int kZone = setenv("TZ", "Asia/Kolkata", 1);

class Hosts : public WorkingFolder, public testing::WithParamInterface<const char*> {
 protected:
  std::string parsed(const std::string& document) const {
    const auto value = host->parsePropertyList(document);
    return value ? shown(*value) : "refused";
  }

  const std::unique_ptr<platform::Host> host = []() -> std::unique_ptr<platform::Host> {
    if (GetParam() == std::string("Apple")) return std::make_unique<platform::apple::AppleHost>();
    return std::make_unique<platform::PortableHost>();
  }();
};

std::string nested(int depth) {
  std::string document;
  for (int i = 0; i < depth; ++i) document += i % 2 == 0 ? "<array>" : "<dict><key>k</key>";
  if (depth % 2 == 0) document += "<true/>";
  for (int i = depth; i-- > 0;) document += i % 2 == 0 ? "</array>" : "</dict>";
  return "<plist>" + document + "</plist>";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Machine, Hosts, testing::Values("Portable", "Apple"),
                         [](const auto& test) { return test.param; });

TEST_P(Hosts, ReadPropertyLists) {
  const struct {
    const char* xml;
    const char* value;
  } cases[] = {
      {"<integer>0</integer>",                            "3:0"                    },
      {"<integer>-7</integer>",                           "4:-7"                   },
      {"<integer> 0xfF</integer>",                        "4:255"                  },
      {"<integer>18446744073709551615</integer>",         "4:-1"                   },
      {"<real>2.5</real>",                                "6:2.500000"             },
      {"<true/>",                                         "true"                   },
      {"<date>2001-01-02T00:00:01Z</date>",               "@86401"                 },
      {"<data>AAAA</data>",                               "data"                   },
      {"<string> a\r\n\tb </string>",                     "\" a\r\n\tb \""         },
      {"<string>&lt;&#xE9;<![CDATA[&<]]></string>",       "\"<\u00E9&<\""          },
      {"<string>\U0001F34E</string>",                     "\"\U0001F34E\""         },
      {"<string> <![CDATA[x]]> <![CDATA[y]]>\n</string>", "\" x y\n\""             },
      {"<string/>",                                       "\"\""                   },
      {"<array><array/><dict/><!-- --><false/></array>",  "[ [ ] { } false ]"      },
      {"<dict><key>z</key><string>1</string><key>a</key><string>2</string><key>z</key>"
       "<array><string>3</string></array></dict>", "{ a=\"2\" z=[ \"3\" ] }"},
  };
  for (const auto& [xml, value] : cases) {
    const std::string element = xml;
    EXPECT_EQ(parsed("<plist>" + element + "</plist>"), value) << xml;
    EXPECT_EQ(parsed("\xEF\xBB\xBF<plist version=\"1.0\" a=\"b\">" + element + "</plist \n>&"),
              value);
  }
}

TEST_P(Hosts, RefusePropertyListsThatAreNone) {
  for (const std::string xml :
       {"<integer>12abc</integer>", "<integer>1 </integer>", "<integer></integer>",
        "<integer>18446744073709551616</integer>", "<string>&</string>", "<string>&nbsp;</string>",
        "<string>a<!-- -->b</string>", "<string>\xFF</string>", "<string>", "<data/>", "<other/>",
        "<dict><key>a</key></dict>", "<date>2001-01-01</date>"}) {
    EXPECT_EQ(parsed("<plist>" + xml + "</plist>"), "refused") << xml;
  }
  EXPECT_TRUE(host->parsePropertyList(nested(platform::Host::kMaxNesting)).has_value());
  for (const int depth : {platform::Host::kMaxNesting + 1, 100000}) {
    EXPECT_FALSE(host->parsePropertyList(nested(depth)).has_value()) << depth;
    EXPECT_EQ(parsed("<array><string><![CDATA[]]></string>" + nested(depth)), "refused") << depth;
  }
}

// As many of them as would be too deep within each other.
TEST_P(Hosts, CountTheNestingOfTagsAlone) {
  const auto many = [](const std::string& text) {
    std::string all;
    for (int i = 0; i < 600; ++i) all += text;
    return all;
  };
  const auto list = host->parsePropertyList(
      "<?xml " + many("<array>") + "?><plist version=\"1.0\"><array >" + many("<array/>") +
      many("<array ></array >") + "<!-->" + many("<dict>") + "-->" + many("<!--dict-->") +
      "<string><![CDATA[" + many("<array>") + "]]></string></array></plist>" + many("<array>"));
  ASSERT_TRUE(list && list->array() != nullptr);
  EXPECT_EQ(list->array()->size(), 1201U);
}

TEST_P(Hosts, TakeEveryFolderForABundle) {
  namespace fs = std::filesystem;
  const auto addInfo = [](const fs::path& folder, const std::string& version) {
    fs::create_directories(folder);
    std::ofstream(folder / "Info.plist")
        << "<plist><dict><key>CFBundleIdentifier</key><string>not asked for</string>"
        << "<key>CFBundleShortVersionString</key>" << version << "</dict></plist>";
  };
  addInfo("bundles/Media Viewer.plugin/Contents", "<string>11.1</string>");
  addInfo("bundles/number.plugin/Contents", "<real>2.5</real>");
  addInfo("bundles/old.bundle/Support Files", "<string>1.0</string>");
  addInfo("bundles/unreadable/Contents", "&");
  addInfo("bundles/.hidden", "<string>7</string>");
  addInfo("bundles/first/Contents", "<string>1</string>");
  addInfo("bundles/first", "<string>not read</string>");
  addInfo("bundles/older/Resources", "<string>2</string>");
  addInfo("bundles/older/Support Files", "<string>not read</string>");
  addInfo("bundles/older", "<string>not read</string>");
  addInfo("bundles/list/Contents", "<array><string>1</string></array>");
  fs::create_directory("bundles/100% \u00E9");
  fs::create_directory_symlink("old.bundle", "bundles/link");
  fs::create_symlink("nowhere", "bundles/dangling");
  std::ofstream("bundles/file.plugin") << "x";

  std::map<std::string, std::string> found;
  constexpr std::string_view kKeys[] = {"WebPluginDescription", "CFBundleShortVersionString"};
  for (const Bundle& bundle : host->bundles(pathOf("bundles"), kKeys)) {
    EXPECT_EQ(bundle.path, pathOf("bundles/" + bundle.name));
    found[bundle.name] = shown(bundle.info);
  }
  EXPECT_EQ(found, (std::map<std::string, std::string>{
                       {"Media Viewer.plugin", "{ CFBundleShortVersionString=\"11.1\" }"  },
                       {"number.plugin",       "{ CFBundleShortVersionString=6:2.500000 }"},
                       {"old.bundle",          "{ CFBundleShortVersionString=\"1.0\" }"   },
                       {"unreadable",          "{ }"                                      },
                       {"first",               "{ CFBundleShortVersionString=\"1\" }"     },
                       {"older",               "{ CFBundleShortVersionString=\"2\" }"     },
                       {"list",                "{ }"                                      },
                       {".hidden",             "{ CFBundleShortVersionString=\"7\" }"     },
                       {"100% \u00E9",         "{ }"                                      },
                       {"link",                "{ CFBundleShortVersionString=\"1.0\" }"   }
  }));
  EXPECT_TRUE(host->bundles(pathOf("missing"), kKeys).empty());
  EXPECT_TRUE(host->bundles(pathOf("no text \xFF"), kKeys).empty());
}

TEST_P(Hosts, TellTheTimeOfTheirZone) {
  constexpr double k1970 = -978307200;
  EXPECT_EQ(host->formatDate(536457599, "yyyyMMddHHmmss.000000 ZZ"), "20180101052959.000000 +0530");
  EXPECT_EQ(host->formatDate(k1970 - 1, "yyyy-MM-dd"), "1970-01-01");
  EXPECT_NEAR(host->now(), static_cast<double>(std::time(nullptr)) + k1970, 60);
}

TEST_P(Hosts, FindThisProcess) {
  const std::vector<Process> processes = host->processTable();
  if (processes.empty()) GTEST_SKIP() << "no process table on this machine";
  const auto self = std::ranges::find(processes, getpid(), &Process::pid);
  ASSERT_NE(self, processes.end());
  EXPECT_EQ(self->ppid, getppid());
  EXPECT_TRUE(std::string("hosts_tests").starts_with(self->name)) << self->name;
}

TEST_P(Hosts, RunCommandsUnderTheShell) {
  const auto output = host->startCommand("printf 'a\\0b'; sleep 0.1; printf cde; exit 3");
  char buffer[5];
  EXPECT_EQ(output->read(buffer, 5), 5U);  // waits for the second part
  EXPECT_EQ(std::string(buffer, 5), std::string("a\0bcd", 5));
  EXPECT_EQ(output->read(buffer, 1), 1U);
  EXPECT_FALSE(output->atEnd());
  EXPECT_EQ(output->read(buffer, 1), 0U);
  EXPECT_TRUE(output->atEnd());
}
