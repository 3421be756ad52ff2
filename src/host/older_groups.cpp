#include "host/older_groups.h"

#include <array>
#include <optional>
#include <utility>

#include "catalogue/catalogue.h"
#include "frame/sql_text.h"
#include "host/watched_platform.h"
#include "platform/conversions.h"
#include "standalone/call.h"

namespace tolvane::host {
namespace {

/// FCycleID of a group that has been converted.
constexpr std::int32_t convertedCycle = 10000;

/// How the statement begins that takes one item value over.
constexpr std::string_view valueStatement = " IF Not Exists(";

OlderGroup groupOf(const std::function<Value(const char*)>& field) {
  OlderGroup group;
  group.id = toInt32(field("FRptGroupID"));
  group.number = toText(field("FRptGroupNum"));
  group.name = toText(field("FRptGroupName"));
  group.cycle = toInt32(field("FCycleID"));
  group.baseStyle = toInt32(field("FBaseRptStyle"));
  return group;
}

std::int64_t count(Connection& connection, const std::string& query) {
  return toInt64(connection.execute(query)->value("FCount"));
}

/// Counts the rows as they go over, and keeps the first failure, which the service answers with a mere 0.
class ConversionWatcher : public DatabaseWatcher {
 public:
  explicit ConversionWatcher(const RowProgress& progress) : progress_(progress) {}

  void rowPosted() override {
    ++statements;
    progress_(statements + values);
  }
  void executed(const std::string& sql) override {
    if (!sql.starts_with(valueStatement)) return;
    ++values;
    progress_(statements + values);
  }
  void failed(const AutomationError& error) override {
    if (!failure) failure = error.description();
  }

  std::int64_t statements = 0;
  std::int64_t values = 0;
  std::optional<std::string> failure;

 private:
  const RowProgress& progress_;
};

GroupResult refused(std::string reason) {
  return {GroupOutcome::refused, std::move(reason)};
}

/// Adds the group that takes the old one's place; answers its identifier.
std::int32_t addSuccessor(Connection& connection, const OlderGroup& group) {
  const Value last = connection.execute("Select Max(FRptGroupID) as FLast From t_CsRptGroup")->value("FLast");
  const std::int32_t id = last.isNull() ? 1 : toInt32(last) + 1;
  const auto row = connection.newRecordset();
  row->open("Select * From t_CsRptGroup Where FRptGroupID=0", CursorType::keyset, LockType::optimistic);
  row->addNew();
  row->setValue("FRptGroupID", id);
  row->setValue("FRptGroupNum", group.number);
  row->setValue("FRptGroupName", group.name);
  row->setValue("FCycleID", group.cycle);
  row->setValue("FBaseRptStyle", group.baseStyle);
  row->update();
  row->close();
  return id;
}

}  // namespace

bool OlderGroup::isConverted() const {
  return cycle == convertedCycle;
}

std::string_view outcomeName(GroupOutcome outcome) {
  static constexpr std::array<std::string_view, groupOutcomeCount> names = {"converted", "skipped", "refused"};
  return names[static_cast<std::size_t>(outcome)];
}

OlderGroups::OlderGroups(Platform& platform, standalone::Session& session, std::string dsn)
    : platform_(platform), session_(session), dsn_(std::move(dsn)) {}

CallResult OlderGroups::ask(const std::string& method, const std::vector<std::pair<std::string, Value>>& arguments) {
  const auto* description = findClass("CsRetrieve");
  return runCall(platform_, session_, {description, &findMethod(*description, method), {{dsn_}, arguments}});
}

bool OlderGroups::exist() {
  return toInt32(ask("IsNeedUpGrade", {}).result) == 1;
}

std::int32_t OlderGroups::currencyID(const std::string& currencyNum) {
  // An apostrophe would only make the look-up fail, and a currency's number holds none.
  return toInt32(ask("GetCurrencyID", {{"sCurrencyNum", currencyNum}}).result);
}

void OlderGroups::countRows(OlderGroup& group) {
  const auto source = session_.open(dsn_);
  group.statements =
      count(*source.connection,
            sql("Select Count(*) as FCount From t_Rpt_CsRptContent Where FRptGroupName='", doubled(group.name), "'"));
  group.values = count(*source.connection,
                       sql("Select Count(*) as FCount From t_Rpt_CsRptItem a inner join t_Rpt_CsRptItemData b on "
                           "a.FItemNum=b.FItemNum Where a.FRptGroupID=",
                           group.id));
}

std::vector<OlderGroup> OlderGroups::left() {
  const auto answer = ask("GetRptGroupList", {{"oRptGroupList", ObjectRef()}});
  const auto rows = answer.out.front().second.objectAs<ItemList>();
  std::vector<OlderGroup> groups;
  for (std::int32_t i = 1; i <= rows->count(); ++i) {
    const auto row = rows->item(i).objectAs<PropertyBag>();
    groups.push_back(groupOf([&](const char* name) { return row->item(name); }));
    countRows(groups.back());
  }
  return groups;
}

std::vector<OlderGroup> OlderGroups::find(std::int32_t id) {
  const auto source = session_.open(dsn_);
  const auto rows = source.connection->execute(sql("Select * From t_Rpt_CsRptGroup Where FRptGroupID=", id));
  std::vector<OlderGroup> groups;
  for (; !rows->eof(); rows->moveNext()) {
    groups.push_back(groupOf([&](const char* name) { return rows->value(name); }));
  }
  for (OlderGroup& group : groups) countRows(group);
  return groups;
}

GroupResult OlderGroups::convert(const OlderGroup& group, std::int32_t currencyID, const std::string& currencyNum,
                                 const RowProgress& progress) {
  try {
    // Everything of the group is in this call's transaction. Going without finish() takes it back.
    standalone::Call call(session_, TransactionMode::required);
    const auto source = session_.open(dsn_);
    GroupResult result = convertIn(*source.connection, group, currencyID, currencyNum, progress);
    if (result.outcome == GroupOutcome::converted && !call.finish()) {
      return refused("an operation of the conversion failed");
    }
    return result;
  } catch (const AutomationError& error) {
    return refused(error.description());
  }
}

GroupResult OlderGroups::convertIn(EngineConnection& connection, const OlderGroup& group, std::int32_t currencyID,
                                   const std::string& currencyNum, const RowProgress& progress) {
  // Asked again inside the transaction: the list may be old.
  const auto cycle = connection.execute(sql("Select FCycleID From t_Rpt_CsRptGroup Where FRptGroupID=", group.id));
  if (cycle->eof()) return refused("there is no such group any more");
  if (toInt32(cycle->value("FCycleID")) == convertedCycle) return {GroupOutcome::skipped, "converted before"};
  const auto taken = count(
      connection, sql("Select Count(*) as FCount From t_CsRptGroup Where FRptGroupNum='", doubled(group.number), "'"));
  if (taken > 0) return refused("there is a group with the number " + group.number + " already");

  const std::int32_t successor = addSuccessor(connection, group);
  ConversionWatcher watcher(progress);
  WatchedPlatform platform(platform_, watcher);
  const auto* description = findClass("CsUpdate");
  const CallRequest request{description,
                            &findMethod(*description, "UpGradeOneCsRpt"),
                            {{dsn_, group.id, successor, currencyID, currencyNum}, {}}};
  if (toInt32(runCall(platform, session_, request).result) != 1) {
    return refused(watcher.failure.value_or("a value of the older layout cannot be converted"));
  }
  return {GroupOutcome::converted, {}, watcher.statements, watcher.values};
}

}  // namespace tolvane::host
