#include "standalone_com/suite_components.h"

#include <array>
#include <functional>

#include "platform/conversions.h"
#include "standalone/table_data_flow.h"

namespace tolvane::standalone_com {
namespace {

using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;

enum : DISPID { getCurrentUserID = 1, isAdministrator, accessCheck };
constexpr std::array securityMembers{
    Member{L"GetCurrentUserID", getCurrentUserID},
    Member{L"IsAdministrator", isAdministrator},
    Member{L"AccessCheck", accessCheck},
};

enum : DISPID { resFileBaseName = 1, languageID, loadString, unload };
constexpr std::array loaderMembers{
    Member{L"ResFileBaseName", resFileBaseName},
    Member{L"LanguageID", languageID},
    Member{L"LoadString", loadString},
    Member{L"Unload", unload},
};

enum : DISPID { refreshSubFunc = 1, refreshDetailFunc };
constexpr std::array dataFlowMembers{
    Member{L"RefreshSubFunc", refreshSubFunc},
    Member{L"RefreshDetailFunc", refreshDetailFunc},
};

/// The two that name and language of a loader's file are set by.
Variant putOrGet(const MemberCall& call, std::string& text, const std::function<void(const std::string&)>& set) {
  if (!call.isPut()) return text;
  std::string fresh = toText(call.value(0));
  set(fresh);
  text = std::move(fresh);
  return {};
}

}  // namespace

Members SecurityObject::members() const {
  return securityMembers;
}

Variant SecurityObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case getCurrentUserID:
      return security_->getCurrentUserID(toText(call.value(0)));
    case isAdministrator:
      return security_->isAdministrator(toText(call.value(0)));
    case accessCheck:
      return security_->accessCheck(toText(call.value(0)), toInt32(call.value(1)), toInt32(call.value(2)),
                                    toInt32(call.value(3)), toText(call.value(5)));
    default:
      automation::raiseNoSuchMember();
  }
}

Members LoaderObject::members() const {
  return loaderMembers;
}

Variant LoaderObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case resFileBaseName:
      return putOrGet(call, baseName_, [this](const std::string& name) { loader_->setResFileBaseName(name); });
    case languageID:
      return putOrGet(call, language_, [this](const std::string& language) { loader_->setLanguageID(language); });
    case loadString:
      return loader_->loadString(toText(call.value(0)));
    case unload:
      loader_->unload();
      return {};
    default:
      automation::raiseNoSuchMember();
  }
}

Members DataFlowObject::members() const {
  return dataFlowMembers;
}

Variant DataFlowObject::call(DISPID member, const MemberCall& call) {
  if (member != refreshSubFunc && member != refreshDetailFunc) automation::raiseNoSuchMember();
  const auto& connection = suite_->session().current().connection;
  if (!connection) raise(RuntimeError::objectNotSet);
  const std::string callText = toText(call.value(0));
  const std::int16_t system = toInt16(call.value(1));
  const auto entries = call.value(2).objectAs<ItemList>();
  if (!entries) raise(RuntimeError::objectRequired);
  const bool first = toBoolean(call.value(3));
  const bool second = toBoolean(call.value(4));
  standalone::TableDataFlow dataFlow(connection);
  if (member == refreshSubFunc) {
    dataFlow.refreshSubFunc(callText, system, entries, first, second);
  } else {
    dataFlow.refreshDetailFunc(callText, system, entries, first, second);
  }
  return {};
}

}  // namespace tolvane::standalone_com
