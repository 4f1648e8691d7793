#include "bytes.h"

TEST(TagPath, MakesTheTagsOnTheWay) {
  for (const auto& [path, expected] : {
           std::pair{"/Disk",        "+Top=\nDisk=x\n+Disk=\n*Part=\n-\n-\n"                },
           {"/disk/a/name", "+Top=\n+Disk=\n*Part=\n-\n+disk=\n*a=\nname=x\n-\n-\n"},
           {"/Disk/",       "+Top=\n+Disk=\n=x\n*Part=\n-\n-\n"                    },
           {"/Disk//name",  "+Top=\n+Disk=\n*Part=\nname=x\n-\n-\n"                },
           {"Disk/name",    "+Top=\n+Disk=\n*Part=\n-\n-\n*Disk=\nname=x\n"        }
  }) {
    kevaDoc document(true, "Top");
    document.top().child("Disk")->child("Part");
    document.set(path, TagValue("x"));
    EXPECT_EQ(written(document.holder()), kTextHeader + expected) << path;
  }
}

TEST(TagPath, RefusesPathsThatLeadNowhereOrTooFar) {
  std::string deepest;
  for (std::size_t i = 0; i < Tag::kMaxPathDepth; ++i) deepest += "/a";
  EXPECT_NE(kevaDoc(true, "Top").set(deepest, TagValue("x")), nullptr);
  const std::string longest(Tag::kMaxPathLength, 'a');
  for (const std::string& path : {deepest + "/a", "/" + longest, std::string("/Disk//name")}) {
    EXPECT_EQ(kevaDoc(true, "Top").set(path, TagValue("x")), nullptr);
  }
}

TEST(TagPath, ChangesTheAttributeThatIsThere) {
  kevaDoc document(true, "Top");
  document.set("/disk", TagValue("a"), "mount-point", "/");
  document.set("/disk", TagValue("b"), "mount-point", "/Volumes");
  document.set("/disk", TagValue(), "units", "GB");
  document.set("/disk", TagValue(), "mount-point");
  EXPECT_EQ(written(document.top()), "*Top=\ndisk=b\n~mount-point=/Volumes\n~units=GB\n");
}

TEST(TagPath, AddsPropertiesOneLevelBelowEachSlash) {
  kevaDoc document(true, "Top");
  document.top().child("Disk")->child("First")->child("Part");
  document.top().child("Disk")->child("Part");
  document.holder().addPropertyAt("/Disk", "a", "1");
  document.holder().addPropertyAt("/Disk/Part", "b", "3");  // below "First", not below "Disk"
  for (const char* nowhere : {"/None", "/Disk/None/Part", "/None/a/b", "Disk/Part", ""}) {
    document.holder().addPropertyAt(nowhere, "c", "4");
  }
  EXPECT_EQ(written(document.top()),
            "+Top=\n+Disk=\n~a=1\n+First=\n*Part=\n~b=3\n-\n*Part=\n-\n-\n");
}
