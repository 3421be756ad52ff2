#include "tsql/table_text.h"

#include <gtest/gtest.h>

namespace tolvane::tsql::testing {
namespace {

constexpr std::string_view made =
    R"(CREATE TABLE "t ""x"""("id" INTEGER CONSTRAINT "PK_t" PRIMARY KEY AUTOINCREMENT CHECK ("id"<9),)"
    R"("a" nvarchar(20) COLLATE TSQL NOT NULL CONSTRAINT "DF" DEFAULT 'it''s, )' /*(N'it''s, )')*/,)"
    R"("m" decimal text(10,2) DEFAULT (ts_now()),"n" int DEFAULT -5,)"
    R"(CONSTRAINT "FK" FOREIGN KEY ("a","n") REFERENCES "p"("k","l") ON DELETE SET NULL ON UPDATE CASCADE,)"
    R"(CONSTRAINT "CK" CHECK (("n" IS NOT NULL) OR "m">'1')))";

TEST(TableText, IsPutTogetherAgainAsItWas) {
  const auto table = TableText::of(made);
  ASSERT_TRUE(table);
  EXPECT_EQ(table->text(), made);
  EXPECT_EQ(TableText::of(table->text())->text(), made);
}

TEST(TableText, TellsTheClausesOfAColumn) {
  auto table = TableText::of(made);
  const auto* column = table->find("A");
  ASSERT_NE(column, nullptr);
  EXPECT_EQ(column->type, "nvarchar(20)");
  ASSERT_EQ(column->clauses.size(), 3U);
  EXPECT_EQ(column->clauses[0].text, "COLLATE TSQL");
  EXPECT_EQ(column->clauses[1].text, "NOT NULL");
  EXPECT_EQ(column->clauses[2].name, "DF");
  EXPECT_EQ(column->clauses[2].text, "DEFAULT 'it''s, )'");
  EXPECT_EQ(column->clauses[2].note, "(N'it''s, )')");
  EXPECT_EQ(table->find("m")->type, "decimal text(10,2)");
  EXPECT_EQ(table->find("m")->find("default")->text, "DEFAULT (ts_now())");
  EXPECT_EQ(table->find("n")->find("DEFAULT")->text, "DEFAULT -5");
  EXPECT_EQ(table->find("nothing"), nullptr);
}

TEST(TableText, TellsForeignKeys) {
  const auto table = TableText::of(made);
  const auto key = foreignKeyOf(table->constraints.at(0));
  ASSERT_TRUE(key);
  EXPECT_EQ(key->columns, (std::vector<std::string>{"a", "n"}));
  EXPECT_EQ(key->table, "p");
  EXPECT_EQ(key->referenced, (std::vector<std::string>{"k", "l"}));
  EXPECT_EQ(key->onDelete, "SET NULL");
  EXPECT_EQ(key->onUpdate, "CASCADE");
  EXPECT_FALSE(foreignKeyOf(table->constraints.at(1)));
  EXPECT_EQ(namesIn(table->constraints.at(1).text), (std::vector<std::string>{"n", "m"}));
}

TEST(TableText, IsNothingForOtherTexts) {
  for (const std::string_view text : {"", "CREATE TABLE t AS SELECT 1", "CREATE TABLE t (", "CREATE TABLE t ()",
                                      "CREATE TABLE t (a int DEFAULT ('", "CREATE VIEW v AS SELECT ')'"}) {
    EXPECT_FALSE(TableText::of(text)) << text;
  }
}

}  // namespace
}  // namespace tolvane::tsql::testing
