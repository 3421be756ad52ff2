// Every member that is named is checked against ADO's own type library.
#include "suite/ado_library.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "automation/error_translation.h"
#include "automation/registry.h"
#include "automation/text.h"
#include "fake_object.h"
#include "suite/type_description.h"

namespace tolvane::suite {
namespace {

using automation::Bstr;
using automation::check;
using automation::ComPtr;
using automation::utf8;

struct Form {
  INVOKEKIND kind;
  ArgumentCount arguments;
};

/// Type libraries keep names that differ in letter case only as one.
bool isSame(std::wstring_view left, std::wstring_view right) {
  return left.size() == right.size() && _wcsnicmp(left.data(), right.data(), left.size()) == 0;
}

/// The type library of the ADO that is registered.
ComPtr<ITypeLib> adoTypeLibrary() {
  CLSID identifier{};
  check(CLSIDFromProgID(L"ADODB.Recordset", &identifier));
  const auto server = automation::RegistryKey::find(HKEY_CLASSES_ROOT,
                                                    L"CLSID\\" + automation::textOf(identifier) + L"\\InprocServer32");
  const auto file = server ? server->text({}) : std::nullopt;
  ComPtr<ITypeLib> library;
  check(LoadTypeLibEx(file.value_or(L"msado15.dll").c_str(), REGKIND_NONE, library.receive()));
  return library;
}

ComPtr<ITypeInfo> interfaceOf(ITypeLib& library, std::wstring_view name) {
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    Bstr found;
    check(library.GetDocumentation(static_cast<INT>(i), found.receive(), nullptr, nullptr, nullptr));
    if (!isSame(automation::viewOf(found.get()), name)) continue;
    ComPtr<ITypeInfo> info;
    check(library.GetTypeInfo(i, info.receive()));
    return info;
  }
  return {};
}

/// Wine cannot describe a method whose argument has a pointer-sized number as its default; it finds it, though, and
/// tells the names of its arguments, the result's last.
std::vector<Form> methodWithoutDescription(ITypeInfo& info, std::wstring_view member) {
  std::vector<Form> forms;
  std::wstring name(member);
  visitInterfaces(info, [&](ITypeInfo& each) {
    const auto more = ComPtr<ITypeInfo>(&each).as<ITypeInfo2>(IID_ITypeInfo2);
    LPOLESTR asked = name.data();
    MEMBERID id = MEMBERID_NIL;
    UINT index = 0;
    if (!more || FAILED(each.GetIDsOfNames(&asked, 1, &id))) return false;
    if (FAILED(more->GetFuncIndexOfMemId(id, INVOKE_FUNC, &index))) return false;
    std::array<BSTR, 16> names{};
    UINT count = 0;
    check(each.GetNames(id, names.data(), static_cast<UINT>(names.size()), &count));
    for (BSTR text : names) SysFreeString(text);
    forms.push_back({INVOKE_FUNC, {0, count - 2}});
    return true;
  });
  return forms;
}

std::vector<Form> formsOf(ITypeInfo& info, std::wstring_view member) {
  std::vector<Form> forms;
  visitFunctions(info, [&](ITypeInfo& owner, const FUNCDESC& function) {
    if (isSame(memberName(owner, function.memid), member)) forms.push_back({function.invkind, argumentCount(function)});
    return false;
  });
  if (forms.empty()) forms = methodWithoutDescription(info, member);
  return forms;
}

const Form* find(const std::vector<Form>& forms, INVOKEKIND kind) {
  for (const Form& form : forms) {
    if (form.kind == kind) return &form;
  }
  return nullptr;
}

struct Kind {
  Use use;
  INVOKEKIND kind;
};
constexpr Kind kinds[] = {{calls, INVOKE_FUNC},
                          {reads, INVOKE_PROPERTYGET},
                          {writes, INVOKE_PROPERTYPUT},
                          {writesObject, INVOKE_PROPERTYPUTREF}};

void expectMember(ITypeInfo& info, const MemberTable::TableMember& member) {
  SCOPED_TRACE(utf8(member.name()));
  const auto forms = formsOf(info, member.name());
  for (const Kind& kind : kinds) {
    if ((member.uses() & kind.use) == 0) continue;
    const Form* form = find(forms, kind.kind);
    ASSERT_NE(form, nullptr) << "ADO has no such member in use " << kind.use;
    EXPECT_GE(member.arguments(), form->arguments.atLeast);
    EXPECT_LE(member.arguments(), form->arguments.atMost);
  }
}

using AdoLibraryTest = SuiteTest;

TEST_F(AdoLibraryTest, EveryMemberIsInAdosTypeLibraryInTheUseAndWithTheArgumentsOfTheTable) {
  const auto library = adoTypeLibrary();
  const AdoLibrary ado(L"ADODB.Recordset", L"ADODB.Command");
  for (const MemberTable* table : ado.tables()) {
    SCOPED_TRACE(utf8(table->interfaceName()));
    const auto info = interfaceOf(*library, table->interfaceName());
    ASSERT_TRUE(info) << "ADO has no such interface";
    ASSERT_FALSE(table->members().empty());
    for (const auto* member : table->members()) expectMember(*info, *member);
  }
}

TEST_F(AdoLibraryTest, TheCheckSeesNamesUsesAndArgumentsThatAdoDoesNotHave) {
  const auto library = adoTypeLibrary();
  const auto info = interfaceOf(*library, L"_Recordset");
  ASSERT_TRUE(info);
  EXPECT_TRUE(formsOf(*info, L"MoveOn").empty());
  const auto eof = formsOf(*info, L"EOF");
  EXPECT_EQ(find(eof, INVOKE_PROPERTYPUT), nullptr);
  const auto open = formsOf(*info, L"Open");
  ASSERT_NE(find(open, INVOKE_FUNC), nullptr);
  EXPECT_EQ(find(open, INVOKE_FUNC)->arguments.atMost, 5U);
}

TEST_F(AdoLibraryTest, AReferenceIsPutAsAnObjectAndWhereThatIsNotKnownAsAValue) {
  CommandMembers members;
  const auto command = fake("command", members);
  putReference(bound(command), members.activeConnection, command.get());
  command->refusesSet(L"ActiveConnection");
  putReference(bound(command), members.activeConnection, nullptr);
  EXPECT_EQ(said(), (Conversation{"set command.ActiveConnection = command", "set command.ActiveConnection = Nothing",
                                  "let command.ActiveConnection = Nothing"}));
}

TEST_F(AdoLibraryTest, AFailureToPutAReferenceIsRaisedAndNotTriedAgain) {
  CommandMembers members;
  const auto command = fake("command", members);
  command->fails(L"ActiveConnection", AutomationError(AdoError::invalidConnection, "ADODB.Command"));
  const auto error = errorOf([&] { putReference(bound(command), members.activeConnection, nullptr); });
  EXPECT_EQ(error.number(), errorNumber(AdoError::invalidConnection));
  EXPECT_EQ(said().size(), 1U);
}

TEST_F(AdoLibraryTest, AnswersAreConvertedAsThePlatformConverts) {
  RecordsetMembers members;
  const auto rows = fake("rows", members);
  rows->gives(L"State", Value("1"));
  EXPECT_EQ(readInt32(bound(rows), members.state), 1);
  EXPECT_TRUE(readBoolean(bound(rows), members.state));
  rows->gives(L"State", Value(std::int64_t{7}));
  EXPECT_EQ(readText(bound(rows), members.state), "7");
  rows->gives(L"State", Value(Null{}));
  EXPECT_EQ(errorOf([&] { (void)readInt32(bound(rows), members.state); }).number(),
            errorNumber(RuntimeError::invalidUseOfNull));
  EXPECT_EQ(errorOf([&] { (void)readObject(bound(rows), members.state); }).number(),
            errorNumber(RuntimeError::objectRequired));
}

}  // namespace
}  // namespace tolvane::suite
