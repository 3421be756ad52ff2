#include "system/path_text.h"

#include <gtest/gtest.h>

namespace tolvane::system {
namespace {

TEST(PathTextTest, AnyTextComesBackFromAPath) {
  EXPECT_EQ(pathOf("账套 é.ais").string(), "账套 é.ais");
  EXPECT_EQ(pathOf("账套.ais"), std::filesystem::path(u8"账套.ais"));
  EXPECT_EQ(pathOf("").string(), "");
}

}  // namespace
}  // namespace tolvane::system
