// What the way through automation costs: both DLLs as a compiled client uses them, beside the same calls made on the
// C++ classes in this very program, on the same account set, in one run. The DLLs are registered, the server on the
// standalone components.
//
//     com_bench FOLDER      makes FOLDER/bench.db when it is not there
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "automation/late_bound.h"
#include "automation/text.h"
#include "embedded/embedded_engine.h"
#include "frame/dispatcher.h"
#include "platform/error.h"
#include "reportstore/srv_rpt_retrieve.h"
#include "standalone/call.h"
#include "standalone/share_folder.h"
#include "standalone/standalone_platform.h"

namespace tolvane::bench {
namespace {

using automation::LateBound;
using automation::RemoteClass;
using automation::RemoteMember;
using automation::Variant;

constexpr std::int32_t largeReport = 1;  // the first of an account set that was empty
constexpr std::int32_t modeReads = 10000;

double microseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

/// Both take turns, so that what else the machine does meets both; the fastest runs count.
void compare(const char* name, int runs, double aim, const std::function<void()>& system,
             const std::function<void()>& plain) {
  double systemTime = std::numeric_limits<double>::max();
  double plainTime = std::numeric_limits<double>::max();
  for (int i = 0; i < runs; ++i) {
    plainTime = std::min(plainTime, microseconds(plain));
    systemTime = std::min(systemTime, microseconds(system));
  }
  std::printf("%-44s %14.2f %14.2f %8.2f %6.2f\n", name, systemTime, plainTime, systemTime / plainTime, aim);
}

/// The C++ classes on the embedded engine, as a host calls them.
class DirectCaller {
 public:
  explicit DirectCaller(std::string dsn)
      : platform_({{{"sqlite", std::make_shared<embedded::EmbeddedEngine>()}}, standalone::findResources(), 936}),
        reader_(platform_),
        dsn_(std::move(dsn)) {}

  void fetch() {
    standalone::Call call(platform_.session(), TransactionMode::supported);
    Value document;
    Value printer;
    if (!reader_.GetRptPlx(dsn_, largeReport, document, printer)) raise(RuntimeError::subscriptOutOfRange);
    call.finish();
  }
  void list() {
    standalone::Call call(platform_.session(), TransactionMode::supported);
    ObjectRef reports;
    reader_.GetRptlist(dsn_, reports, "", 3);
    call.finish();
  }
  void readModes() {
    const ClassDescription description = SrvRptRetrieve::description();
    const MethodDescription& mode = findMethod(description, "TransMode");
    for (std::int32_t i = 0; i < modeReads; ++i) {
      std::vector<Value> none;
      static_cast<void>(invoke(reader_, mode, none));
    }
  }
  void run(const std::string& sql) {
    standalone::Call call(platform_.session(), TransactionMode::required);
    const auto context = platform_.application()->getContext();
    context->openDataSource(dsn_);
    context->getConnection()->execute(sql);
    call.finish();
  }

 private:
  standalone::StandalonePlatform platform_;
  SrvRptRetrieve reader_;
  std::string dsn_;
};

/// The same through automation, with members looked up once as compiled clients do.
class AutomationCaller {
 public:
  explicit AutomationCaller(std::string dsn)
      : reader_(RemoteClass(L"NorvTolvane.SrvRptRetrieve").create()), dsn_(std::move(dsn)) {}

  void fetch() {
    Variant document;
    VARIANT given[] = {reference(document), number(largeReport), dsn_.get()};
    invoke(getRptPlx_, given, 3);
  }
  void list() {
    Variant reports;
    Variant view("");
    VARIANT given[] = {number(3), view.get(), reference(reports), dsn_.get()};
    invoke(getRptlist_, given, 4);
  }
  void readModes() {
    for (std::int32_t i = 0; i < modeReads; ++i) invoke(transMode_, nullptr, 0);
  }

 private:
  static VARIANT reference(Variant& target) {
    VARIANT result;
    VariantInit(&result);
    result.vt = VT_BYREF | VT_VARIANT;
    result.pvarVal = target.receive();
    return result;
  }
  static VARIANT number(std::int32_t value) {
    VARIANT result;
    VariantInit(&result);
    result.vt = VT_I4;
    result.lVal = value;
    return result;
  }
  void invoke(RemoteMember& member, VARIANT* given, UINT count) {
    DISPPARAMS parameters{given, nullptr, count, 0};
    Variant result;
    const HRESULT code =
        reader_.get()->Invoke(member.in(*reader_.get()), IID_NULL, LOCALE_SYSTEM_DEFAULT,
                              DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, result.receive(), nullptr, nullptr);
    if (FAILED(code)) raise(RuntimeError::invalidArgument);
  }

  LateBound reader_;
  Variant dsn_;
  RemoteMember getRptPlx_{L"GetRptPlx"};
  RemoteMember getRptlist_{L"GetRptlist"};
  RemoteMember transMode_{L"TransMode"};
};

/// 20,000 reports, one of them with a document of 1 MiB, made by the engine itself.
void fill(const std::string& dsn) {
  RemoteMember createAccountSet(L"CreateAccountSet");
  RemoteClass(L"NorvStandalone.Application").create().call(createAccountSet, dsn);
  DirectCaller caller(dsn);
  const std::string insert =
      "insert into t_Rpt_Content (FRptName, FRptName_Cht, FRptName_En, FSysName, FYear, FPeriod, FOwner, FRptType, "
      "FLastOperator, FLastDate, FVisibleInList, FRptData) values (N'报表' + convert(nvarchar(10), @i), N'報表', "
      "N'Report', "
      "N'报表系统', 2012, 3, 1, 1, 1, '20120315', '1', ";
  caller.run(
      "declare @i int set @i = 1 " + insert +
      "convert(varbinary(max), replicate(convert(varchar(max), '0123456789abcdef'), 65536))) while @i < 20000 begin "
      "set @i = @i + 1 " +
      insert + "0x01) end");
}

void run(const std::filesystem::path& folder) {
  const std::filesystem::path file = std::filesystem::absolute(folder / "bench.db");
  const std::string dsn = "Database=" + automation::utf8(file.wstring());
  if (!std::filesystem::exists(file)) fill(dsn);
  DirectCaller direct(dsn);
  AutomationCaller client(dsn);
  std::printf("%-44s %14s %14s %8s %6s\n", "case", "system us", "plain us", "ratio", "aim");
  compare(
      "10,000 reads of TransMode (aim 10,000 us)", 20, 0, [&] { client.readModes(); }, [&] { direct.readModes(); });
  compare(
      "GetRptPlx, 1 MiB", 300, 1.1, [&] { client.fetch(); }, [&] { direct.fetch(); });
  compare(
      "GetRptlist, 20,000 reports", 10, 2.0, [&] { client.list(); }, [&] { direct.list(); });
}

}  // namespace
}  // namespace tolvane::bench

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: com_bench FOLDER\n", stderr);
    return 2;
  }
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  int status = 0;
  try {
    tolvane::bench::run(arguments[1]);
  } catch (const tolvane::AutomationError& error) {
    std::fprintf(stderr, "com_bench: %s\n", error.what());
    status = 1;
  }
  CoUninitialize();
  return status;
}
