#include <fstream>
#include <sstream>
#include <iostream>
#include "embedded/account_set.h"
namespace tolvane::embedded { namespace {
class Smoke : public AccountSetTest {};
TEST_F(Smoke, Runs) {
  try {
    std::cerr << scalar("select 1+1") << "\n";
    run("create table t (a int identity(1,1) not null, b nvarchar(20) not null, c image null, d decimal(10,2), constraint pk_t primary key (a))");
    run("create unique index ix_t on t (b)");
    run("insert into t (b,d) values (N'abc', 1.5)");
    run("insert t (b,d) values (N'中文', 2.25)");
    std::cerr << scalar("select count(*) from t where b='ABC '") << "\n";
    std::cerr << scalar("select sum(d) from t") << "\n";
    std::cerr << scalar("select @@identity") << "\n";
    std::cerr << errorOf([&]{ run("insert t (b) values ('ABC')"); }).description() << "\n";
    std::cerr << errorOf([&]{ run("insert t (d) values (1)"); }).description() << "\n";
    auto rs = connection_->newRecordset();
    rs->open("T", CursorType::keyset, LockType::optimistic);
    rs->addNew(); rs->setValue("b", Value("neu")); rs->appendChunk("C", Value(Bytes(std::vector<std::uint8_t>(70000,7)))); rs->update();
    std::cerr << toText(rs->value("A")) << " " << rs->value("c").get<Bytes>()->size() << "\n";
    std::cerr << rs->recordCount() << "\n";
  } catch (const AutomationError& e) { FAIL() << e.description() << " | " << e.database().sql; }
}
TEST_F(Smoke, Schema) {
  std::ifstream in("/work/wt/house/schema/accountset.sql"); std::stringstream s; s << in.rdbuf();
  std::istringstream lines(s.str()); std::string line, batch;
  auto flush=[&]{ if(batch.find_first_not_of(" \n\r")!=std::string::npos) try { run(batch);} catch(const AutomationError& e){ ADD_FAILURE() << e.description() << "\n" << batch.substr(0,300);} batch.clear(); };
  while (std::getline(lines,line)) { if (line=="GO") flush(); else batch += line + "\n"; } flush();
  std::cerr << scalar("select count(*) from sysobjects") << "\n";
}
}}
