#include "standalone_com/field_objects.h"

#include <gtest/gtest.h>

#include <vector>

#include "standalone_com/try_table.h"

namespace tolvane::standalone_com {
namespace {

using testing::Client;
using testing::errorOf;

Bytes bytes(std::vector<std::uint8_t> content) {
  return Bytes(std::move(content));
}

class FieldObjectsTest : public testing::TryTable {
 protected:
  void SetUp() override {
    TryTable::SetUp();
    set_ = opened();
  }
  void TearDown() override { set_ = {}; }
  [[nodiscard]] Client field(const char* name) const { return set_.object(L"Fields", name); }

  Client set_;
};

TEST_F(FieldObjectsTest, AreFoundByNameWithoutRegardToCaseAndByPosition) {
  const Client fields = set_.object(L"Fields");
  EXPECT_EQ(fields.get(L"Count"), Value(5));
  EXPECT_EQ(fields.object(L"Item", "fname").get(L"Name"), Value("FName"));
  EXPECT_EQ(fields.object(L"Item", 1).get(L"Name"), Value("FName"));
  const std::string unknown =
      "800A0CC1 ADODB.Recordset: Item cannot be found in the collection corresponding to the requested name or "
      "ordinal.";
  EXPECT_EQ(errorOf([&] { (void)fields.object(L"Item", "FNothing"); }), unknown);
  EXPECT_EQ(errorOf([&] { (void)fields.object(L"Item", 5); }), unknown);
  EXPECT_EQ(errorOf([&] { (void)fields.object(L"Item", -1); }), unknown);
}

TEST_F(FieldObjectsTest, AreGivenInTheirOrder) {
  automation::RemoteMember item(L"Item");
  const automation::LateBound fields(automation::ComPtr<IDispatch>(set_.object(L"Fields").dispatch()));
  DISPPARAMS none{};
  automation::Variant answer;
  ASSERT_EQ(fields.get()->Invoke(DISPID_NEWENUM, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, answer.receive(), nullptr,
                                 nullptr),
            S_OK);
  const auto all = automation::ComPtr<IUnknown>(answer.get().punkVal).as<IEnumVARIANT>(IID_IEnumVARIANT);
  std::string names;
  automation::Variant field;
  while (all->Next(1, field.receive(), nullptr) == S_OK) names += toText(Client(field).get(L"Name")) + " ";
  EXPECT_EQ(names, "FID FName FAmount FData FNote ");
}

TEST_F(FieldObjectsTest, DescribeTheirColumns) {
  EXPECT_EQ(field("FID").get(L"Type"), Value(3));
  EXPECT_EQ(field("FName").get(L"Type"), Value(202));
  EXPECT_EQ(field("FAmount").get(L"Type"), Value(6));
  EXPECT_EQ(field("FData").get(L"Type"), Value(205));
  EXPECT_EQ(field("FName").get(L"DefinedSize"), Value(10));
  EXPECT_EQ(field("FData").get(L"DefinedSize"), Value(2147483647));
  EXPECT_EQ(field("FNote").get(L"DefinedSize"), Value(1073741823));
  EXPECT_EQ(field("FName").get(L"ActualSize"), Value(4));
}

TEST_F(FieldObjectsTest, TellWhetherTheyAreLongFixedOrMayBeNull) {
  EXPECT_EQ(field("FID").get(L"Attributes"), Value(8 + 16));
  EXPECT_EQ(field("FName").get(L"Attributes"), Value(8 + 32 + 64));
  EXPECT_EQ(field("FAmount").get(L"Attributes"), Value(8 + 16 + 32 + 64));
  EXPECT_EQ(field("FData").get(L"Attributes"), Value(8 + 32 + 64 + 128));
}

TEST_F(FieldObjectsTest, ShowTheCurrentRow) {
  const Client amount = field("FAmount");
  EXPECT_EQ(amount.get(L"Value"), Value(Currency{125000}));
  set_.get(L"MoveNext");
  EXPECT_EQ(amount.get(L"Value"), Value(Null{}));
  set_.get(L"MoveLast");
  set_.get(L"MoveNext");
  EXPECT_EQ(errorOf([&] { amount.get(L"Value"); }).substr(0, 20), "800A0BCD ADODB.Field");
}

TEST_F(FieldObjectsTest, AreWrittenAsValueAsItemAndThroughTheSet) {
  field("FName").put(L"Value", "x");
  set_.object(L"Fields").put(L"Item", "FAmount", 2);
  set_.put(L"Fields", "FNote", "note");
  set_.get(L"Update");
  EXPECT_EQ(tryOut_.asked("Select FName From t_Try Where FID = 1"), Value("x"));
  EXPECT_EQ(tryOut_.asked("Select FAmount From t_Try Where FID = 1"), Value(Currency{20000}));
  EXPECT_EQ(tryOut_.asked("Select FNote From t_Try Where FID = 1"), Value("note"));
}

TEST_F(FieldObjectsTest, RefuseValuesThatAreNotOfTheirType) {
  EXPECT_EQ(errorOf([&] { field("FAmount").put(L"Value", "much"); }).substr(0, 8), "800A0D5D");
  EXPECT_EQ(errorOf([&] { field("FName").put(L"Value", "longer than ten"); }).substr(0, 8), "80040E21");
  EXPECT_EQ(errorOf([&] { field("FID").put(L"Value", 9); }).substr(0, 8), "80040E21");
  EXPECT_EQ(errorOf([&] {
              field("FData").put(L"Value", Array::of(ValueType::int32, {1, 2}));
            }).substr(0, 8),
            "800A0D5D");
}

TEST_F(FieldObjectsTest, ADocumentHasOneDimension) {
  const std::vector<Value> content(4, Value(std::uint8_t{1}));
  EXPECT_EQ(errorOf([&] {
              field("FData").put(L"Value", Array{ValueType::byte, {{0, 2}, {0, 2}}, content});
            }).substr(0, 8),
            "800A0D5D");
  EXPECT_EQ(errorOf([&] {
              field("FData").get(L"AppendChunk", Array{ValueType::byte, {{0, 2}, {0, 2}}, content});
            }).substr(0, 20),
            "800A0BB9 ADODB.Field");
}

TEST_F(FieldObjectsTest, KeepADocumentThatTheCallerFrees) {
  {
    automation::Variant document = automation::Variant::of(bytes({1, 2, 3}));
    automation::RemoteMember value(L"Value");
    const automation::LateBound field(automation::ComPtr<IDispatch>(this->field("FData").dispatch()));
    VARIANT borrowed = document.get();
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{&borrowed, &put, 1, 1};
    ASSERT_EQ(field.get()->Invoke(value.in(*field.get()), IID_NULL, 0, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                                  nullptr, nullptr),
              S_OK);
    VARIANT content = document.detach();
    EXPECT_EQ(VariantClear(&content), S_OK);
  }
  set_.get(L"Update");
  EXPECT_EQ(tryOut_.asked("Select FData From t_Try Where FID = 1"), Value(bytes({1, 2, 3})));
}

TEST_F(FieldObjectsTest, DocumentsAreWrittenAndReadInPieces) {
  field("FData").get(L"AppendChunk", Value(bytes({1, 2, 3})));
  field("FData").get(L"AppendChunk", Value(bytes({4, 5})));
  set_.get(L"Update");
  const Client data = field("FData");
  EXPECT_EQ(data.get(L"Value"), Value(bytes({1, 2, 3, 4, 5})));
  EXPECT_EQ(data.get(L"ActualSize"), Value(5));
  EXPECT_EQ(data.get(L"GetChunk", 3), Value(bytes({1, 2, 3})));
  EXPECT_EQ(data.get(L"GetChunk", 3), Value(bytes({4, 5})));
  EXPECT_EQ(data.get(L"GetChunk", 3), Value(Null{}));
}

TEST_F(FieldObjectsTest, AMoveBeginsReadingInPiecesAnew) {
  set_.put(L"Fields", "FData", Value(bytes({1, 2, 3})));
  set_.get(L"Update");
  const Client data = field("FData");
  EXPECT_EQ(data.get(L"GetChunk", 2), Value(bytes({1, 2})));
  set_.get(L"MoveFirst");
  EXPECT_EQ(data.get(L"GetChunk", 2), Value(bytes({1, 2})));
}

TEST_F(FieldObjectsTest, LongTextsAreReadInPieces) {
  set_.put(L"Fields", "FNote", "资产负债");
  set_.get(L"Update");
  const Client note = field("FNote");
  EXPECT_EQ(note.get(L"GetChunk", 3), Value("资产负"));
  EXPECT_EQ(note.get(L"GetChunk", 3), Value("债"));
  EXPECT_EQ(note.get(L"GetChunk", 3), Value(Null{}));
}

TEST_F(FieldObjectsTest, OnlyLongFieldsHavePieces) {
  EXPECT_EQ(errorOf([&] { field("FName").get(L"GetChunk", 3); }).substr(0, 20), "800A0C93 ADODB.Field");
  EXPECT_EQ(errorOf([&] { field("FName").get(L"AppendChunk", "x"); }).substr(0, 20), "800A0C93 ADODB.Field");
  EXPECT_EQ(errorOf([&] { field("FData").get(L"GetChunk", -1); }).substr(0, 20), "800A0BB9 ADODB.Field");
}

TEST_F(FieldObjectsTest, AreNoLongerValidWhenTheirSetWasClosed) {
  const Client name = field("FName");
  set_.get(L"Close");
  EXPECT_EQ(errorOf([&] { name.get(L"Value"); }), "800A0D5C ADODB.Field: Object is no longer valid.");
  set_.get(L"Open", "Select 1", connection());
  EXPECT_EQ(errorOf([&] { name.put(L"Value", "x"); }), "800A0D5C ADODB.Field: Object is no longer valid.");
}

}  // namespace
}  // namespace tolvane::standalone_com
