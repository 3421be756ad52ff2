#include "tracing/json_values.h"

#include <gtest/gtest.h>

#include "standalone/objects.h"

namespace tolvane::tracing {
namespace {

TEST(JsonValuesTest, WritesEveryScalar) {
  const std::pair<Value, const char*> cases[] = {
      {Value(), R"({"$empty":true})"},
      {Null{}, "null"},
      {ObjectRef(), R"({"$nothing":true})"},
      {true, "true"},
      {std::uint8_t{5}, R"({"$byte":5})"},
      {std::int16_t{-5}, R"({"$int16":-5})"},
      {std::int32_t{5}, "5"},
      {std::int64_t{9007199254740993}, R"({"$decimal":"9007199254740993"})"},
      {1.5, "1.5"},
      {1.0, "1.0"},
      {1e300, "1e+300"},
      {0.1F, R"({"$single":0.1})"},
      {Currency{123400}, R"({"$currency":"12.3400"})"},
      {Decimal{0, 1, 1, false}, R"({"$decimal":"0.1"})"},
      {Date{40983}, R"({"$date":"2012-03-15T00:00:00"})"},
      {"报表", "\"报表\""},
      {missingArgument, R"({"$error":"0x80020004"})"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(scalarToJson(value).dump(), text);
}

TEST(JsonValuesTest, TracesShowDocumentsByTheirLength) {
  EXPECT_EQ(traceToJson(Bytes(std::vector<std::uint8_t>(1024))).dump(), R"({"$bytes":1024})");
}

TEST(JsonValuesTest, TracesShowTheContentOfBagsAndLists) {
  const auto bag = std::make_shared<standalone::Dictionary>();
  bag->set("FB", std::int32_t{1});
  bag->set("FA", Null{});
  const auto list = std::make_shared<standalone::List>();
  list->add(bag);
  EXPECT_EQ(traceToJson(list).dump(), R"({"$list":[{"FB":1,"FA":null}]})");
}

TEST(JsonValuesTest, TracesShowArraysWithTheirType) {
  EXPECT_EQ(traceToJson(Array::of(ValueType::int32, {std::int32_t{1}, std::int32_t{2}})).dump(),
            R"({"$array":[1,2],"type":"int32"})");
}

}  // namespace
}  // namespace tolvane::tracing
