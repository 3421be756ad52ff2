// The adapter on servers that speak TDS and differ from SQL Server in what they report.
#include "odbc/tds_database.h"

namespace tolvane::odbc {
namespace {

using tds::Imitation;

class TdsDeviations : public TdsDatabaseTest {
 protected:
  static void imitate(const Imitation& imitation) { server().state().imitate(imitation); }
};

TEST_F(TdsDeviations, AMissingTableUnderANumberOfTheServersOwnIsKnownByItsWords) {
  imitate({.ownErrorNumbers = true});
  const auto error = raisedBy([&] { run("select * from nowhere"); });
  EXPECT_EQ(error.number(), oledb::noTable);
  EXPECT_EQ(error.database().nativeNumber, 33557097);
}

TEST_F(TdsDeviations, ErrorsUnderANumberOfTheServersOwnAreThoseOfTheirWords) {
  run("create unique index UX_v on v (c)");
  run("insert into v (c) values (N'a')");
  imitate({.ownErrorNumbers = true});
  const std::pair<const char*, std::uint32_t> errors[] = {
      {"selec 1", oledb::errorsInCommand},
      {"select nme from v", oledb::errorsInCommand},
      {"insert into v (c) values (N'A')", oledb::integrityViolation},
      {"insert into v (c) values (N'a name of more than twenty letters')", oledb::dataOverflow},
      {"select cast('x' as int)", oledb::cantConvertValue},
      {"drop table nowhere", oledb::noTable},
  };
  for (const auto& [sql, number] : errors) EXPECT_EQ(raisedBy([&, text = sql] { run(text); }).number(), number) << sql;
}

TEST_F(TdsDeviations, WhatFollowsAnErrorThatUndidTheTransactionIsNotCommittedOnItsOwn) {
  imitate({.errorsUndoTransactions = true});
  connection_->begin();
  run("insert into v (a) values (1)");
  (void)raisedBy([&] { run("select * from nowhere"); });
  (void)raisedBy([&] { run("insert into v (a) values (2)"); });
  connection_->rollback();
  run("insert into v (a) values (3)");
  connection_->begin();
  run("insert into v (a) values (4)");
  connection_->commit();
  server().state().endConnections();
  connect();
  EXPECT_EQ(scalar("select sum(a) from v"), "7");
}

TEST_F(TdsDeviations, ARollbackThatTheServerRefusesLeavesNoConnectionBehind) {
  imitate({.errorsUndoTransactions = true});
  for (int i = 0; i < 5; ++i) {
    connection_->begin();
    (void)raisedBy([&] { run("select * from nowhere"); });
    connection_->rollback();
    run("insert into v (a) values (1)");
  }
  EXPECT_EQ(server().state().connections(), 1U);
}

TEST_F(TdsDeviations, NamesOfTheCatalogueMayComeInAnotherLetterCase) {
  run("create table W (KeyColumn int not null, Content int null, constraint PK_W primary key (KeyColumn))");
  run("insert into W values (1, 5); insert into W values (2, 5)");
  imitate({.smallLetters = true});
  const auto rows = opened("select * from W");
  EXPECT_EQ(rows->value("KeyColumn"), Value(std::int32_t{1}));
  rows->setValue("Content", Value(std::int32_t{6}));
  rows->update();
  EXPECT_EQ(scalar("select KeyColumn from W where Content = 6"), "1");
}

TEST_F(TdsDeviations, ExpressionsMayComeWithANameOrNone) {
  for (const char* name : {"", "?column?"}) {
    imitate({.nameOfExpressions = name});
    EXPECT_EQ(scalar("select count(*) from v"), "0");
    EXPECT_EQ(opened("select max(a) from v")->fields().front().name, name);
  }
}

TEST_F(TdsDeviations, WithoutReportsOfNotNullRowsAreStillPosted) {
  imitate({.hidesNotNull = true});
  const auto rows = opened("v");
  rows->addNew();
  rows->setValue("a", Value(std::int32_t{1}));
  rows->update();
  EXPECT_EQ(rows->value("k"), Value(std::int32_t{1}));
  rows->setValue("a", Value(std::int32_t{2}));
  rows->update();
  EXPECT_EQ(scalar("select a from v"), "2");
}

TEST_F(TdsDeviations, AServerThatCutsLongValuesUnlessItIsToldNotToCutsNone) {
  imitate({.textSize = 4096});
  const auto connection = openedSource(dsn("APP=other"));
  run("insert into v (x) values (N'" + std::string(100'000, 'x') + "')");
  EXPECT_EQ(connection->execute("select x from v")->value("x"), Value(std::string(100'000, 'x')));
}

TEST_F(TdsDeviations, AnIdentityThatResultsDoNotTellIsFoundInTheCatalogue) {
  imitate({.hidesIdentity = true});
  const auto rows = opened("select * from v where k = 0");
  rows->addNew();
  rows->setValue("a", Value(std::int32_t{1}));
  rows->update();
  EXPECT_EQ(rows->value("k"), Value(std::int32_t{1}));
}

}  // namespace
}  // namespace tolvane::odbc
