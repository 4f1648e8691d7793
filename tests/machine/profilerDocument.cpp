#include <gtest/gtest.h>

#include <string>

#include "machine/profiler/profile.h"

namespace machine {
namespace {

// The names of the items of a data type; "-" for one without.
std::string namesIn(const Profile& profile, std::string_view dataType) {
  std::string names;
  profile.forEach(dataType, [&](const platform::PropertyList& item) {
    const platform::PropertyList* name = item.find("_name");
    if (!names.empty()) names += " ";
    names += name == nullptr ? "-" : std::string(*name->text());
  });
  return names;
}

std::string typed(const std::string& type, const std::string& items) {
  return "<dict><key>_dataType</key><string>" + type + "</string><key>_items</key>" + items +
         "</dict>";
}

const std::string kItem = "<dict><key>_name</key><string>a</string></dict>";

TEST(ProfilerDocument, FindsTheItemsOfItsDataTypes) {
  struct Case {
    const char* what;
    std::string document;
    const char* names;
  };
  const Case cases[] = {
      {"with everything around it that XML allows",
       "<?xml version='1.0'?><!DOCTYPE plist [<!ENTITY a '>'>]><!-- <array> --><?x > <array> ?>"
       "<plist version=\"1>0\" a='/>'>"
       "<array >\n" +
           typed("SPA",
       "<array\n><!----><!-- > </array> -->" + kItem + "<dict />\n<dict/></array>") +
           "</array></plist>",                                                       "a - -"       },
      {"without a plist element",
       "<array>" + typed("SPA",        "<array>" + kItem + "</array>") + "</array>", "a"           },
      {"in two dictionaries, with another one between them",
       "<plist><array>" + typed("SPA", "<array>" + kItem + "</array>") +
           typed("SPB",                        "<array><dict><key>_name</key><string>b</string></dict></array>") +
           typed("SPA",                 "<array>" + kItem + "</array>") + "</array></plist>",
       "a a"},
      {"with items before the type, and keys of the same name further in",
       "<plist><array><dict><key>_items</key><array><dict><key>_name</key><string>a</string>"
       "<key>_items</key><array><dict><key>_dataType</key><string>SPB</string></dict></array></"
       "dict>"
       "</array><key>_properties</key><dict><key>_items</key><array>" +
           kItem + "</array></dict><key>_dataType</key><string>SPA</string></dict></array></plist>",
       "a"  },
      {"with tags in CDATA",
       "<plist><array>" +
           typed("SPA",
       "<array><dict><key>_name</key><string><![CDATA[</dict></array>]]></string>"
                 "</dict></array>") +
           "</array></plist>",                                                              "</dict></array>"},
      {"without any",
       "<plist><array><array><true/></array>" + typed("SPA",                "<array/>") +
           "<dict/></array></plist>",                         ""                                                                      },
  };
  const auto host = platform::makeHost();
  for (const Case& c : cases) {
    const auto profile = Profile::open(c.document, *host);
    ASSERT_TRUE(profile) << c.what;
    EXPECT_TRUE(profile->has("SPA")) << c.what;
    EXPECT_EQ(namesIn(*profile, "SPA"), c.names) << c.what;
    EXPECT_FALSE(profile->cutOff()) << c.what;
    EXPECT_EQ(profile->unreadable(), 0U) << c.what;
  }
}

// Wherever it is cut, the items that are whole are there, and it says that it is cut.
TEST(ProfilerDocument, KeepsWhatIsWholeOfOneThatIsCutOff) {
  const std::string start = "<plist><array>";
  const std::string whole =
      start + typed("SPA", "<array>" + kItem + kItem + "</array>") + "</array></plist>";
  const std::size_t first = whole.find(kItem) + kItem.size();
  const std::size_t second = first + kItem.size();
  const std::size_t end = whole.rfind("</array>") + std::string("</array>").size();
  const auto host = platform::makeHost();
  for (std::size_t size = start.size(); size < whole.size(); ++size) {
    const std::string cut = whole.substr(0, size);
    const auto profile = Profile::open(cut, *host);
    ASSERT_TRUE(profile) << size;
    EXPECT_EQ(namesIn(*profile, "SPA"), size < first ? "" : size < second ? "a" : "a a") << size;
    EXPECT_EQ(profile->cutOff(), size < end) << size;
    EXPECT_EQ(profile->unreadable(), 0U) << size;
  }
}

TEST(ProfilerDocument, CountsItemsThatCannotBeRead) {
  const std::string document =
      "<plist><array>" +
      typed("SPA", "<array><dict><key>_name</key></dict>" + kItem + "<string>b</string></array>") +
      "</array></plist>";
  const auto host = platform::makeHost();
  const auto profile = Profile::open(document, *host);
  ASSERT_TRUE(profile);
  EXPECT_EQ(namesIn(*profile, "SPA"), "a");
  EXPECT_EQ(profile->unreadable(), 2U);
}

TEST(ProfilerDocument, RefusesWhatHasNoArray) {
  const auto host = platform::makeHost();
  for (const char* document :
       {"", "no list", "<plist><dict/></plist>", "<plist></plist>", "<plist"}) {
    EXPECT_FALSE(Profile::open(document, *host)) << document;
  }
}

}  // namespace
}  // namespace machine
