#include <gtest/gtest.h>

#include "tsql/compiler.h"

namespace tolvane::tsql::testing {
namespace {

int errorOf(std::string_view batch) {
  try {
    shape(batch);
    return 0;
  } catch (const SqlError& error) {
    return error.number();
  }
}

TEST(Shape, IsTheSameForStatementsThatDifferInLiteralsOnly) {
  EXPECT_EQ(shape("select a from t where b='x' and c=1").key, shape("select a from t where b='it''s' and c=22").key);
}

TEST(Shape, DiffersWhereTheKindOfALiteralDiffers) {
  EXPECT_NE(shape("select 1").key, shape("select '1'").key);
  EXPECT_NE(shape("select '1'").key, shape("select N'1'").key);
  EXPECT_NE(shape("select 1").key, shape("select 3000000000").key);
  EXPECT_NE(shape("select 1.5").key, shape("select 1.55").key);
  EXPECT_NE(shape("select 1.5").key, shape("select 1e5").key);
}

TEST(Shape, TakesLiteralsInTheirOrder) {
  const ShapedBatch batch = shape("select 'it''s', 12, 1.50, 0x0A0B, 2e3, N'é'");
  ASSERT_EQ(batch.literals.size(), 6U);
  EXPECT_EQ(batch.literals[0].text, "it's");
  EXPECT_EQ(batch.literals[1].integer, 12);
  EXPECT_EQ(batch.literals[2].text, "1.50");
  EXPECT_EQ(batch.literals[3].text, "\x0A\x0B");
  EXPECT_EQ(batch.literals[4].real, 2000);
  EXPECT_EQ(batch.literals[5].type.kind, TypeKind::NVarChar);
}

TEST(Shape, EndsANumberBeforeTheWordGluedToIt) {
  const ShapedBatch batch = shape("a=1And b=2else'x'And");
  ASSERT_EQ(batch.literals.size(), 3U);
  EXPECT_EQ(batch.tokens.size(), 11U);
}

TEST(Shape, CannotBeImitatedByMarksInTheText) {
  EXPECT_EQ(errorOf("select \x01I\x02"), 102);
}

TEST(Shape, RefusesTextsAndCommentsWithoutEnd) {
  EXPECT_EQ(errorOf("select 'a"), 105);
  EXPECT_EQ(errorOf("select [a"), 105);
  EXPECT_EQ(errorOf("select /* a"), 113);
  EXPECT_EQ(errorOf("select 123456789012345678901234567890123456789"), 1007);
}

TEST(StructuralKey, TellsValuesApartThatTheProgramDependsOn) {
  const ShapedBatch first = shape("select a from t order by 1");
  const ShapedBatch second = shape("select a from t order by 2");
  EXPECT_EQ(first.key, second.key);
  EXPECT_NE(structuralKey(first, {0}), structuralKey(second, {0}));
}

TEST(StructuralKey, TellsWidthsApartWhereOnlyTheyCount) {
  const ShapedBatch first = shape("select 'ab'");
  EXPECT_EQ(structuralKey(first, {widthOf(0)}), structuralKey(shape("select 'xy'"), {widthOf(0)}));
  EXPECT_NE(structuralKey(first, {widthOf(0)}), structuralKey(shape("select 'abc'"), {widthOf(0)}));
}

}  // namespace
}  // namespace tolvane::tsql::testing
