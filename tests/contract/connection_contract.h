// Connections and commands: what every engine does alike. Included by one source of each engine's tests.
#pragma once

#include "contract/contract_engine.h"

namespace tolvane::contract {

TEST_P(DataAccessContract, AStatementWithRowsGivesAnOpenSetAndOneWithoutAClosedOne) {
  EXPECT_EQ(run("select Name from People")->state(), ObjectState::open);
  EXPECT_EQ(run("update People set Age = 1")->state(), ObjectState::closed);
}

TEST_P(DataAccessContract, ABatchGivesItsFirstRowsAndTheOthersAfterThem) {
  TOLVANE_ASKS_FOR(takesBatches);
  addThree();
  const auto rows =
      run("update People set Age = 1; select Name from People where Id = 1; select Name from People where Id = 2");
  EXPECT_EQ(toText(rows->value("Name")), "Ann");
  const auto next = rows->nextRecordset();
  ASSERT_NE(next, nullptr);
  EXPECT_EQ(toText(next->value("Name")), "Bob");
  EXPECT_EQ(next->nextRecordset(), nullptr);
}

TEST_P(DataAccessContract, EveryStatementOfABatchRunsBeforeItsFirstRowsAreRead) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  const auto rows =
      run("select Name from People order by Id update People set Name = Name + N'x' delete from People where Id = 3");
  EXPECT_EQ(scalar("select count(*) from People"), "2");
  EXPECT_THAT(rest(*rows, "Name"), ::testing::ElementsAre("Ann", "Bob", "Cid"));
}

TEST_P(DataAccessContract, AnErrorOfALaterStatementIsRaisedAndWhatRanBeforeItStays) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  expectDatabase(oledb::integrityViolation, [&] {
    run("update People set Age = 5 insert into People (Name) values (N'ann') update People set Age = 6");
  });
  EXPECT_EQ(scalar("select Age from People where Id = 1"), "6");
}

TEST_P(DataAccessContract, AFailedStatementLeavesItsOwnRowsAsTheyWere) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  expectDatabase(oledb::errorsInCommand, [&] { run("update People set Age = 100 / (Id - 3)"); });
  EXPECT_EQ(scalar("select Age from People where Id = 1"), "30");
  connection_->begin();
  expectDatabase(oledb::errorsInCommand, [&] { run("update People set Age = 100 / (Id - 3)"); });
  if (engine_->deviations().errorsEndTransactions) {
    expectDatabase(oledb::unspecified, [&] { run("select Age from People where Id = 1"); });
    connection_->rollback();
  } else {
    EXPECT_EQ(scalar("select Age from People where Id = 1"), "30");
    connection_->commit();
  }
  EXPECT_EQ(scalar("select Age from People where Id = 1"), "30");
}

TEST_P(DataAccessContract, AnEmptyTextIsRefusedBeforeTheServerSeesIt) {
  expectDatabase(oledb::noCommand, [&] { run(""); });
  expectDatabase(oledb::noCommand, [&] { run("   "); });
}

TEST_P(DataAccessContract, ErrorsCarryTheServersWordsNumberAndTheTextThatWasSent) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  TOLVANE_ASKS_FOR(tellsDatabaseDetail);
  const auto error = errorOf([&] { run("select Nme from People"); });
  EXPECT_EQ(error.number(), oledb::errorsInCommand);
  if (engine_->deviations().errorsAreSqlServers) {
    EXPECT_EQ(error.description(), "Invalid column name 'Nme'.");
    EXPECT_EQ(error.database().nativeNumber, 207);
  }
  EXPECT_EQ(error.database().sql, "select Nme from People");
}

struct ServerError {
  const char* sql;
  std::uint32_t number;
  std::int32_t native;
  const char* description;
};

TEST_P(DataAccessContract, ServerErrorsHaveAdosNumbers) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  addThree();
  const ServerError errors[] = {
      {"selec 1", oledb::errorsInCommand, 2812, "Could not find stored procedure 'selec'."},
      {"select * form People", oledb::errorsInCommand, 102, "Incorrect syntax near 'form'."},
      {"select * from Nowhere", oledb::noTable, 208, "Invalid object name 'Nowhere'."},
      {"drop table Nowhere", oledb::noTable, 3701,
       "Cannot drop the table 'Nowhere', because it does not exist or you do not have permission."},
      {"insert into People (Name) values (N'ANN ')", oledb::integrityViolation, 2601,
       "Cannot insert duplicate key row in object 'dbo.People' with unique index 'UX_People_Name'."},
      {"insert into People (Age) values (1)", oledb::integrityViolation, 515,
       "Cannot insert the value NULL into column 'Name', table 'dbo.People'; column does not allow nulls. INSERT "
       "fails."},
      {"update People set Name = null where Id = 1", oledb::integrityViolation, 515,
       "Cannot insert the value NULL into column 'Name', table 'dbo.People'; column does not allow nulls. UPDATE "
       "fails."},
      {"insert into People (Name) values (N'a name of more than twenty letters')", oledb::dataOverflow, 8152,
       "String or binary data would be truncated."},
      {"select cast('x' as int)", oledb::cantConvertValue, 245,
       "Conversion failed when converting the varchar value 'x' to data type int."},
      {"select 1 where 1 = (select Id from People)", oledb::errorsInCommand, 512,
       "Subquery returned more than 1 value. This is not permitted when the subquery follows =, !=, <, <= , >, >= or "
       "when "
       "the subquery is used as an expression."},
  };
  for (const auto& expected : errors) {
    SCOPED_TRACE(expected.sql);
    const auto error = errorOf([&] { run(expected.sql); });
    EXPECT_EQ(error.number(), expected.number);
    if (!engine_->deviations().errorsAreSqlServers) continue;
    if (engine_->deviations().tellsDatabaseDetail) {
      EXPECT_EQ(error.database().nativeNumber, expected.native);
    }
    EXPECT_THAT(error.description(), ::testing::StartsWith(std::string(expected.description).substr(0, 40)));
  }
}

TEST_P(DataAccessContract, FailuresOfTheDatabaseAreCountedAndThoseOfTheCallerAreNot) {
  TOLVANE_ASKS_FOR(tellsDatabaseDetail);
  const auto before = connection_->failureCount();
  (void)errorOf([&] { run("select * from Nowhere"); });
  EXPECT_EQ(connection_->failureCount(), before + 1);
  (void)errorOf([&] { run("select 1")->moveLast(), run("select 1 where 1=0")->moveFirst(); });
  EXPECT_EQ(connection_->failureCount(), before + 1);
}

TEST_P(DataAccessContract, ARollbackUndoesWhatACommitWouldHaveKept) {
  connection_->begin();
  EXPECT_TRUE(connection_->inTransaction());
  addThree();
  connection_->rollback();
  EXPECT_FALSE(connection_->inTransaction());
  EXPECT_EQ(scalar("select count(*) from People"), "0");
  connection_->begin();
  addThree();
  connection_->commit();
  EXPECT_EQ(scalar("select count(*) from People"), "3");
}

TEST_P(DataAccessContract, ARollbackWithoutATransactionIsNoErrorAndACommitIs) {
  connection_->rollback();
  (void)errorOf([&] { connection_->commit(); });
}

TEST_P(DataAccessContract, TransactionsOfTheTextNestInTheConnections) {
  TOLVANE_ASKS_FOR(speaksTransactSql);
  connection_->begin();
  run("begin tran insert into People (Name) values (N'Ann') commit");
  EXPECT_TRUE(connection_->inTransaction());
  connection_->rollback();
  EXPECT_EQ(scalar("select count(*) from People"), "0");
}

TEST_P(DataAccessContract, CommandsPutTheirParametersInTheOrderOfTheMarks) {
  const auto command = connection_->newCommand();
  command->setCommandText("insert into People (Name, Age, Photo) values (?, ?, ?)");
  command->appendParameter({DataType::varWChar, ParameterDirection::input, 20, Value("O'Brien ?")});
  command->appendParameter({DataType::integer, ParameterDirection::input, 0, Value(std::int32_t{7})});
  command->appendParameter({DataType::longVarBinary, ParameterDirection::input, 0, Value(documentOf(5000))});
  EXPECT_EQ(command->execute()->state(), ObjectState::closed);
  const auto rows = run("select Name, Age, Photo from People");
  EXPECT_EQ(rows->value("Name"), Value("O'Brien ?"));
  EXPECT_EQ(rows->value("Age"), Value(std::int32_t{7}));
  EXPECT_EQ(rows->value("Photo"), Value(documentOf(5000)));
}

TEST_P(DataAccessContract, ACommandWithoutTextOrWithTooFewParametersIsRefused) {
  const auto command = connection_->newCommand();
  expectDatabase(oledb::noCommand, [&] { (void)command->execute(); });
  command->setCommandText("select ?");
  expectDatabase(oledb::parameterNotOptional, [&] { (void)command->execute(); });
}

TEST_P(DataAccessContract, AParameterOfNullIsNull) {
  const auto command = connection_->newCommand();
  command->setCommandText("select case when ? is null then 1 else 0 end");
  command->appendParameter({DataType::integer, ParameterDirection::input, 0, Value(Null{})});
  EXPECT_EQ(command->execute()->value(std::size_t{0}), Value(std::int32_t{1}));
}

}  // namespace tolvane::contract
