#include "standalone_com/application_object.h"

#include <array>
#include <optional>

#include "platform/conversions.h"
#include "standalone_com/connection_object.h"
#include "standalone_com/engines.h"

namespace tolvane::standalone_com {
namespace {

using automation::makeObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;

enum : DISPID { getContext = 1, beginCall, endCall, abortCall, createAccountSetMember, version };
constexpr std::array applicationMembers{
    Member{L"GetContext", getContext}, Member{L"BeginCall", beginCall},
    Member{L"EndCall", endCall},       Member{L"AbortCall", abortCall},
    Member{L"Version", version},       Member{L"CreateAccountSet", createAccountSetMember},
};

enum : DISPID { openDataSource = 1, getLoginInfo, getConnection, beginWork, completeWork, callText };
constexpr std::array contextMembers{
    Member{L"OpenDataSource", openDataSource}, Member{L"GetLoginInfo", getLoginInfo},
    Member{L"GetConnection", getConnection},   Member{L"BeginWork", beginWork},
    Member{L"CompleteWork", completeWork},     Member{L"CallText", callText},
};

enum : DISPID { currentUserID = 1, userKey, languageCode };
constexpr std::array loginMembers{
    Member{L"CurrentUserID", currentUserID},
    Member{L"UserKey", userKey},
    Member{L"LanguageCode", languageCode},
};

TransactionMode modeOf(const Value& value) {
  const auto mode = static_cast<TransactionMode>(toInt32(value));
  if (mode == TransactionMode::required || mode == TransactionMode::supported) return mode;
  throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
                        "The mode of a call is 2 (a transaction) or 3 (none of its own).");
}

/// The sample that is meant when none is named.
constexpr const char* usualSample = "demo";

/// Nothing for no sample: an argument that is not given, empty, False or an empty text.
std::optional<std::string> sampleOf(const MemberCall& call, std::size_t index) {
  const Value value = call.value(index, {});
  if (value.isEmpty()) return std::nullopt;
  if (const auto* wanted = value.get<bool>()) return *wanted ? std::optional<std::string>(usualSample) : std::nullopt;
  std::string sample = toText(value);
  if (sample.empty()) return std::nullopt;
  return sample;
}

}  // namespace

Members ApplicationObject::members() const {
  return applicationMembers;
}

Variant ApplicationObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case getContext:
      return makeObject<ContextObject>(suite_, suite_->platform().application()->getContext());
    case beginCall:
      suite_->beginCall(modeOf(call.value(0)));
      return {};
    case endCall:
      return suite_->endCall();
    case abortCall:
      suite_->abortCall();
      return {};
    case createAccountSetMember:
      createAccountSet(toText(call.value(0)), sampleOf(call, 1));
      return {};
    case version:
      return TOLVANE_VERSION;
    default:
      automation::raiseNoSuchMember();
  }
}

Members ContextObject::members() const {
  return contextMembers;
}

Variant ContextObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case openDataSource:
      context_->openDataSource(toText(call.value(0)));
      return {};
    case getLoginInfo:
      return makeObject<LoginObject>(context_->getLoginInfo());
    case getConnection:
      return makeObject<ConnectionObject>(suite_, context_->getConnection());
    case beginWork:
      context_->beginWork();
      return {};
    case completeWork:
      context_->completeWork();
      return {};
    case callText:
      return context_->callText();
    default:
      automation::raiseNoSuchMember();
  }
}

Members LoginObject::members() const {
  return loginMembers;
}

Variant LoginObject::call(DISPID member, const MemberCall&) {
  switch (member) {
    case currentUserID:
      return login_->currentUserID();
    case userKey:
      return login_->userKey();
    case languageCode:
      return login_->languageCode();
    default:
      automation::raiseNoSuchMember();
  }
}

}  // namespace tolvane::standalone_com
