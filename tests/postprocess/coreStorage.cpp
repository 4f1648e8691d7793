#include "postprocess/coreStorage.h"

#include <gtest/gtest.h>

#include <tuple>

#include "shortForms.h"

TEST(CoreStorage, MatchesByThePhysicalDriveElseByTheFirstPhysicalVolume) {
  const kevaDoc raw = rawDocument({"SPStorageDataType", R"(
{id=drive; _name=Data; physical_drive={media_name=DISK A};
  com.apple.corestorage.pv=[{_name=disk9s2; media_name=DISK A Media}]};
{id=second; _name=Data; physical_drive={media_name=DISK A}};
{id=logical; _name=HD; com.apple.corestorage.pv=[
  {_name=disk0s2; media_name=DISK A Media}; {_name=disk1s2; media_name=DISK A Media}]};
{id=other; _name=HD; com.apple.corestorage.pv=[{_name=disk0s2; media_name=DISK B Media}]})"});
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"Data",    "DISK A",         "drive 0"  },
      {"HD",      "DISK A",         "nothing"  },
      {"disk0s2", "DISK A",         "logical 1"},
      {"disk0s2", "DISK A Media 2", "nothing"  },
      {"disk0s2", "",               "logical 1"},
      {"disk1s2", "DISK A",         "nothing"  },
      {"disk9s2", "DISK A",         "nothing"  },
  };
  const CoreStorage storage(raw);
  for (const auto& [volume, model, found] : cases) {
    const CoreStorage::Match* match = storage.find(volume, model);
    EXPECT_EQ(match == nullptr
                  ? "nothing"
                  : std::string(match->volume.text("id")) + (match->logical ? " 1" : " 0"),
              found)
        << volume << ", " << model;
  }
}
