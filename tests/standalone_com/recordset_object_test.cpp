#include "standalone_com/recordset_object.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "standalone_com/try_table.h"

namespace tolvane::standalone_com {
namespace {

using automation::Variant;
using testing::Client;
using testing::errorOf;

class RecordsetObjectTest : public testing::TryTable {};

TEST_F(RecordsetObjectTest, ANewSetIsClosed) {
  const Client set = Client::create("Recordset");
  EXPECT_EQ(set.get(L"State"), Value(0));
  EXPECT_EQ(set.get(L"CursorLocation"), Value(2));
  EXPECT_EQ(set.get(L"CursorType"), Value(0));
  EXPECT_EQ(set.get(L"LockType"), Value(1));
  for (const auto* member : {L"EOF", L"BOF", L"RecordCount", L"MoveNext", L"Close", L"AddNew", L"Fields"}) {
    EXPECT_EQ(errorOf([&] { (void)set.object(member).get(L"Count"); }),
              "800A0E78 ADODB.Recordset: Operation is not allowed when the object is closed.");
  }
}

TEST_F(RecordsetObjectTest, WalksOverItsRows) {
  const Client set = opened();
  EXPECT_EQ(set.get(L"RecordCount"), Value(3));
  EXPECT_EQ(set.get(L"BOF"), Value(false));
  set.get(L"MoveLast");
  EXPECT_EQ(valueOf(set, "FID"), Value(3));
  set.get(L"MoveNext");
  EXPECT_EQ(set.get(L"EOF"), Value(true));
  EXPECT_EQ(errorOf([&] { set.get(L"MoveNext"); }).substr(0, 24), "800A0BCD ADODB.Recordset");
  set.get(L"MoveFirst");
  EXPECT_EQ(valueOf(set, "FID"), Value(1));
}

TEST_F(RecordsetObjectTest, TakesWhatOpenIsNotGivenFromItsProperties) {
  const Client set = Client::create("Recordset");
  set.put(L"Source", "Select FName From t_Try Where FID = 2");
  set.putObject(L"ActiveConnection", connection());
  set.put(L"CursorType", keyset);
  set.put(L"LockType", optimistic);
  set.get(L"Open");
  set.put(L"Fields", "FName", "x");
  set.get(L"Update");
  EXPECT_EQ(tryOut_.asked("Select FName From t_Try Where FID = 2"), Value("x"));
}

TEST_F(RecordsetObjectTest, IsOpenedOnADataSourceName) {
  const Client set = Client::create("Recordset");
  set.get(L"Open", "Select FName From t_Try", tryOut_.dsn());
  EXPECT_EQ(valueOf(set, "FName"), Value("资产"));
}

TEST_F(RecordsetObjectTest, IsOpenedOnACommand) {
  const Client command = Client::create("Command");
  command.putObject(L"ActiveConnection", connection());
  command.put(L"CommandText", "Select FName From t_Try Where FID = ?");
  command.object(L"Parameters").get(L"Append", command.object(L"CreateParameter", "id", 3, 1, 4, 3));
  const Client set = Client::create("Recordset");
  set.get(L"Open", command);
  EXPECT_EQ(valueOf(set, "FName"), Value("c"));
}

TEST_F(RecordsetObjectTest, RefusesAConnectionThatIsNone) {
  const Client set = Client::create("Recordset");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1"); }).substr(0, 24), "800A0E7D ADODB.Recordset");
  for (const Client& other : {tryOut_.application(), Client::create("Dictionary"), Client::create("Vector")}) {
    EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1", other); }).substr(0, 24), "800A0BB9 ADODB.Recordset");
    EXPECT_EQ(errorOf([&] { set.putObject(L"ActiveConnection", other); }).substr(0, 24), "800A0BB9 ADODB.Recordset");
  }
}

TEST_F(RecordsetObjectTest, AnOpenSetKeepsWhatItWasOpenedWith) {
  const Client set = opened();
  const std::string open = "800A0E79 ADODB.Recordset: Operation is not allowed when the object is open.";
  EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1", connection()); }), open);
  EXPECT_EQ(errorOf([&] { set.put(L"LockType", 1); }), open);
  EXPECT_EQ(errorOf([&] { set.put(L"CursorType", 1); }), open);
  EXPECT_EQ(errorOf([&] { set.put(L"Source", "Select 1"); }), open);
}

TEST_F(RecordsetObjectTest, AnUnknownCursorOrLockTypeIsRefused) {
  const Client set = Client::create("Recordset");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1", connection(), 4); }).substr(0, 8), "800A0BB9");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1", connection(), 1, 5); }).substr(0, 8), "800A0BB9");
}

TEST_F(RecordsetObjectTest, AddsARowFieldByField) {
  const Client set = opened();
  set.get(L"AddNew");
  EXPECT_EQ(set.get(L"EditMode"), Value(2));
  set.put(L"Fields", "FName", "负债");
  EXPECT_EQ(errorOf([&] { set.get(L"Close"); }).substr(0, 24), "800A0C93 ADODB.Recordset");
  set.get(L"Update");
  EXPECT_EQ(valueOf(set, "FID"), Value(4));
  EXPECT_EQ(tryOut_.asked("Select FName From t_Try Where FID = 4"), Value("负债"));
}

TEST_F(RecordsetObjectTest, AddsARowAtOnce) {
  const Client set = opened();
  set.get(L"AddNew", Array::of(ValueType::variant, {"FName", "FAmount"}), Array::of(ValueType::variant, {"d", 4}));
  EXPECT_EQ(set.get(L"EditMode"), Value(0));
  EXPECT_EQ(tryOut_.asked("Select FAmount From t_Try Where FName = N'd'"), Value(Currency{40000}));
  EXPECT_EQ(errorOf([&] {
              set.get(L"Update", Array::of(ValueType::variant, {"FName"}), Array::of(ValueType::variant, {}));
            }).substr(0, 8),
            "800A0BB9");
}

TEST_F(RecordsetObjectTest, TakesAnEditBack) {
  const Client set = opened();
  set.put(L"Fields", "FName", "x");
  set.get(L"CancelUpdate");
  EXPECT_EQ(valueOf(set, "FName"), Value("资产"));
}

TEST_F(RecordsetObjectTest, AResultOfExecuteIsNotWrittenTo) {
  const Client set = connection().object(L"Execute", "Select * From t_Try");
  EXPECT_EQ(errorOf([&] { set.get(L"AddNew"); }).substr(0, 24), "800A0CB3 ADODB.Recordset");
  EXPECT_EQ(set.get(L"CursorType"), Value(3));
  EXPECT_EQ(set.get(L"LockType"), Value(1));
}

TEST_F(RecordsetObjectTest, ShowsTheRowsOfItsFilterOnly) {
  const Client set = opened();
  set.put(L"Filter", "FName = '资产'");
  EXPECT_EQ(set.get(L"RecordCount"), Value(1));
  EXPECT_EQ(set.get(L"Filter"), Value("FName = '资产'"));
  set.put(L"Filter", 0);
  EXPECT_EQ(set.get(L"RecordCount"), Value(3));
  EXPECT_EQ(set.get(L"Filter"), Value(0));
  EXPECT_EQ(errorOf([&] { set.put(L"Filter", 1); }).substr(0, 24), "800A0BB9 ADODB.Recordset");
}

TEST_F(RecordsetObjectTest, ADetachedSetKeepsItsRows) {
  const Client set = Client::create("Recordset");
  set.put(L"CursorLocation", 3);
  set.get(L"Open", "Select * From t_Try Order By FID", connection());
  set.putObject(L"ActiveConnection", Client());
  EXPECT_FALSE(set.object(L"ActiveConnection"));
  tryOut_.run("delete from t_Try");
  EXPECT_EQ(set.get(L"RecordCount"), Value(3));
  EXPECT_EQ(set.get(L"CursorLocation"), Value(3));
  EXPECT_EQ(errorOf([&] { set.putObject(L"ActiveConnection", connection()); }).substr(0, 8), "800A0E79");
  set.get(L"Close");
  set.get(L"Open", "Select Count(*) From t_Try", connection());
  EXPECT_EQ(set.object(L"Fields", 0).get(L"Value"), Value(0));
}

TEST_F(RecordsetObjectTest, ASetOnTheServerIsNotDetached) {
  const Client set = Client::create("Recordset");
  set.put(L"CursorLocation", 2);
  set.get(L"Open", "Select * From t_Try", connection());
  EXPECT_EQ(set.get(L"RecordCount"), Value(-1));
  EXPECT_EQ(errorOf([&] { set.putObject(L"ActiveConnection", Client()); }).substr(0, 24), "800A0C93 ADODB.Recordset");
}

TEST_F(RecordsetObjectTest, GivesTheResultsOfABatchOneAfterTheOther) {
  const Client first = connection().object(L"Execute", "Select 1\nSelect 2");
  const Client second = first.object(L"NextRecordset");
  EXPECT_EQ(second.object(L"Fields", 0).get(L"Value"), Value(2));
  EXPECT_FALSE(second.object(L"NextRecordset"));
}

TEST_F(RecordsetObjectTest, GivesItsRowsAsAnArray) {
  const Client set = opened("Select FID, FName From t_Try Order By FID");
  const Value firstTwo = set.get(L"GetRows", 2);
  ASSERT_NE(firstTwo.array(), nullptr);
  EXPECT_EQ(firstTwo.array()->bounds, (std::vector<Bound>{{0, 2}, {0, 2}}));
  EXPECT_EQ(firstTwo.array()->elements, (std::vector<Value>{1, "资产", 2, "b"}));
  EXPECT_EQ(set.get(L"GetRows").array()->elements, (std::vector<Value>{3, "c"}));
  EXPECT_EQ(errorOf([&] { set.get(L"GetRows"); }).substr(0, 8), "800A0BCD");
}

TEST_F(RecordsetObjectTest, ArgumentsOfWrongTypesAreErrors) {
  const Client set = Client::create("Recordset");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", connection(), connection()); }).substr(0, 8), "800A0BB9");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", "Select 1", connection(), "x"); }).substr(0, 8), "800A000D");
  EXPECT_EQ(errorOf([&] { set.get(L"Open", Array::of(ValueType::int32, {1}), connection()); }).substr(0, 8),
            "800A000D");
  const Client open = opened();
  EXPECT_EQ(errorOf([&] { (void)open.object(L"Fields", 1, 2); }).substr(0, 8), "800A01C2");
  EXPECT_EQ(errorOf([&] { (void)open.object(L"Fields", connection()); }).substr(0, 8), "800A000D");
}

/// What no caller should pass, and some do.
std::vector<VARIANT> impossibleArguments() {
  const std::vector<int> types{// references to nothing
                               VT_BYREF | VT_VARIANT, VT_BYREF | VT_BSTR, VT_BYREF | VT_I4, VT_BYREF | VT_DISPATCH,
                               VT_BYREF | VT_UNKNOWN, VT_BYREF | VT_DECIMAL, VT_BYREF | VT_ARRAY | VT_UI1,
                               // arrays that are none, and types that automation's languages do not have
                               VT_ARRAY | VT_UI1, VT_ARRAY | VT_VARIANT, VT_RECORD, VT_ARRAY | VT_RECORD, VT_FILETIME,
                               99};
  std::vector<VARIANT> all;
  for (const int type : types) {
    VARIANT content{};
    content.vt = static_cast<VARTYPE>(type);
    all.push_back(content);
  }
  return all;
}

TEST_F(RecordsetObjectTest, ImpossibleArgumentsAreErrors) {
  const Client closed = Client::create("Recordset");
  const Client open = opened();
  for (VARIANT argument : impossibleArguments()) {
    for (const auto& [set, member, flags] :
         {std::tuple(closed, 1022, DISPATCH_METHOD), std::tuple(open, 1030, DISPATCH_PROPERTYPUT),
          std::tuple(open, 1001, DISPATCH_PROPERTYPUTREF), std::tuple(open, 1016, DISPATCH_METHOD),
          std::tuple(open, 0, DISPATCH_PROPERTYGET)}) {
      DISPPARAMS parameters{&argument, nullptr, 1, 0};
      EXPECT_TRUE(FAILED(set.dispatch()->Invoke(member, IID_NULL, 0, static_cast<WORD>(flags), &parameters, nullptr,
                                                nullptr, nullptr)))
          << argument.vt << " " << member;
    }
  }
}

TEST_F(RecordsetObjectTest, CallsWithoutWhatTheyNeedAreRefused) {
  const Client client = opened();
  IDispatch& set = *client.dispatch();
  DISPPARAMS none{};
  EXPECT_EQ(set.Invoke(0, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  EXPECT_EQ(set.Invoke(0, IID_IDispatch, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_TRUE(FAILED(set.Invoke(4711, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr)));
  EXPECT_TRUE(FAILED(set.Invoke(1030, IID_NULL, 0, DISPATCH_PROPERTYPUT, &none, nullptr, nullptr, nullptr)));
  EXPECT_EQ(set.GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr), E_POINTER);
  EXPECT_EQ(set.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

}  // namespace
}  // namespace tolvane::standalone_com
