// The suite as one thread sees it: its classes, and those of their members that the services need.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "automation/late_bound.h"
#include "suite/binding.h"
#include "suite/member_table.h"

namespace tolvane::suite {

struct ApplicationMembers : MemberTable {
  ApplicationMembers() : MemberTable(L"application object") {}
  TableMember getContext{*this, L"GetContext", calls | reads};
  // Only where the binding has host calls.
  TableMember beginCall{*this, L"BeginCall", calls, 1};
  TableMember endCall{*this, L"EndCall", calls | reads};
  TableMember abortCall{*this, L"AbortCall", calls};
};

struct ContextMembers : MemberTable {
  ContextMembers() : MemberTable(L"context object") {}
  TableMember getLoginInfo{*this, L"GetLoginInfo", calls | reads};
  TableMember openDataSource{*this, L"OpenDataSource", calls, 2};
  TableMember getConnection{*this, L"GetConnection", calls | reads};
  TableMember beginWork{*this, L"BeginWork", calls};
  TableMember completeWork{*this, L"CompleteWork", calls};
};

struct LoginMembers : MemberTable {
  LoginMembers() : MemberTable(L"login object") {}
  TableMember currentUserID{*this, L"CurrentUserID", calls | reads};
  TableMember userKey{*this, L"UserKey", calls | reads};
  TableMember languageCode{*this, L"LanguageCode", calls | reads};
};

struct SecurityMembers : MemberTable {
  SecurityMembers() : MemberTable(L"security component") {}
  TableMember getCurrentUserID{*this, L"GetCurrentUserID", calls | reads, 1};
  TableMember isAdministrator{*this, L"IsAdministrator", calls | reads, 1};
  TableMember accessCheck{*this, L"AccessCheck", calls | reads, 6};
};

struct LoaderMembers : MemberTable {
  LoaderMembers() : MemberTable(L"resource loader") {}
  TableMember resFileBaseName{*this, L"ResFileBaseName", writes};
  TableMember languageID{*this, L"LanguageID", writes};
  TableMember loadString{*this, L"LoadString", calls | reads, 1};
  TableMember unload{*this, L"Unload", calls};
};

struct DataFlowMembers : MemberTable {
  DataFlowMembers() : MemberTable(L"data-flow component") {}
  TableMember refreshSubFunc{*this, L"RefreshSubFunc", calls, 5};
  TableMember refreshDetailFunc{*this, L"RefreshDetailFunc", calls, 5};
};

/// Shared by the objects that a platform hands out; used from their thread.
class SuiteLibrary {
 public:
  explicit SuiteLibrary(const Binding& binding)
      : newApplication(binding.application),
        newSecurity(binding.security),
        newLoader(binding.loader),
        newDataFlow(binding.dataFlow),
        hostCalls(binding.hostCalls),
        callTextName_(binding.callTextMember) {}

  /// The context's property with the text of the current call; where the binding does not name it, the first property
  /// of the first context that is asked.
  [[nodiscard]] automation::RemoteMember& callText(IDispatch& object);

  [[nodiscard]] std::vector<const MemberTable*> tables() const {
    return {&application, &context, &login, &security, &loader, &dataFlow};
  }

  automation::RemoteClass newApplication;
  automation::RemoteClass newSecurity;
  automation::RemoteClass newLoader;
  automation::RemoteClass newDataFlow;
  bool hostCalls;
  ApplicationMembers application;
  ContextMembers context;
  LoginMembers login;
  SecurityMembers security;
  LoaderMembers loader;
  DataFlowMembers dataFlow;

 private:
  std::wstring callTextName_;
  std::optional<automation::RemoteMember> callText_;
};

}  // namespace tolvane::suite
