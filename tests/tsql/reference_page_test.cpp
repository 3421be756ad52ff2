#include "tsql/reference_page.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace tolvane::tsql::testing {
namespace {

TEST(ReferencePage, IsTheOneInTheDocs) {
  std::ifstream file(std::string(TOLVANE_SOURCE_DIR) + "/docs/tsql.md");
  std::stringstream committed;
  committed << file.rdbuf();
  EXPECT_TRUE(committed.str() == referencePage()) << "docs/tsql.md is out of date: build/tsql_docs > docs/tsql.md";
}

}  // namespace
}  // namespace tolvane::tsql::testing
