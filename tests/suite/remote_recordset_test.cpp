#include "suite/remote_recordset.h"

#include <vector>

#include "automation/object_border.h"
#include "fake_object.h"

namespace tolvane::suite {
namespace {

using automation::ComPtr;
using automation::Variant;

class RemoteRecordsetTest : public SuiteTest {
 protected:
  RemoteRecordsetTest() {
    set_->gives(L"Fields", fields_);
    fields_->gives(L"Count", Value(std::int32_t{1}));
    fields_->gives(L"Item", field_);
  }

  std::shared_ptr<AdoLibrary> ado_ = std::make_shared<AdoLibrary>(L"ADODB.Recordset", L"ADODB.Command");
  ComPtr<FakeObject> connection_ = fake("connection", ado_->connection);
  ComPtr<FakeObject> set_ = fake("rows", ado_->recordset);
  ComPtr<FakeObject> fields_ = fake("fields", ado_->fields);
  ComPtr<FakeObject> field_ = fake("field", ado_->field);
  std::shared_ptr<RemoteRecordset> rows_ = std::make_shared<RemoteRecordset>(ado_, bound(set_), bound(connection_));
};

TEST_F(RemoteRecordsetTest, OpenPassesTheConnectionAndTheKindsOfCursorAndLock) {
  rows_->open("select 1", CursorType::keyset, LockType::optimistic, -1);
  rows_->open("select 2", CursorType::forwardOnly, LockType::readOnly, 1);
  EXPECT_EQ(said(), (Conversation{"call rows.Open(\"select 1\", connection, I4 1, I4 3, I4 -1)",
                                  "call rows.Open(\"select 2\", connection, I4 0, I4 1, I4 1)"}));
}

TEST_F(RemoteRecordsetTest, EveryOtherOperationIsOneCall) {
  rows_->setCursorLocation(CursorLocation::client);
  rows_->moveFirst();
  rows_->moveNext();
  rows_->moveLast();
  rows_->addNew();
  rows_->update();
  rows_->cancelUpdate();
  rows_->close();
  EXPECT_EQ(said(), (Conversation{"let rows.CursorLocation = I4 3", "call rows.MoveFirst", "call rows.MoveNext",
                                  "call rows.MoveLast", "call rows.AddNew", "call rows.Update",
                                  "call rows.CancelUpdate", "call rows.Close"}));
}

TEST_F(RemoteRecordsetTest, PositionCountAndStateAreRead) {
  set_->gives(L"BOF", Value(true));
  set_->gives(L"EOF", Value(false));
  set_->gives(L"RecordCount", Value(std::int64_t{20000}));  // 64-bit ADO counts in 64 bits
  set_->gives(L"EditMode", Value(std::int32_t{2}));
  EXPECT_TRUE(rows_->bof());
  EXPECT_FALSE(rows_->eof());
  EXPECT_EQ(rows_->recordCount(), 20000);
  EXPECT_EQ(rows_->editMode(), EditMode::add);
  EXPECT_EQ(said(), (Conversation{"ask rows.BOF", "ask rows.EOF", "ask rows.RecordCount", "ask rows.EditMode"}));
}

TEST_F(RemoteRecordsetTest, ASetThatIsOpenAndBusyIsOpen) {
  set_->gives(L"State", Value(std::int32_t{9}));
  EXPECT_EQ(rows_->state(), ObjectState::open);
  set_->gives(L"State", Value(std::int32_t{2}));
  EXPECT_EQ(rows_->state(), ObjectState::closed);
}

TEST_F(RemoteRecordsetTest, AValueCostsOneCallOnceItsFieldIsKnown) {
  field_->gives(L"Value", Value("资产负债表"));
  EXPECT_EQ(rows_->value("FRptName"), Value("资产负债表"));
  EXPECT_EQ(said(), (Conversation{"ask rows.Fields", "ask fields.Item(\"FRptName\")", "ask field.Value"}));
  EXPECT_EQ(rows_->value("FRptName"), Value("资产负债表"));
  EXPECT_EQ(said(), (Conversation{"ask field.Value"}));
}

TEST_F(RemoteRecordsetTest, ByPositionAFieldIsAskedForOnceToo) {
  field_->gives(L"Value", Value(Null{}));
  EXPECT_TRUE(rows_->value(std::size_t{2}).isNull());
  EXPECT_TRUE(rows_->value(std::size_t{2}).isNull());
  EXPECT_EQ(said(), (Conversation{"ask rows.Fields", "ask fields.Item(I4 2)", "ask field.Value", "ask field.Value"}));
}

TEST_F(RemoteRecordsetTest, AnUnknownColumnIsAdosOwnErrorAndIsAskedForAgain) {
  fields_->fails(L"Item", AutomationError(AdoError::itemNotFound, "ADODB.Fields"));
  EXPECT_EQ(errorOf([&] { (void)rows_->value("FNone"); }).number(), errorNumber(AdoError::itemNotFound));
  EXPECT_EQ(errorOf([&] { (void)rows_->value(std::size_t{9}); }).source(), "ADODB.Fields");
  fields_->gives(L"Item", field_);
  EXPECT_TRUE(rows_->value("FNone").isEmpty());
}

TEST_F(RemoteRecordsetTest, ADocumentIsTakenOverWithoutACopy) {
  const void* memory = nullptr;
  field_->answer(L"Value", [&](DISPPARAMS&) {
    Variant document = Variant::of(Value(Bytes({1, 2, 3})));
    memory = document.get().parray->pvData;
    return document;
  });
  const Value value = rows_->value("FRptData");
  ASSERT_NE(value.get<Bytes>(), nullptr);
  EXPECT_EQ(value.get<Bytes>()->data(), memory);
  EXPECT_EQ(value, Value(Bytes({1, 2, 3})));
}

TEST_F(RemoteRecordsetTest, ColumnsAreDescribedOnce) {
  field_->gives(L"Name", Value("FRptName"));
  field_->gives(L"Type", Value(std::int32_t{202}));
  field_->gives(L"DefinedSize", Value(std::int32_t{80}));
  field_->gives(L"Attributes", Value(std::int32_t{4}));
  ASSERT_EQ(rows_->fields().size(), 1U);
  const FieldInfo& info = rows_->fields()[0];
  EXPECT_EQ(info.name, "FRptName");
  EXPECT_EQ(info.type, DataType::varWChar);
  EXPECT_EQ(info.definedSize, 80);
  EXPECT_FALSE(info.nullable);
  EXPECT_EQ(said(),
            (Conversation{"ask rows.Fields", "ask fields.Count", "ask fields.Item(I4 0)", "ask field.Attributes",
                          "ask field.Name", "ask field.Type", "ask field.DefinedSize"}));
}

TEST_F(RemoteRecordsetTest, LongColumnsHaveNoSizeAndNullableOnesSaySo) {
  field_->gives(L"Name", Value("FRptData"));
  field_->gives(L"Type", Value(std::int32_t{205}));
  field_->gives(L"DefinedSize", Value(std::int32_t{2147483647}));
  field_->gives(L"Attributes", Value(std::int32_t{0x80 | 0x40 | 0x20 | 4}));
  EXPECT_EQ(rows_->fields()[0].definedSize, -1);
  EXPECT_TRUE(rows_->fields()[0].nullable);
}

TEST_F(RemoteRecordsetTest, ASetThatIsOpenedAgainHasOtherFields) {
  (void)rows_->value("FID");
  rows_->close();
  rows_->open("select 1", CursorType::keyset, LockType::optimistic, -1);
  (void)said();
  (void)rows_->value("FID");
  EXPECT_EQ(said(), (Conversation{"ask rows.Fields", "ask fields.Item(\"FID\")", "ask field.Value"}));
}

TEST_F(RemoteRecordsetTest, FieldsAreSetAndDocumentsAppended) {
  rows_->setValue("FName", Value("O'Brien"));
  rows_->setValue("FName", Value(Null{}));
  rows_->appendChunk("FBinaryImg", Value(Bytes({1, 2})));
  EXPECT_EQ(said(), (Conversation{"ask rows.Fields", "ask fields.Item(\"FName\")", "let field.Value = \"O'Brien\"",
                                  "let field.Value = Null", "ask fields.Item(\"FBinaryImg\")",
                                  "call field.AppendChunk(bytes 2)"}));
}

TEST_F(RemoteRecordsetTest, AnEmptyFilterIsAdosFilterNone) {
  rows_->setFilter("FName = '(a)-b'");
  rows_->setFilter("");
  EXPECT_EQ(said(), (Conversation{"let rows.Filter = \"FName = '(a)-b'\"", "let rows.Filter = I4 0"}));
}

TEST_F(RemoteRecordsetTest, ADetachedSetHasNoConnectionToBeOpenedOnAgain) {
  rows_->detach();
  rows_->open("select 1", CursorType::keyset, LockType::optimistic, -1);
  EXPECT_EQ(said(), (Conversation{"set rows.ActiveConnection = Nothing",
                                  "call rows.Open(\"select 1\", missing, I4 1, I4 3, I4 -1)"}));
}

TEST_F(RemoteRecordsetTest, ASetThatCannotBeDetachedKeepsItsConnection) {
  set_->fails(L"ActiveConnection", AutomationError(AdoError::illegalOperation, "ADODB.Recordset"));
  EXPECT_EQ(errorOf([&] { rows_->detach(); }).number(), errorNumber(AdoError::illegalOperation));
  (void)said();
  rows_->open("select 1", CursorType::keyset, LockType::optimistic, -1);
  EXPECT_EQ(said(), (Conversation{"call rows.Open(\"select 1\", connection, I4 1, I4 3, I4 -1)"}));
}

TEST_F(RemoteRecordsetTest, AfterTheLastResultOfABatchThereIsNone) {
  EXPECT_EQ(rows_->nextRecordset(), nullptr);
  set_->gives(L"NextRecordset", ComPtr<FakeObject>());
  EXPECT_EQ(rows_->nextRecordset(), nullptr);
  const auto next = fake("next", ado_->recordset);
  set_->gives(L"NextRecordset", next);
  rows_->nextRecordset()->moveFirst();
  EXPECT_EQ(said().back(), "call next.MoveFirst");
}

unsigned long references(const ComPtr<FakeObject>& object) {
  object->AddRef();
  return object->Release();
}

TEST_F(RemoteRecordsetTest, EveryReferenceIsGivenBackWithTheSet) {
  const auto before = std::vector{references(set_), references(fields_), references(field_), references(connection_)};
  rows_->open("select 1", CursorType::keyset, LockType::optimistic, -1);
  (void)rows_->value("FID");
  (void)rows_->value(std::size_t{0});
  (void)automation::dispatchOf(rows_);
  EXPECT_GT(references(field_), before[2]);
  rows_.reset();
  // The set, and the connection that it was opened on, were held from the beginning.
  EXPECT_EQ(references(set_), before[0] - 1);
  EXPECT_EQ(references(fields_), before[1]);
  EXPECT_EQ(references(field_), before[2]);
  EXPECT_EQ(references(connection_), before[3] - 1);
}

TEST_F(RemoteRecordsetTest, ACallerIsHandedAdosOwnObject) {
  EXPECT_EQ(automation::dispatchOf(rows_).get(), set_.get());
}

}  // namespace
}  // namespace tolvane::suite
