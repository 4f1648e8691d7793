#include "keva/kevaDoc.h"

#include "base/formatString.h"
#include "bytes.h"

using namespace std::string_literals;

TEST(KevaDoc, PacksSectionsWithTheirIndex) {
  kevaDoc document(false, "Top");
  document.set("/a", TagValue("x"));
  document.top().setChild("one", TagValue(std::int64_t{7}));
  document.top().child("two")->addProperty("p", "q");
  const std::string text = kTextHeader + "+Top=\na=x\n*one=7\n*two=\n~p=q\n";
  const std::string estimates =
      "[Root]\noffset=0\nlength=10\n[one]\noffset=10\nlength=7\n[two]\noffset=17\nlength=11\n";
  const auto size = static_cast<char>(text.size());
  EXPECT_TRUE(document.pack(false, false).starts_with(text + "-\n\0"s));
  EXPECT_EQ(document.pack(true, false), text + estimates + "\0\0\0"s + size + "\1\0"s);

  const std::string packed = document.pack(true, true);
  std::string_view rest = packed;
  std::string sections;
  std::string index;
  for (const char* name : {"Root", "one", "two"}) {
    const std::size_t start = packed.size() - rest.size();
    sections += takeStream(rest);
    index += formatString("[%s]\noffset=%zu\nlength=%zu\n", name, start,
                          packed.size() - rest.size() - start);
  }
  const auto place = static_cast<char>(packed.size() - rest.size());
  EXPECT_EQ(sections, "+Top=\na=x\n*one=7\n*two=\n~p=q\n");
  EXPECT_EQ(takeStream(rest), index);
  EXPECT_EQ(rest, "\0\0\0"s + place + "\1\1");
  kevaDoc copy(document);
  document.set("/a", TagValue("y"));
  EXPECT_EQ(copy.pack(true, true), packed);
}

TEST(KevaDoc, PacksWhatAPathPutBesideTheTopTag) {
  kevaDoc document(true, "Top");
  EXPECT_EQ(document.pack(false, false), kTextHeader + "*Top=\n" + std::string(102, '\0'));
  document.set("Beside/a", TagValue(std::string(5000, 'x')));
  const std::string text = kTextHeader + "*Top=\n*Beside=\na=" + std::string(5000, 'x') + "\n";
  EXPECT_EQ(document.pack(false, false), text);
  const std::string packed = document.pack(false, true);
  std::string_view rest = packed;
  EXPECT_EQ(takeStream(rest), text);
  EXPECT_EQ(rest, "\0\1KEVA"s);
}
