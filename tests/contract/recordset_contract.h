// Record sets: what every engine does alike. Included by one source of each engine's tests.
#pragma once

#include "contract/contract_engine.h"

namespace tolvane::contract {

TEST_P(DataAccessContract, ColumnsHaveAdosTypesAndSizes) {
  TOLVANE_ASKS_FOR(hasSqlServerTypes);
  const auto rows = run("select * from People");
  const std::vector<std::pair<std::string, DataType>> expected = {
      {"Id", DataType::integer},        {"Name", DataType::varWChar},       {"Age", DataType::integer},
      {"Born", DataType::timestamp},    {"Pay", DataType::currency},        {"Rate", DataType::numeric},
      {"Active", DataType::boolean},    {"Small", DataType::smallInt},      {"Tiny", DataType::unsignedTinyInt},
      {"Big", DataType::bigInt},        {"Half", DataType::single},         {"Whole", DataType::real},
      {"Note", DataType::longVarWChar}, {"Photo", DataType::longVarBinary}, {"Code", DataType::varBinary},
      {"Mark", DataType::guid}};
  const auto& fields = rows->fields();
  ASSERT_EQ(fields.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(fields[i].name, expected[i].first);
    EXPECT_EQ(fields[i].type, expected[i].second) << fields[i].name;
  }
  EXPECT_EQ(fields[1].definedSize, 20);
  EXPECT_FALSE(fields[1].nullable);
}

TEST_P(DataAccessContract, ValuesHaveAutomationsTypes) {
  TOLVANE_ASKS_FOR(hasSqlServerTypes);
  run("insert into People (Name, Age, Born, Pay, Rate, Active, Small, Tiny, Big, Half, Whole, Note, Photo, Code, Mark)"
      " values (N'Ann', -5, '20120315 12:00:00', 12.5, 1.25, 1, -2, 200, 9007199254740993, 0.5, 2.25, N'text', 0x0102, "
      "0xFF,"
      " '6F9619FF-8B86-D011-B42D-00C04FC964FF')");
  const auto rows = run("select * from People");
  EXPECT_EQ(rows->value("Id"), Value(std::int32_t{1}));
  EXPECT_EQ(rows->value("Name"), Value("Ann"));
  EXPECT_EQ(rows->value("Age"), Value(std::int32_t{-5}));
  EXPECT_EQ(rows->value("Born"), Value(Date{dateOf(2012, 3, 15).days + 0.5}));
  EXPECT_EQ(rows->value("Pay"), Value(Currency{125000}));
  EXPECT_EQ(rows->value("Rate"), Value(Decimal{0, 12500, 4, false}));
  EXPECT_EQ(rows->value("Active"), Value(true));
  EXPECT_EQ(rows->value("Small"), Value(std::int16_t{-2}));
  EXPECT_EQ(rows->value("Tiny"), Value(std::uint8_t{200}));
  EXPECT_EQ(rows->value("Big"), Value(Decimal{0, 9007199254740993U, 0, false}));
  EXPECT_EQ(rows->value("Half"), Value(0.5F));
  EXPECT_EQ(rows->value("Whole"), Value(2.25));
  EXPECT_EQ(rows->value("Note"), Value("text"));
  EXPECT_EQ(rows->value("Photo"), Value(Bytes({1, 2})));
  EXPECT_EQ(rows->value("Code"), Value(Bytes({255})));
  EXPECT_EQ(rows->value("Mark"), Value("{6F9619FF-8B86-D011-B42D-00C04FC964FF}"));
}

TEST_P(DataAccessContract, NullIsNullInEveryColumn) {
  run("insert into People (Name, Active) values (N'Ann', null)");
  const auto rows = run("select * from People");
  for (std::size_t i = 2; i < rows->fields().size(); ++i)
    EXPECT_TRUE(rows->value(i).isNull()) << rows->fields()[i].name;
}

TEST_P(DataAccessContract, WithoutRowsBothEndsAreReachedAndEveryMoveFails) {
  const auto rows = run("select Name from People");
  EXPECT_TRUE(rows->bof());
  EXPECT_TRUE(rows->eof());
  EXPECT_EQ(rows->recordCount(), 0);
  expectAdo(AdoError::noCurrentRecord, [&] { rows->moveNext(); });
  expectAdo(AdoError::noCurrentRecord, [&] { rows->moveFirst(); });
  expectAdo(AdoError::noCurrentRecord, [&] { rows->moveLast(); });
  expectAdo(AdoError::noCurrentRecord, [&] { (void)rows->value("Name"); });
}

TEST_P(DataAccessContract, ASetBeginsAtItsFirstRowAndEndsBehindTheLast) {
  addThree();
  const auto rows = run("select Name from People order by Id");
  EXPECT_FALSE(rows->bof());
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Ann", "Bob", "Cid"));
  EXPECT_TRUE(rows->eof());
  EXPECT_FALSE(rows->bof());
  expectAdo(AdoError::noCurrentRecord, [&] { rows->moveNext(); });
}

TEST_P(DataAccessContract, MovesBackAndForthShowTheSameRows) {
  addThree();
  const auto rows = run("select Name from People order by Id");
  rows->moveNext();
  rows->moveFirst();
  EXPECT_EQ(rows->value("Name"), Value("Ann"));
  rows->moveLast();
  EXPECT_EQ(rows->value("Name"), Value("Cid"));
  rows->moveFirst();
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Ann", "Bob", "Cid"));
}

TEST_P(DataAccessContract, TheCountIsExactAndLeavesThePositionAlone) {
  addThree();
  const auto rows = run("select Name from People order by Id");
  rows->moveNext();
  EXPECT_EQ(rows->recordCount(), 3);
  EXPECT_EQ(rows->value("Name"), Value("Bob"));
}

TEST_P(DataAccessContract, AServerSideForwardCursorDoesNotKnowItsCount) {
  addThree();
  const auto rows = connection_->newRecordset();
  rows->setCursorLocation(CursorLocation::server);
  rows->open("select Name from People", CursorType::forwardOnly, LockType::readOnly);
  EXPECT_EQ(rows->recordCount(), -1);
}

TEST_P(DataAccessContract, FieldsAreFoundByPositionAndByNameWithoutLetterCase) {
  addThree();
  const auto rows = run("select Name, Age, Id as Name from People order by Id");
  EXPECT_EQ(rows->value("NAME"), Value("Ann"));
  EXPECT_EQ(rows->value(std::size_t{2}), Value(std::int32_t{1}));
  expectAdo(AdoError::itemNotFound, [&] { (void)rows->value("Nam"); });
  expectAdo(AdoError::itemNotFound, [&] { (void)rows->value(std::size_t{3}); });
}

TEST_P(DataAccessContract, AClosedSetRefusesEverything) {
  const auto rows = connection_->newRecordset();
  EXPECT_EQ(rows->state(), ObjectState::closed);
  expectAdo(AdoError::objectClosed, [&] { (void)rows->eof(); });
  expectAdo(AdoError::objectClosed, [&] { (void)rows->recordCount(); });
  expectAdo(AdoError::objectClosed, [&] { rows->moveNext(); });
  expectAdo(AdoError::objectClosed, [&] { (void)rows->value("Name"); });
  expectAdo(AdoError::objectClosed, [&] { rows->close(); });
}

TEST_P(DataAccessContract, AnOpenSetIsNotOpenedAgainUnlessItWasClosed) {
  const auto rows = opened("People");
  expectAdo(AdoError::objectOpen, [&] { rows->open("People", CursorType::keyset, LockType::optimistic); });
  rows->close();
  rows->open("select Id from People", CursorType::keyset, LockType::optimistic);
  EXPECT_EQ(rows->fields().size(), 1U);
}

TEST_P(DataAccessContract, ATableIsOpenedByItsNameInAnyLetterCase) {
  addThree();
  EXPECT_EQ(opened("people")->recordCount(), 3);
  if (engine_->deviations().speaksTransactSql) {
    EXPECT_EQ(opened(" [People] ")->recordCount(), 3);
  }
}

TEST_P(DataAccessContract, OpeningRaisesTheErrorsOfTheText) {
  const auto rows = connection_->newRecordset();
  expectDatabase(oledb::noTable,
                 [&] { rows->open("select * from Nowhere", CursorType::keyset, LockType::optimistic); });
  EXPECT_EQ(rows->state(), ObjectState::closed);
}

TEST_P(DataAccessContract, RowsStayWhatTheyWereWhenTheConnectionChangesTheTable) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  const auto rows = opened("select Name from People order by Id", LockType::readOnly);
  run("update People set Name = N'x' + Name");
  run("delete from People where Id = 2");
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Ann", "Bob", "Cid"));
}

TEST_P(DataAccessContract, AnErrorInALaterRowIsRaisedAtTheLatestWhenThatRowIsReached) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  const auto read = [&] { (void)run("select 10 / (2 - Id) from People order by Id")->recordCount(); };
  expectDatabase(oledb::errorsInCommand, read);
  if (!engine_->deviations().laterRowsFailLate) return;
  const auto rows = run("select 10 / (2 - Id) as Part from People order by Id");
  EXPECT_EQ(rows->value("Part"), Value(std::int32_t{10}));
  run("update People set Age = 1");
  rows->moveNext();
  expectDatabase(oledb::errorsInCommand, [&] { (void)rows->eof(); });
}

TEST_P(DataAccessContract, AHalfReadSetDoesNotHoldUpTheConnectionsWrites) {
  addThree();
  const auto rows = run("select Name from People order by Id");
  rows->moveNext();
  run("create table Other (Id int)");
  connection_->begin();
  run("insert into Other values (1)");
  connection_->commit();
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Bob", "Cid"));
}

TEST_P(DataAccessContract, ANewRowIsPostedAndItsIdentityCanBeReadAtOnce) {
  addThree();
  const auto rows = opened("People");
  rows->addNew();
  EXPECT_EQ(rows->editMode(), EditMode::add);
  rows->setValue("Name", Value("Dan"));
  rows->setValue("age", Value("50"));
  rows->update();
  EXPECT_EQ(rows->editMode(), EditMode::none);
  EXPECT_EQ(rows->value("Id"), Value(std::int32_t{4}));
  EXPECT_EQ(rows->value("Age"), Value(std::int32_t{50}));
  if (engine_->deviations().speaksTransactSql) {
    EXPECT_EQ(scalar("select @@identity"), "4");
  }
  EXPECT_EQ(rows->recordCount(), 4);
  EXPECT_EQ(rows->value("Name"), Value("Dan"));
}

TEST_P(DataAccessContract, RowsBeforeANewOneAreStillReached) {
  addThree();
  const auto rows = opened("select Id, Name from People order by Id");
  rows->addNew();
  rows->setValue("Name", Value("Dan"));
  rows->update();
  EXPECT_FALSE(rows->eof());
  rows->moveFirst();
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Ann", "Bob", "Cid", "Dan"));
}

TEST_P(DataAccessContract, ASecondNewRowPostsTheFirst) {
  const auto rows = opened("People");
  rows->addNew();
  rows->setValue("Name", Value("Ann"));
  rows->addNew();
  rows->setValue("Name", Value("Bob"));
  rows->update();
  EXPECT_EQ(scalar("select count(*) from People"), "2");
}

TEST_P(DataAccessContract, ColumnsThatWereNotSetTakeTheirDefaults) {
  const auto rows = opened("People");
  rows->addNew();
  rows->setValue("Name", Value("Ann"));
  rows->update();
  if (engine_->deviations().defaultsReadableAfterPosting) {
    EXPECT_EQ(rows->value("Active"), Value(true));
  }
  EXPECT_EQ(scalar("select Active from People"), "True");
}

TEST_P(DataAccessContract, AnEditIsPostedByUpdateOrByMovingAway) {
  addThree();
  const auto rows = opened("select * from People order by Id");
  rows->setValue("Age", Value(std::int32_t{31}));
  EXPECT_EQ(rows->editMode(), EditMode::inProgress);
  EXPECT_EQ(rows->value("Age"), Value(std::int32_t{31}));
  rows->moveNext();
  EXPECT_EQ(scalar("select Age from People where Id = 1"), "31");
  rows->setValue("Age", Value(Null{}));
  rows->update();
  EXPECT_EQ(scalar("select Age from People where Id = 2"), "NULL");
  EXPECT_EQ(rows->value("Name"), Value("Bob"));
}

TEST_P(DataAccessContract, ACancelledEditLeavesTheRow) {
  addThree();
  const auto rows = opened("select * from People order by Id");
  rows->setValue("Age", Value(std::int32_t{31}));
  rows->cancelUpdate();
  EXPECT_EQ(rows->value("Age"), Value(std::int32_t{30}));
  rows->addNew();
  rows->cancelUpdate();
  EXPECT_EQ(rows->value("Name"), Value("Ann"));
  EXPECT_EQ(rows->recordCount(), 3);
}

TEST_P(DataAccessContract, ClosingWithAPendingEditIsRefused) {
  const auto rows = opened("People");
  rows->addNew();
  expectAdo(AdoError::illegalOperation, [&] { rows->close(); });
  rows->cancelUpdate();
  rows->close();
}

TEST_P(DataAccessContract, ReadOnlySetsAndSetsOfNoSingleTableAreNotUpdated) {
  addThree();
  expectAdo(AdoError::featureNotAvailable, [&] { run("select * from People")->addNew(); });
  expectAdo(AdoError::featureNotAvailable,
            [&] { opened("People", LockType::readOnly)->setValue("Age", Value(Null{})); });
  const auto joined = opened("select a.Name from People a, People b");
  expectAdo(AdoError::featureNotAvailable, [&] { joined->addNew(); });
}

TEST_P(DataAccessContract, ValuesAreConvertedWhenTheyAreAssigned) {
  const auto rows = opened("People");
  rows->addNew();
  expectAdo(AdoError::dataConversion, [&] { rows->setValue("Age", Value("many")); });
  expectAdo(AdoError::dataConversion, [&] { rows->setValue("Photo", Value("text")); });
  expectDatabase(oledb::errorsOccurred, [&] { rows->setValue("Name", Value(std::string(21, 'x'))); });
  if (engine_->deviations().hasSqlServerTypes) {
    expectDatabase(oledb::errorsOccurred, [&] { rows->setValue("Tiny", Value(std::int32_t{256})); });
    expectDatabase(oledb::errorsOccurred, [&] { rows->setValue("Rate", Value(1e9)); });
  }
  expectAdo(AdoError::itemNotFound, [&] { rows->setValue("Nothing", Value(std::int32_t{1})); });
  rows->cancelUpdate();
}

TEST_P(DataAccessContract, ARequiredColumnLeftNullIsTheDatabasesErrorAndTheEditStays) {
  const auto rows = opened("People");
  rows->addNew();
  rows->setValue("Age", Value(std::int32_t{1}));
  expectDatabase(oledb::integrityViolation, [&] { rows->update(); });
  EXPECT_EQ(rows->editMode(), EditMode::add);
  rows->setValue("Name", Value("Ann"));
  rows->update();
  EXPECT_EQ(scalar("select Name from People"), "Ann");
}

TEST_P(DataAccessContract, ARowThatIsGoneCannotBeUpdated) {
  addThree();
  const auto rows = opened("select * from People order by Id");
  EXPECT_EQ(rows->value("Name"), Value("Ann"));
  run("delete from People where Id = 1");
  rows->setValue("Age", Value(std::int32_t{1}));
  expectDatabase(oledb::concurrencyViolation, [&] { rows->update(); });
}

TEST_P(DataAccessContract, ASetWithoutTheTablesKeyChangesItsOwnRowAlone) {
  addThree();
  run("update People set Age = 1");
  const auto rows = opened(engine_->sql("select Age from People where Id > 1 and Name <> N'drop'"));
  rows->setValue("Age", Value(std::int32_t{9}));
  rows->update();
  EXPECT_EQ(scalar("select count(*) from People where Age = 9"), "1");
  EXPECT_EQ(scalar("select Id from People where Age = 9"), "2");
}

TEST_P(DataAccessContract, AnAggregateOpenedForChangesHasItsRow) {
  addThree();
  EXPECT_EQ(opened("select max(Age) as Oldest from People")->value("Oldest"), Value(std::int32_t{40}));
}

TEST_P(DataAccessContract, AnEmptyTextIsADocumentWithoutBytes) {
  const auto rows = opened("People");
  rows->addNew();
  rows->setValue("Name", Value("Ann"));
  rows->setValue("Photo", Value(""));
  rows->update();
  EXPECT_EQ(run("select Photo from People")->value("Photo"), Value(Bytes()));
}

TEST_P(DataAccessContract, ChunksMakeOneDocumentAndReplaceTheOneBefore) {
  run("insert into People (Name, Photo) values (N'Ann', 0x0909)");
  const auto rows = opened("select Name, Photo, Note from People");
  const auto document = documentOf(3'000'000);
  for (std::size_t at = 0; at < document.size(); at += 1'000'000) {
    rows->appendChunk("Photo", Value(Bytes(document.owner(), document.view().subspan(at, 1'000'000))));
  }
  rows->appendChunk("Note", Value("one "));
  rows->appendChunk("Note", Value("two"));
  rows->update();
  EXPECT_EQ(rows->value("Photo"), Value(document));
  EXPECT_EQ(rows->value("Note"), Value("one two"));
  EXPECT_EQ(scalar("select datalength(Photo) from People"), "3000000");
}

TEST_P(DataAccessContract, AnEmptyDocumentIsNotNull) {
  const auto rows = opened("People");
  rows->addNew();
  rows->setValue("Name", Value("Ann"));
  rows->appendChunk("Photo", Value(Bytes()));
  rows->update();
  EXPECT_EQ(scalar("select case when Photo is null then -1 else datalength(Photo) end from People"), "0");
  EXPECT_EQ(run("select Photo from People")->value("Photo"), Value(Bytes()));
}

TEST_P(DataAccessContract, ChunksAreForLongFieldsOnly) {
  const auto rows = opened("People");
  rows->addNew();
  expectAdo(AdoError::illegalOperation, [&] { rows->appendChunk("Name", Value("x")); });
  expectAdo(AdoError::invalidArgument, [&] { rows->appendChunk("Photo", Value("x")); });
  rows->cancelUpdate();
}

struct FilterCase {
  const char* criteria;
  std::vector<std::string> names;
};

TEST_P(DataAccessContract, FiltersShowTheRowsThatSatisfyThem) {
  addThree();
  run("insert into People (Name, Age, Born) values (N'O''Brien', 30, '20050131')");
  const auto rows = run("select * from People order by Id");
  const FilterCase cases[] = {
      {"Name = 'ANN '", {"Ann"}},
      {"[Age] > 30", {"Bob"}},
      {"Age <= 30 and name <> 'ann'", {"O'Brien"}},
      {"Name = 'O''Brien'", {"O'Brien"}},
      {"Born = #2005-01-31#", {"O'Brien"}},
      {"Name like 'b*'", {"Bob"}},
      {"Name like '%i%'", {"Cid", "O'Brien"}},
      {"(Age = 30 and Name like 'A%') or Age = 40", {"Ann", "Bob"}},
      {"Age = 99", {}},
  };
  for (const auto& expected : cases) {
    SCOPED_TRACE(expected.criteria);
    rows->setFilter(expected.criteria);
    EXPECT_EQ(rows->recordCount(), static_cast<std::int32_t>(expected.names.size()));
    EXPECT_EQ(rest(*rows, "Name"), expected.names);
  }
  rows->setFilter("");
  EXPECT_EQ(rows->recordCount(), 4);
  EXPECT_EQ(rows->value("Name"), Value("Ann"));
}

TEST_P(DataAccessContract, BadFiltersAreRefusedAndTheOldOneStays) {
  addThree();
  const auto rows = run("select * from People order by Id");
  rows->setFilter("Age = 40");
  for (const char* criteria : {"Age", "Age =", "Age = 1 and", "Age = null", "Name like '*b'", "Age == 1", "Age = 'x'",
                               "(Age = 1 or Age = 2) and Age = 3"}) {
    SCOPED_TRACE(criteria);
    expectAdo(AdoError::invalidArgument, [&] { rows->setFilter(criteria); });
  }
  expectAdo(AdoError::itemNotFound, [&] { rows->setFilter("Size = 1"); });
  EXPECT_EQ(rows->recordCount(), 1);
}

TEST_P(DataAccessContract, ADetachedSetKeepsItsRowsAndDocuments) {
  run("insert into People (Name, Photo) values (N'Ann', 0x0102)");
  const auto rows = opened("select * from People");
  rows->detach();
  run("drop table People");
  connection_.reset();
  EXPECT_EQ(rows->recordCount(), 1);
  EXPECT_EQ(rows->value("Photo"), Value(Bytes({1, 2})));
  (void)errorOf([&] { rows->addNew(); });
  (void)errorOf([&] { (void)rows->nextRecordset(); });
  rows->close();
  expectAdo(AdoError::invalidConnection, [&] { rows->open("People", CursorType::keyset, LockType::optimistic); });
}

TEST_P(DataAccessContract, OnlyClientSideSetsAreDetached) {
  const auto rows = connection_->newRecordset();
  rows->setCursorLocation(CursorLocation::server);
  rows->open("People", CursorType::keyset, LockType::optimistic);
  expectAdo(AdoError::illegalOperation, [&] { rows->detach(); });
}

TEST_P(DataAccessContract, TextsOfEveryKindComeBackAsTheyWentIn) {
  const auto rows = opened("People");
  for (const std::string text : {"O'Brien", "100%", "\xF0\x9F\x98\x80 emoji", "资产负债表", "a\nb", "  leading"}) {
    rows->addNew();
    rows->setValue("Name", Value(text));
    rows->update();
    EXPECT_EQ(rows->value("Name"), Value(text));
  }
  const auto note = opened("select Id, Note from People where Id = 1");
  note->setValue("Note", Value(std::string(4000, 'n')));
  note->update();
  EXPECT_EQ(scalar("select Note from People where Id = 1"), std::string(4000, 'n'));
}

}  // namespace tolvane::contract
