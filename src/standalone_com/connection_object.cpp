#include "standalone_com/connection_object.h"

#include <array>

#include "rowset/server_errors.h"
#include "standalone_com/ado_arguments.h"
#include "standalone_com/recordset_object.h"

namespace tolvane::standalone_com {
namespace {

using automation::ComPtr;
using automation::makeObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;
using rowset::connectionSource;

enum : DISPID {
  connectionString = DISPID_VALUE,
  closeMember = 5,
  executeMember = 6,
  beginTrans = 7,
  commitTrans = 8,
  rollbackTrans = 9,
  openMember = 10,
  cursorLocationMember = 15,
  state = 18,
};
constexpr std::array connectionMembers{
    Member{L"Execute", executeMember},
    Member{L"State", state},
    Member{L"CursorLocation", cursorLocationMember},
    Member{L"Open", openMember},
    Member{L"Close", closeMember},
    Member{L"ConnectionString", connectionString},
    Member{L"BeginTrans", beginTrans},
    Member{L"CommitTrans", commitTrans},
    Member{L"RollbackTrans", rollbackTrans},
};

}  // namespace

void ConnectionObject::open(const std::string& dsn) {
  if (connection_) raiseAdo(AdoError::objectOpen, connectionSource);
  connection_ = suite_->session().open(dsn).connection;
  connectionString_ = DataSourceName::parse(dsn).publicText();
}

Connection& ConnectionObject::opened(std::string_view source) const {
  if (!connection_) raiseAdo(AdoError::invalidConnection, source);
  return *connection_;
}

ComPtr<ConnectionObject> ConnectionObject::of(const std::shared_ptr<SuiteThread>& suite, const Value& value,
                                              std::string_view source) {
  if (value.isNothing() || value.isEmpty()) return {};
  if (const auto* dsn = value.get<std::string>()) {
    auto connection = makeObject<ConnectionObject>(suite);
    connection->open(*dsn);
    return connection;
  }
  return objectOfClass<ConnectionObject>(value, source);
}

std::int32_t ConnectionObject::recordsAffected(const std::shared_ptr<Recordset>& result) const {
  if (result && result->state() == ObjectState::open) return -1;
  return toInt32(opened(connectionSource).execute("Select @@ROWCOUNT")->value(0));
}

void ConnectionObject::requireOpen() const {
  if (!connection_) raiseAdo(AdoError::objectClosed, connectionSource);
}

void ConnectionObject::close() {
  requireOpen();
  connection_.reset();
}

Variant ConnectionObject::execute(const MemberCall& call) {
  requireOpen();
  const std::string text = toText(call.value(0));
  const auto result = connection_->execute(text, toInt32(call.value(2, unspecifiedOptions)));
  if (call.given(1)) call.giveBack(1, recordsAffected(result));
  if (!result) return Variant(static_cast<IDispatch*>(nullptr));
  return makeObject<RecordsetObject>(suite_, ComPtr<ConnectionObject>(this), result);
}

EngineConnection& ConnectionObject::transactions() const {
  requireOpen();
  auto* engine = dynamic_cast<EngineConnection*>(connection_.get());
  if (!engine) raiseAdo(AdoError::featureNotAvailable, connectionSource);
  return *engine;
}

Members ConnectionObject::members() const {
  return connectionMembers;
}

Variant ConnectionObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case executeMember:
      return execute(call);
    case state:
      return static_cast<std::int32_t>(connection_ ? ObjectState::open : ObjectState::closed);
    case cursorLocationMember:
      if (!call.isPut()) return static_cast<std::int32_t>(cursorLocation_);
      cursorLocation_ = cursorLocationOf(call.value(0), connectionSource);
      return {};
    case openMember:
      open(call.given(0) ? toText(call.value(0)) : connectionString_);
      return {};
    case closeMember:
      close();
      return {};
    case connectionString:
      if (!call.isPut()) return connectionString_;
      if (connection_) raiseAdo(AdoError::objectOpen, connectionSource);
      connectionString_ = toText(call.value(0));
      return {};
    case beginTrans:
      transactions().begin();
      return 1;
    case commitTrans:
      transactions().commit();
      return {};
    case rollbackTrans:
      transactions().rollback();
      return {};
    default:
      automation::raiseNoSuchMember();
  }
}

}  // namespace tolvane::standalone_com
