#include "huxread/document.h"

#include <gtest/gtest.h>

#include <string>

namespace huxread {

namespace {

constexpr const char* kFirstLine = "\xEF\xBB\xBF?keva\n";

std::string propertiesText(std::span<const Property> properties) {
  std::string text;
  for (const auto& [key, value] : properties) text += "~" + std::string(key) + "=>" += value;
  return text;
}

// "name=>value~key=>text", attributes behind "|", children in braces; of all tags from `tag` on.
std::string shape(std::optional<TagView> tag) {
  std::string text;
  for (; tag; tag = tag->nextSibling()) {
    text += std::string(tag->name()) + "=>" += tag->value();
    text += propertiesText(tag->properties());
    for (const Attribute& attribute : tag->attributes()) {
      text += "|" + std::string(attribute.name) + "=>" += attribute.value;
      text += propertiesText(attribute.properties);
    }
    text += tag->firstChild() ? "{" + shape(tag->firstChild()) + "}" : ";";
  }
  return text;
}

std::string repeated(const char* text, std::size_t times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

}  // namespace

TEST(Document, IsTheTreeOfItsText) {
  const struct {
    const char* text;
    const char* tree;
  } cases[] = {
      {"",                                                                     ""                         },
      {"+A=1\n~p=q=r\nx=y=z\n~p=\n~p=2\nw=\n~u=GB\n*B=\nc=\n+C=\n-\n-\n*D=\n",
       "A=>1~p=>q=r|x=>y=z~p=>~p=>2|w=>~u=>GB{B=>|c=>;C=>;}D=>;"                                          },
      {"+A=\n*B=1\nb=1\nb=2\n*B=2\n-\n",                                       "A=>{B=>1|b=>1|b=>2;B=>2;}"},
      {"*Soft:A=B 1.0=A=B\n",                                                  "Soft:A=B 1.0=>A=B;"       },
      {"*Soft:A=B=A=B\n",                                                      "Soft:A=B=>A=B;"           },
      {"*Soft:A= 2=A 3=A= 2=A\n",                                              "Soft:A= 2=A 3=>A= 2=A;"   },
      {"*library: A 1=2=A\n",                                                  "library: A 1=2=>A;"       },
      {"*Device:1=A=1\n",                                                      "Device:1=>A=1;"           },
      {"*Soft:A==\n",                                                          "Soft:A=>=;"               },
      {"*Soft:A===A==\n",                                                      "Soft:A===>A==;"           },
      {"*A=B:C=B\n",                                                           "A=>B:C=B;"                },
  };
  for (const auto& [text, tree] : cases) {
    Result<Document> parsed = Document::parse(kFirstLine + std::string(text));
    ASSERT_TRUE(parsed) << parsed.error().message;
    const Document moved = std::move(*parsed);
    EXPECT_EQ(shape(moved.top()), tree) << text;
  }
  for (const std::size_t many : {125U, 127U}) {  // the last place that is tried, and one behind it
    const std::string equals(many, '=');
    const auto parsed = Document::parse(kFirstLine + ("*Soft:A " + equals) + "=A\n");
    EXPECT_EQ(parsed->top()->value(), many == 125 ? "A" : equals + "A");
  }
}

TEST(Document, LooksUpTheFirstOfThatName) {
  const auto document =
      Document::parse(std::string(kFirstLine) + "+A=\n*B=1\nx=2\n~k=3\nx=4\n*B=5\n*C=\n~k=6\n-\n");
  ASSERT_TRUE(document);
  const TagView top = *document->top();
  EXPECT_EQ(top.child("B")->value(), "1");
  EXPECT_EQ(top.child("B")->attribute("x"), "2");
  EXPECT_EQ(top.child("B")->attributes()[0].property("k"), "3");
  EXPECT_EQ(top.child("C")->property("k"), "6");
  EXPECT_FALSE(top.child("D"));
  EXPECT_FALSE(top.child("C")->attribute("k"));
}

TEST(Document, SaysWhichLineIsWrongAndKeepsThoseAbove) {
  const std::string tooDeep = repeated("+A=\n", Document::kMaxDepth + 1);
  const std::string tooLong = repeated("\n", Document::kMaxLines + 1);
  const struct {
    std::string text;
    std::size_t line;
    const char* message;
    const char* tree;
  } cases[] = {
      {"+A=\n",                 3,   "is missing: a branch is not ended",  "A=>;"        },
      {"*A=\n-\n",              3,   "ends a branch, and none is open",    "A=>;"        },
      {"*A=\nb=1",              3,   "is cut off",                         "A=>;"        },
      {"*A=1",                  2,   "is cut off",                         ""            },
      {"*A\n",                  2,   "is no entry",                        ""            },
      {"*A=\n\n",               3,   "is no entry",                        "A=>;"        },
      {"*A=\n-b=1\n",           3,   "is no entry",                        "A=>;"        },
      {"a=\n",                  2,   "belongs to no tag",                  ""            },
      {"+A=\n+B=\n-\n~k=\n-\n", 5,   "belongs to no tag",                  "A=>{B=>;}"   },
      {tooLong,                 1,   "begins more lines than can be read", ""            },
      {tooDeep,                 514, "begins a branch in too many others", "A=>{A=>{A=>{"},
  };
  for (const auto& [text, line, message, tree] : cases) {
    const auto parsed = Document::parse(kFirstLine + text);
    EXPECT_EQ(parsed ? "" : parsed.error().message, "line " + std::to_string(line) + " " + message);
    std::size_t stopped = 0;
    const Document salvaged = Document::salvage(kFirstLine + text, stopped);
    EXPECT_EQ(stopped, line);
    EXPECT_EQ(shape(salvaged.top()).substr(0, 12), tree) << line;
  }
  EXPECT_EQ(Document::parse("*A=\n").error().message, "line 1 does not begin a document");
  const auto deep = Document::parse(kFirstLine + tooDeep.substr(4) + repeated("-\n", 512));
  EXPECT_TRUE(deep) << deep.error().message;
}

}  // namespace huxread
