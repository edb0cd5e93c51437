#include "foundation/FileVersion.h"
#include "foundation/VersionRecord.h"
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

TEST(FileVersionTest, NamesOfLibraries) {
  const std::pair<const char*, FileVersion> rows[] = {
      {"libxerces-c-3.2.so", {3, 2, 0, 0}}, {"libFOX-1.6.so.0.0.57", {1, 6, 0, 0}},
      {"FOXDLL-1.6.57.dll", {1, 6, 57, 0}}, {"FxEx-1.3.1.510.dll", {1, 3, 1, 510}},
      {"lib2x-4.5.so", {4, 5, 0, 0}},       {"a1.2.3.4.5", {1, 2, 3, 4}},
  };
  for (const auto& [name, version] : rows)
    EXPECT_EQ(versionInName(name), version) << name;
  for (const char* name : {"Tallymoor.exe", "libz3.so", "lib7", "", "12", "3."})
    EXPECT_FALSE(versionInName(name)) << name;
  EXPECT_FALSE(versionInName("big-99999999999.1"));
}

TEST(FileVersionTest, RecordsInImages) {
  const std::string mark = TALLYMOOR_VERSION_MARK;
  EXPECT_EQ(versionInImage("x" + mark + "1.3.1.510\n y"), (FileVersion{1, 3, 1, 510}));
  EXPECT_EQ(versionInImage(mark + "2"), (FileVersion{2, 0, 0, 0}));
  // The mark without numbers, as in every image that searches for it.
  EXPECT_EQ(versionInImage(mark + std::string(1, '\0') + mark + "7.8"), (FileVersion{7, 8, 0, 0}));
  EXPECT_FALSE(versionInImage(mark));
  EXPECT_FALSE(versionInImage("nothing here"));
  EXPECT_FALSE(versionInImage(""));
}

} // namespace
} // namespace Tallymoor
