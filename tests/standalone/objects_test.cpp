#include "standalone/objects.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::standalone {
namespace {

TEST(DictionaryTest, KeepsEntriesInTheOrderOfAdding) {
  Dictionary bag;
  bag.set("FName", "x");
  bag.set("FAge", std::int32_t{3});
  EXPECT_EQ(bag.count(), 2);
  EXPECT_EQ(bag.name(1), "FName");
  EXPECT_EQ(bag.name(2), "FAge");
}

TEST(DictionaryTest, FindsKeysInAnyLetterCase) {
  Dictionary bag;
  bag.set("FName", "x");
  EXPECT_EQ(bag.item("fnAME"), Value("x"));
  bag.set("FNAME", "y");
  EXPECT_EQ(bag.count(), 1);
  EXPECT_EQ(bag.name(1), "FName");
  EXPECT_EQ(bag.item("FName"), Value("y"));
}

TEST(DictionaryTest, AnswersEmptyOrTheFallbackForAnUnknownKey) {
  Dictionary bag;
  EXPECT_EQ(bag.item("x"), Value());
  EXPECT_EQ(bag.getValue("x", std::int32_t{7}), Value(std::int32_t{7}));
}

TEST(DictionaryTest, AKeyWithoutAValueIsNotAnUnknownKey) {
  Dictionary bag;
  bag.set("x", Null{});
  EXPECT_EQ(bag.getValue("x", "fallback"), Value(Null{}));
}

TEST(DictionaryTest, RefusesPositionsOutside) {
  Dictionary bag;
  bag.set("x", true);
  EXPECT_THROW((void)bag.name(0), AutomationError);
  EXPECT_THROW((void)bag.name(2), AutomationError);
}

TEST(ListTest, CountsItemsFromOne) {
  List list;
  list.add("a");
  list.add("b");
  EXPECT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(1), Value("a"));
  EXPECT_EQ(list.item(2), Value("b"));
}

TEST(ListTest, RaisesNineOutsideItsBounds) {
  List list;
  list.add("a");
  for (const std::int32_t index : {0, 2, -1}) {
    try {
      (void)list.item(index);
      ADD_FAILURE() << index;
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), 0x800A0009U);
    }
  }
}

}  // namespace
}  // namespace tolvane::standalone
