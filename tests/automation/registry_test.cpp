#include "automation/registry.h"

#include <gtest/gtest.h>

#include "platform/error.h"

namespace tolvane::automation {
namespace {

constexpr CLSID identifier{0x5E0C2A51, 0x3B1D, 0x4C55, {0x9A, 0x77, 0x21, 0x0E, 0x4D, 0x8F, 0x60, 0xB3}};
const std::wstring classes = L"Software\\Classes\\";
const std::wstring identifierKey = classes + L"CLSID\\{5E0C2A51-3B1D-4C55-9A77-210E4D8F60B3}";

std::optional<std::wstring> textAt(const std::wstring& path, const std::wstring& name = {}) {
  const auto key = RegistryKey::find(HKEY_CURRENT_USER, path);
  return key ? key->text(name) : std::nullopt;
}

class RegistryTest : public ::testing::Test {
 protected:
  void TearDown() override { remove(); }
  void add() { registerClasses({&registration_, 1}, L"C:\\a\\b.dll", RegistrationScope::user); }
  void remove() { unregisterClasses({&registration_, 1}, RegistrationScope::user); }

  Registration registration_{identifier, L"TolvaneTest.Thing", L"A thing"};
};

TEST_F(RegistryTest, AClassIsFoundByItsIdentifierAndItsNames) {
  add();
  EXPECT_EQ(textAt(identifierKey), L"A thing");
  EXPECT_EQ(textAt(identifierKey + L"\\InprocServer32"), L"C:\\a\\b.dll");
  EXPECT_EQ(textAt(identifierKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  EXPECT_EQ(textAt(identifierKey + L"\\ProgID"), L"TolvaneTest.Thing.1");
  EXPECT_EQ(textAt(identifierKey + L"\\VersionIndependentProgID"), L"TolvaneTest.Thing");
  EXPECT_EQ(textAt(classes + L"TolvaneTest.Thing\\CurVer"), L"TolvaneTest.Thing.1");
  for (const std::wstring name : {L"TolvaneTest.Thing", L"TolvaneTest.Thing.1"}) {
    EXPECT_EQ(textAt(classes + name), L"A thing");
    EXPECT_EQ(textAt(classes + name + L"\\CLSID"), textOf(identifier));
  }
  EXPECT_EQ(textAt(identifierKey + L"\\TypeLib"), std::nullopt);
}

TEST_F(RegistryTest, AClassMayHaveATypeLibrary) {
  registration_.typeLibrary = identifier;
  add();
  EXPECT_EQ(textAt(identifierKey + L"\\TypeLib"), textOf(identifier));
  EXPECT_EQ(textAt(identifierKey + L"\\Version"), L"1.0");
}

TEST_F(RegistryTest, NothingIsLeftOfAClassThatIsTakenAway) {
  add();
  remove();
  EXPECT_EQ(textAt(identifierKey), std::nullopt);
  EXPECT_EQ(textAt(classes + L"TolvaneTest.Thing"), std::nullopt);
  EXPECT_EQ(textAt(classes + L"TolvaneTest.Thing.1"), std::nullopt);
  remove();
}

TEST_F(RegistryTest, ANameThatBelongsToAnotherClassStays) {
  add();
  RegistryKey::create(HKEY_CURRENT_USER, classes + L"TolvaneTest.Thing\\CLSID").setText({}, L"{other}");
  remove();
  EXPECT_EQ(textAt(classes + L"TolvaneTest.Thing\\CLSID"), L"{other}");
  removeKey(HKEY_CURRENT_USER, classes + L"TolvaneTest.Thing");
}

TEST_F(RegistryTest, TextsAreKeptAsTheyAre) {
  const auto key = RegistryKey::create(HKEY_CURRENT_USER, classes + L"TolvaneTest.Thing");
  key.setText(L"text", L"\x8D44\x4EA7 x");
  EXPECT_EQ(key.text(L"text"), L"\x8D44\x4EA7 x");
  key.setText(L"text", L"");
  EXPECT_EQ(key.text(L"text"), L"");
  EXPECT_EQ(key.text(L"other"), std::nullopt);
  removeKey(HKEY_CURRENT_USER, classes + L"TolvaneTest.Thing");
}

TEST_F(RegistryTest, AKeyThatCannotBeMadeIsAnErrorWithTheSystemsCode) {
  try {
    (void)RegistryKey::create(nullptr, L"Software");
    FAIL() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x80070006U);
    EXPECT_FALSE(error.description().empty());
  }
}

TEST_F(RegistryTest, IdentifiersAreWrittenAsTheRegistryHasThem) {
  EXPECT_EQ(textOf(identifier), L"{5E0C2A51-3B1D-4C55-9A77-210E4D8F60B3}");
}

TEST_F(RegistryTest, AModuleKnowsItsFile) {
  EXPECT_EQ(modulePath(nullptr).filename(), L"automation_test.exe");
}

}  // namespace
}  // namespace tolvane::automation
