#include "host/nearest_name.h"

#include <gtest/gtest.h>

namespace tolvane::host {
namespace {

TEST(NearestNameTest, FindsMisspelledNamesInAnyLetterCase) {
  const std::vector<std::string> names{"GetRptlist", "GetRptPlx", "SavePlxToSrv"};
  EXPECT_EQ(nearestName("getrptlst", names), "GetRptlist");
  EXPECT_EQ(nearestName("SavePlxToServ", names), "SavePlxToSrv");
  EXPECT_EQ(suggestion("GetRptPlz", names), " Did you mean GetRptPlx?");
}

TEST(NearestNameTest, SuggestsNothingForAnotherName) {
  EXPECT_EQ(nearestName("DeleteEverything", {"GetRptlist", "GetRptPlx"}), "");
  EXPECT_EQ(suggestion("x", {}), "");
}

}  // namespace
}  // namespace tolvane::host
