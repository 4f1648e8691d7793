#include "collect/plistToTags.h"

#include <gtest/gtest.h>

#include "support/documents.h"
#include "support/fakeHost.h"

using platform::NumberType;
using platform::PropertyList;

TEST(PlistToTags, WritesEveryDataTypeBelowItsName) {
  FakeHost host;
  const auto root = host.parsePropertyList(R"(<array>
      <dict><key>_dataType</key><string>SPFontsDataType</string><key>a</key><string/></dict>
      <string>no dictionary</string><dict><key>a</key><string>no name</string></dict>
      <dict><key>_dataType</key><string>SPLogsDataType</string><key>a</key><string/></dict>
      <dict><key>_dataType</key><integer>1</integer><key>a</key><string>none</string></dict>
      <dict>
        <key>_dataType</key><string>SPa</string>
        <key>_properties</key><dict><key>a</key><string>b</string></dict>
        <key>_detailLevel</key><integer>-1</integer>
        <key>_timeStamp</key><date>2017-12-31T21:00:00Z</date>
        <key>count</key><integer>123</integer>
        <key>spfirewall_services</key><dict><key>A b</key><string>on</string></dict>
        <key>_items</key>
        <array>
          <dict>
            <key>_properties</key><string>kept below</string>
            <key>a b</key><string>earlier</string><key>a/b</key><string> b &#10; c </string>
            <key>empty</key><string/><key>real</key><real>2.5</real>
            <key>no</key><true/><key>non</key><data>AA==</data><key>none</key><dict/>
            <key>list</key>
            <array><array/><array><string>x</string></array><true/><integer>-7</integer></array>
            <key>two lists</key><array><dict><key>a</key><string>1</string></dict><dict><key>d e</key><string>4</string><key>d/e</key><string>5</string></dict></array>
            <key>two_lists</key>
            <array>
              <dict><key>b</key><string>2</string></dict><dict><key>c</key><string>3</string></dict>
            </array>
            <key>spfirewall_applications</key>
            <dict>
              <key>A b</key><string>on</string>
              <key>B</key><dict><key>x</key><string>y</string></dict>
              <key>C</key><string>off</string>
            </dict>
            <key>spfirewall_services</key><string>no rules</string>
          </dict>
          <string>x</string>
        </array>
      </dict></array>)");
  ASSERT_TRUE(root);
  kevaDoc document(true, "Macintosh");
  convertProfile(host, *root, document);
  EXPECT_EQ(textOf(document),
            "+Macintosh=\n+SPa=\n_timeStamp=20180101000000.000000+180\ncount=123\n"
            "*spfirewall_services=\nA_b=on\n"
            "+_items=\nitem1=x\n"
            "+item0=\n_properties=kept below\na_b=b \r c\nempty=\nreal=2.50\n"
            "spfirewall_services=no rules\n"
            "+list=\nitem3=-7\n*item1=\nitem0=x\n-\n"
            "+two_lists=\n*item0=\na=1\nb=2\n*item1=\nd_e=5\nc=3\n-\n"
            "+spfirewall_applications=\n"
            "*item0=\n_name=A b\nvalue=on\n*item2=\n_name=C\nvalue=off\n-\n"
            "-\n-\n-\n-\n");
}

TEST(PlistToTags, StoresNumbersByTheirType) {
  constexpr std::int64_t kLarge = 0x1'8000'8081;  // of every part the sign bit is set
  constexpr const char* kPart = "-2147450751";
  constexpr const char* kWide = "6442483841";
  constexpr const char* kReal = "0.50";
  PropertyList::Dictionary dataType = {
      {SharedText("_dataType"), "SPx"}
  };
  PropertyList::Array list;
  std::string top;
  std::string below;
  // In the order of the types; the last one, CGFloat, is not stored.
  for (const char* text : {"129", "32897", "2147516545", kWide, kReal, kReal, kPart, kPart, kPart,
                           kPart, kWide, kReal, kReal, kPart, kPart, ""}) {
    const auto type = static_cast<NumberType>(list.size() + 1);
    const std::string number = std::to_string(list.size());
    list.emplace_back(PropertyList::Number{type, kLarge, 0.5});
    dataType.emplace_back(SharedText("top" + number), list.back());
    if (type == NumberType::CGFloat) continue;
    top += "top" + number + "=" + text + "\n";
    below += "item" + number + "=" + text + "\n";
  }
  dataType.emplace_back(SharedText("list"), list);
  FakeHost host;
  kevaDoc document(true, "Macintosh");
  convertProfile(host, PropertyList(PropertyList::Array{dataType}), document);
  EXPECT_EQ(textOf(document, "SPx"), "+SPx=\n" + top + "*list=\n" + below + "-\n");
  const Tag* tag = document.top().findChild("SPx");
  for (const std::string number : {"3", "10"}) {  // of 64 bits
    EXPECT_NE(tag->findAttribute("top" + number)->value().text(), nullptr);
    EXPECT_EQ(tag->findChild("list")->findAttribute("item" + number)->value().text(), nullptr);
  }
}

TEST(PlistToTags, WritesSinglePartsAtTheirPath) {
  FakeHost host;
  kevaDoc document(true, "Top");
  const PropertyList::Dictionary rules = {
      {SharedText("A b"), "on" },
      {SharedText("B"),   true },
      {SharedText("C"),   "off"}
  };
  convertDictionary(host, rules, "", document);
  convertArray(host, {"x", rules}, "/list", document);
  convertNamedValues(host, rules, "/named", document);
  EXPECT_EQ(textOf(document),
            "+Top=\nA_b=on\nC=off\n+list=\nitem0=x\n*item1=\nA_b=on\nC=off\n-\n"
            "+named=\n*item0=\n_name=A b\nvalue=on\n*item2=\n_name=C\nvalue=off\n-\n-\n");
}

TEST(PlistToTags, FollowsTheDeepestNesting) {
  constexpr int kArrays = platform::Host::kMaxNesting - 3;  // within root, data type and "_items"
  std::string xml = "<string>x</string>";
  for (int i = 0; i < kArrays; ++i) xml = "<array>" + xml + "</array>";
  const kevaDoc raw = rawItems("SPx", xml);
  std::string path = "SPx/_items";
  for (int i = 0; i < kArrays; ++i) path += "/item0";
  EXPECT_EQ(textOf(raw, path), "*item0=\nitem0=x\n");
}

TEST(PlistToTags, SetsNothingAtPathsBeyondTheLongest) {
  FakeHost host;
  std::string deep = "SP";
  while (deep.size() < 2 + 2 * (std::size_t{2048} - 2)) deep += "/a";
  const std::string longest(std::size_t{16384} - std::string_view("/SPx/").size(), 'a');
  const std::tuple<std::string, std::string, bool> cases[] = {
      {"SPx",       longest,       true },
      {"SPx",       longest + "a", false},
      {deep,        "k",           true },
      {deep + "/a", "k",           false},
  };
  for (const auto& [type, key, isSet] : cases) {
    PropertyList::Dictionary dataType;
    dataType.emplace_back(SharedText("_dataType"), PropertyList(SharedText(type)));
    dataType.emplace_back(SharedText(key), PropertyList("value"));
    kevaDoc document(true, "Macintosh");
    convertProfile(host, PropertyList(PropertyList::Array{dataType}), document);
    EXPECT_EQ(textOf(document).find("=value") != std::string::npos, isSet) << type << key.size();
  }
}

TEST(PlistToTags, SanitizesKeys) {
  EXPECT_EQ(sanitizeKey(SharedText("Read/Write, it's a_b.c-d")), "Read_Write__it_s_a_b.c-d");
  EXPECT_EQ(sanitizeKey(SharedText("‘a’ ‛b “c” ´")), "_a___b_“c”_´");
  EXPECT_EQ(sanitizeKey(SharedText(std::string_view("a\0b", 3))), "a");
}
