#include "host/command_line.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "host/accounts_command.h"
#include "host/call_command.h"
#include "host/compare_command.h"
#include "host/copy_command.h"
#include "host/describe_command.h"
#include "host/doctor_command.h"
#include "host/init_command.h"
#include "host/sql_command.h"
#include "host/upgrade_command.h"
#include "host/usage_error.h"

namespace tolvane::host {
namespace {

constexpr const char* dsnHelp = "the data source, such as Database=demo.db;UserID=1 (default: TOLVANE_DSN)";
constexpr const char* secretsHelp = "show passwords";
constexpr const char* versionText = "tolvane " TOLVANE_VERSION;

std::optional<std::string> dsnOr(const std::optional<std::string>& given) {
  if (given) return given;
  const char* fallback = std::getenv("TOLVANE_DSN");
  return fallback ? std::optional<std::string>(fallback) : std::nullopt;
}

/// The commands and what they were given.
class CommandLine {
 public:
  explicit CommandLine(const Environment& environment) : environment_(environment) {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", std::string(versionText));
    addCall();
    addDescriptions();
    addSql();
    addInit();
    addAccounts();
    addUpgrade();
    addCopy();
    addCompare();
    addDoctor();
    app_.add_subcommand("version", "print the version")->callback([this] {
      environment_.out << versionText << '\n';
      status_ = exitDone;
    });
  }

  int run(int count, const char* const* arguments) {
    try {
      app_.parse(count, arguments);
      return status_;
    } catch (const CLI::ParseError& error) {
      const int code = app_.exit(error, environment_.out, environment_.err);
      return code == 0 ? exitDone : exitUsage;
    } catch (const UsageError& error) {
      environment_.err << "tolvane: " << error.what() << '\n';
      return exitUsage;
    }
  }

 private:
  void addCall() {
    auto* command = app_.add_subcommand("call", "call one method and print its result as JSON");
    command->add_option("--dsn", call_.dsn, dsnHelp);
    command->add_option("--trace", call_.trace, "write what the service asks of its platform to FILE (- for stderr)");
    command->add_flag("--table", call_.asTable, "print lists and result sets as tables");
    command->add_flag("--show-secrets", call_.showSecrets, secretsHelp);
    command->add_option("method", call_.classAndMethod, "CLASS.METHOD, in any letter case")->required();
    command->add_option("parameters", call_.assignments, "parameter=JSON, or parameter=@FILE for a file's bytes");
    command->callback([this] {
      call_.dsn = dsnOr(call_.dsn);
      status_ = runCallCommand(environment_, call_);
    });
  }

  void addDescriptions() {
    auto* list = app_.add_subcommand("classes", "list the classes");
    list->add_flag("--json", asJson_, "as JSON");
    list->callback([this] { status_ = runClassesCommand(environment_, asJson_); });
    auto* describe = app_.add_subcommand("describe", "show the methods of a class, or one of them");
    describe->add_flag("--json", asJson_, "as JSON");
    describe->add_option("name", described_, "CLASS or CLASS.METHOD")->required();
    describe->callback([this] { status_ = runDescribeCommand(environment_, described_, asJson_); });
  }

  void addSql() {
    auto* command = app_.add_subcommand("sql", "run T-SQL and print its result sets");
    command->add_option("--dsn", sql_.dsn, dsnHelp);
    command->add_option("--file", sql_.file, "a script; lines GO separate its batches (- for standard input)");
    command->add_flag("--json", sql_.asJson, "print each result set as a JSON record set");
    command->add_flag("--show-secrets", sql_.showSecrets, secretsHelp);
    command->add_option("text", sql_.text, "the batch");
    command->callback([this] {
      sql_.dsn = dsnOr(sql_.dsn);
      status_ = runSqlCommand(environment_, sql_);
    });
  }

  void addInit() {
    auto* command = app_.add_subcommand("init", "make a new account set");
    command->add_option("--dsn", init_.dsn, dsnHelp);
    auto* sample = command->add_option("--sample", sample_, "add the data of a sample (default: demo)");
    sample->expected(0, 1);
    command->callback([this, sample] {
      init_.dsn = dsnOr(init_.dsn);
      if (sample->count() > 0) init_.sample = sample_.empty() ? "demo" : sample_;
      status_ = runInitCommand(environment_, init_);
    });
  }

  void addAccounts() {
    auto* command = app_.add_subcommand("accounts", "list the account-set configurations of the user, or test one");
    command->add_option("--dsn", accounts_.dsn, dsnHelp);
    command->add_flag("--json", accounts_.asJson, "as JSON");
    command->add_flag("--show-secrets", accounts_.showSecrets, secretsHelp);
    auto* test = command->add_subcommand("test", "try to reach the account set of a configuration")->fallthrough();
    test->add_option("name", accounts_.name, "the configuration")->required();
    command->callback([this, test] {
      accounts_.dsn = dsnOr(accounts_.dsn);
      status_ = test->parsed() ? runAccountsTestCommand(environment_, accounts_)
                               : runAccountsCommand(environment_, accounts_);
    });
  }

  void addUpgrade() {
    auto* command = app_.add_subcommand("upgrade", "convert Cs statements of the older layout");
    command->add_option("--dsn", upgrade_.dsn, dsnHelp);
    command->add_option("--group", upgrade_.groups, "the identifier of an old group (default: all that are left)");
    command->add_option("--currency", upgrade_.currency, "the number of the statements' currency (default: RMB)");
    command->callback([this] {
      upgrade_.dsn = dsnOr(upgrade_.dsn);
      upgrade_.isTerminal = isatty(STDERR_FILENO) == 1;
      status_ = runUpgradeCommand(environment_, upgrade_);
    });
  }

  void addCopy() {
    auto* command = app_.add_subcommand("copy", "copy an account set into a new one, on the same engine or another");
    command->add_option("--from", copy_.from, "the data source that is read")->required();
    command->add_option("--to", copy_.to, "the data source that is made and filled")->required();
    command->callback([this] {
      copy_.isTerminal = isatty(STDERR_FILENO) == 1;
      status_ = runCopyCommand(environment_, copy_);
    });
  }

  void addCompare() {
    auto* command = app_.add_subcommand("compare", "say whether two account sets hold the same rows");
    command->add_option("--dsn", compared_, "the two data sources, A and B: --dsn TEXT --dsn TEXT")
        ->required()
        ->expected(2)
        ->allow_extra_args(false);
    command->callback([this] { status_ = runCompareCommand(environment_, {compared_.front(), compared_.back()}); });
  }

  void addDoctor() {
    auto* command = app_.add_subcommand("doctor", "check a data source and say what is wrong");
    command->add_option("--dsn", doctor_.dsn, dsnHelp);
    command->callback([this] {
      doctor_.dsn = dsnOr(doctor_.dsn);
      status_ = runDoctorCommand(environment_, doctor_);
    });
  }

  const Environment& environment_;
  CLI::App app_{"Data service of an accounting suite's financial reports", "tolvane"};
  CallOptions call_;
  SqlOptions sql_;
  InitOptions init_;
  AccountsOptions accounts_;
  UpgradeOptions upgrade_;
  CopyOptions copy_;
  DoctorOptions doctor_;
  std::vector<std::string> compared_;
  std::string sample_;
  std::string described_;
  bool asJson_ = false;
  int status_ = exitUsage;
};

}  // namespace

int runCommandLine(int count, const char* const* arguments, const Environment& environment) {
  return CommandLine(environment).run(count, arguments);
}

}  // namespace tolvane::host
