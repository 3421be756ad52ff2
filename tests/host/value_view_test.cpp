#include "host/value_view.h"

#include <gtest/gtest.h>

#include <sstream>

#include "standalone/fake_engine.h"
#include "standalone/objects.h"

namespace tolvane::host {
namespace {

std::string printed(const Value& value, bool showSecrets = false) {
  std::ostringstream out;
  printValue(out, "result", value, showSecrets);
  return out.str();
}

std::shared_ptr<standalone::Dictionary> bag(std::initializer_list<std::pair<const char*, Value>> entries) {
  auto result = std::make_shared<standalone::Dictionary>();
  for (const auto& [key, value] : entries) result->set(key, value);
  return result;
}

TEST(ValueViewTest, PrintsScalarsOnOneLine) {
  const std::pair<Value, const char*> cases[] = {
      {true, "result: True\n"},
      {std::int32_t{5}, "result: 5\n"},
      {Null{}, "result: NULL\n"},
      {Value(), "result: (empty)\n"},
      {ObjectRef(), "result: nothing\n"},
      {Bytes({1, 2, 3}), "result: <3 bytes>\n"},
      {Date{40983}, "result: 2012-03-15\n"},
      {Date{40983.5}, "result: 2012-03-15 12:00:00\n"},
      {"a\nb", "result: a\\nb\n"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(printed(value), text);
}

TEST(ValueViewTest, PrintsRowListsAsTables) {
  const auto list = std::make_shared<standalone::List>();
  list->add(bag({{"FID", std::int32_t{1}}, {"FName", "报表"}}));
  list->add(bag({{"FID", std::int32_t{20}}, {"FName", Null{}}}));
  EXPECT_EQ(printed(list), "result:\nFID  FName\n---  -----\n  1  报表\n 20  NULL\n(2 rows)\n");
}

TEST(ValueViewTest, PrintsBagsKeyByKeyAndHidesPasswords) {
  const auto account = bag({{"FName", "x"}, {"FMPassWord", "secret"}});
  EXPECT_EQ(printed(account),
            "result:\nkey         value\n----------  -----\nFName       x\nFMPassWord  ***\n(2 rows)\n");
  EXPECT_NE(printed(account, true).find("secret"), std::string::npos);
}

TEST(ValueViewTest, HidesThePasswordOfAConnectionText) {
  const Value text("Driver=FreeTDS;PWD=secret;Port=1433");
  EXPECT_EQ(printed(text), "result: Driver=FreeTDS;PWD=***;Port=1433\n");
  EXPECT_EQ(printed(bag({{"FPropsString", text}})).find("secret"), std::string::npos);
  EXPECT_NE(printed(bag({{"FPropsString", text}}), true).find("secret"), std::string::npos);
}

TEST(ValueViewTest, PrintsRecordSetsFromTheirFirstRow) {
  testing::Answer answer{{{"n", DataType::integer, 4, false}}, {{std::int32_t{1}}, {std::int32_t{2}}}, 0};
  const auto rows = std::make_shared<testing::FakeRecordset>(std::make_shared<testing::Script>(), answer);
  rows->moveNext();
  EXPECT_EQ(printed(rows), "result:\nn\n-\n1\n2\n(2 rows)\n");
}

TEST(ValueViewTest, PrintsArraysWithTheirIndexes) {
  EXPECT_EQ(printed(Array::of(ValueType::string, {"a", "b"}, 1)),
            "result:\nindex  value\n-----  -----\n    1  a\n    2  b\n(2 rows)\n");
}

}  // namespace
}  // namespace tolvane::host
