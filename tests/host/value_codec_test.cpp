#include "host/value_codec.h"

#include <gtest/gtest.h>

#include <sstream>

#include "host/usage_error.h"
#include "standalone/fake_engine.h"
#include "standalone/objects.h"

namespace tolvane::host {
namespace {

std::string written(const Value& value, bool showSecrets = false) {
  std::ostringstream out;
  writeValue(out, value, showSecrets);
  return out.str();
}

Value decoded(const std::string& text, ParameterType type = ParameterType::variant) {
  return decodeValue(parseJson(text), type);
}

TEST(ValueCodecTest, EveryValueGoesBothWays) {
  const std::pair<Value, const char*> cases[] = {
      {Value(), R"({"$empty":true})"},
      {Null{}, "null"},
      {ObjectRef(), R"({"$nothing":true})"},
      {true, "true"},
      {false, "false"},
      {std::int32_t{-2147483647 - 1}, "-2147483648"},
      {std::int16_t{5}, R"({"$int16":5})"},
      {std::uint8_t{255}, R"({"$byte":255})"},
      {1.5, "1.5"},
      {1.0, "1.0"},
      {2147483648.0, "2147483648.0"},
      {1.5F, R"({"$single":1.5})"},
      {Currency{123400}, R"({"$currency":"12.3400"})"},
      {Decimal{0, 1, 1, false}, R"({"$decimal":"0.1"})"},
      {Date{40983}, R"({"$date":"2012-03-15T00:00:00"})"},
      {"报表 \"x\"\n", R"("报表 \"x\"\n")"},
      {Bytes({1, 2, 3}), R"({"$bytes":"AQID"})"},
      {Bytes({1}, 1), R"({"$bytes":"AQ==","lower":1})"},
      {Bytes(), R"({"$bytes":""})"},
      {Array::of(ValueType::variant, {std::int32_t{1}, "a"}), R"({"$array":[1,"a"],"type":"variant","lower":0})"},
      {Array::of(ValueType::int32, {std::int32_t{7}}, 1), R"({"$array":[7],"type":"int32","lower":1})"},
      {Array::of(ValueType::real, {1.0}), R"({"$array":[1.0],"type":"double","lower":0})"},
      {Array{ValueType::int32, {{1, 2}, {0, 1}}, {std::int32_t{1}, std::int32_t{2}}},
       R"({"$array":[1,2],"type":"int32","bounds":[[1,2],[0,0]]})"},
  };
  for (const auto& [value, text] : cases) {
    EXPECT_EQ(written(value), text);
    EXPECT_EQ(decoded(text), value) << text;
  }
}

TEST(ValueCodecTest, WholeNumbersOutsideTheRangeAreDoubles) {
  EXPECT_EQ(decoded("2147483648"), Value(2147483648.0));
  EXPECT_EQ(decoded("-2147483649"), Value(-2147483649.0));
  EXPECT_EQ(decoded("18446744073709551615"), Value(18446744073709551615.0));
  EXPECT_EQ(decoded("1e3"), Value(1000.0));
  EXPECT_EQ(decoded(R"({"$double":1})"), Value(1.0));
}

TEST(ValueCodecTest, ABareArrayHasTheParametersElements) {
  EXPECT_EQ(decoded("[1,2]", ParameterType::int32Array),
            Value(Array::of(ValueType::int32, {std::int32_t{1}, std::int32_t{2}})));
  EXPECT_EQ(decoded("[1,\"a\"]", ParameterType::variantArray),
            Value(Array::of(ValueType::variant, {std::int32_t{1}, "a"})));
  EXPECT_EQ(decoded("[1]"), Value(Array::of(ValueType::variant, {std::int32_t{1}})));
}

TEST(ValueCodecTest, BagsAndListsGoBothWays) {
  const std::string text = R"({"$list":[{"FB":1,"FA":null},{"FName":"x","inner":{"a":true}}]})";
  EXPECT_EQ(written(decoded(text)), text);
  EXPECT_EQ(written(decoded("{}")), "{}");
}

TEST(ValueCodecTest, RecordSetsShowColumnsAndRows) {
  testing::Answer answer{{{"FRptID", DataType::integer, 4, false}, {"FName", DataType::varWChar, 80, true}},
                         {{std::int32_t{1}, "a"}, {std::int32_t{2}, Null{}}},
                         0};
  const auto script = std::make_shared<testing::Script>();
  const auto rows = std::make_shared<testing::FakeRecordset>(script, answer);
  rows->moveNext();
  EXPECT_EQ(written(rows), R"({"$recordset":{"fields":[{"name":"FRptID","type":3},{"name":"FName","type":202}],)"
                           R"("rows":[[1,"a"],[2,null]]}})");
  EXPECT_EQ(written(std::make_shared<testing::FakeRecordset>(script)), R"({"$recordset":{"fields":[],"rows":[]}})");
}

TEST(ValueCodecTest, ThePasswordOfAConnectionTextIsHidden) {
  const Value text("Driver=FreeTDS;PWD=secret;Port=1433");
  EXPECT_EQ(written(text), "\"Driver=FreeTDS;PWD=***;Port=1433\"");
  EXPECT_EQ(written(text, true), "\"Driver=FreeTDS;PWD=secret;Port=1433\"");
}

TEST(ValueCodecTest, PasswordsAreHiddenInBagsAndRecordSets) {
  const auto bag = std::make_shared<standalone::Dictionary>();
  bag->set("FMPassWord", "secret");
  EXPECT_EQ(written(bag), R"({"FMPassWord":"***"})");
  EXPECT_EQ(written(bag, true), R"({"FMPassWord":"secret"})");
  testing::Answer answer{{{"fmpassword", DataType::varWChar, 80, true}}, {{"secret"}, {Null{}}, {""}}, 0};
  const auto rows = std::make_shared<testing::FakeRecordset>(std::make_shared<testing::Script>(), answer);
  EXPECT_NE(written(rows).find(R"("rows":[["***"],[null],[""]])"), std::string::npos);
}

TEST(ValueCodecTest, WrongFormsAreRefusedWithASentence) {
  for (const char* text : {R"({"$int16":32768})",
                           R"({"$byte":-1})",
                           R"({"$byte":1.5})",
                           R"({"$currency":12})",
                           R"({"$currency":"x"})",
                           R"({"$currency":"1.00001"})",
                           R"({"$decimal":"1e3"})",
                           R"({"$date":"soon"})",
                           R"({"$date":5})",
                           R"({"$bytes":"A"})",
                           R"({"$bytes":[1]})",
                           R"({"$bytes":"","lower":"1"})",
                           R"({"$bytes":"","upper":1})",
                           R"({"$array":1})",
                           R"({"$array":[],"type":"long"})",
                           R"({"$array":["x"],"type":"int32"})",
                           R"({"$array":[1],"bounds":[[1,2]]})",
                           R"({"$array":[1],"bounds":[1]})",
                           R"({"$array":[],"bounds":[[2,0]]})",
                           R"({"$array":[1],"lower":0,"bounds":[[0,0]]})",
                           R"({"$list":{}})",
                           R"({"$empty":1})",
                           R"({"$unknown":1})",
                           R"({"$empty":true,"a":1})",
                           R"({"a":1,"$b":2})",
                           R"({"$recordset":{}})",
                           R"({"$single":1e300})",
                           R"({"$error":"x"})"}) {
    EXPECT_THROW((void)decoded(text), UsageError) << text;
  }
}

TEST(ValueCodecTest, TextsThatAreNoJsonAreRefused) {
  for (const char* text : {"", "abc", "{", "'a'", "1 2", "\"\xD6\xD0\"", "1e999", "NaN"}) {
    EXPECT_THROW((void)parseJson(text), UsageError) << text;
  }
}

TEST(ValueCodecTest, ValuesNestedTooDeeplyAreRefused) {
  const std::string deep = std::string(50000, '[') + std::string(50000, ']');
  EXPECT_THROW((void)decoded(deep), UsageError);
}

TEST(ValueCodecTest, BytesThatAreNoUtf8AreReplacedInOutput) {
  EXPECT_EQ(written(Value("a\xFF")), "\"a\uFFFD\"");
}

}  // namespace
}  // namespace tolvane::host
