#include "suite/binding.h"

#include <gtest/gtest.h>

#include <string>

#include "automation/registry.h"

namespace tolvane::suite {
namespace {

using automation::RegistryKey;

const std::wstring scratch = L"Software\\TolvaneBindingTest";
const std::wstring keyPath = L"Software\\NorvTolvane\\Binding";

/// Tests see a registry of their own in place of the user's and the machine's.
class BindingTest : public ::testing::Test {
 protected:
  BindingTest() {
    replace(HKEY_LOCAL_MACHINE, scratch + L"\\Machine");
    replace(HKEY_CURRENT_USER, scratch + L"\\User");
  }
  ~BindingTest() override {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    automation::removeKey(HKEY_CURRENT_USER, scratch);
  }

 private:
  static void replace(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegOverridePredefKey(root, key), ERROR_SUCCESS);
    RegCloseKey(key);
  }
};

TEST_F(BindingTest, NothingChosenIsTheSuiteAndAdo) {
  const Binding binding = loadBinding();
  EXPECT_EQ(binding, suiteBinding());
  EXPECT_EQ(binding.security, L"NorvEBSBase.SecurityInfo");
  EXPECT_EQ(binding.loader, L"ZelRESLOADER.Loader");
  EXPECT_EQ(binding.dataFlow, L"NorvEBSDataFlow.DatasUpdate");
  EXPECT_EQ(binding.recordset, L"ADODB.Recordset");
  EXPECT_EQ(binding.command, L"ADODB.Command");
  EXPECT_FALSE(binding.hostCalls);
}

TEST_F(BindingTest, WhatIsStoredIsLoaded) {
  storeBinding(HKEY_LOCAL_MACHINE, standaloneBinding());
  EXPECT_EQ(loadBinding(), standaloneBinding());
  storeBinding(HKEY_LOCAL_MACHINE, suiteBinding());
  EXPECT_EQ(loadBinding(), suiteBinding());
}

TEST_F(BindingTest, TheUsersChoiceGoesBeforeTheMachines) {
  storeBinding(HKEY_LOCAL_MACHINE, standaloneBinding());
  storeBinding(HKEY_CURRENT_USER, suiteBinding());
  EXPECT_EQ(loadBinding(), suiteBinding());
  removeBinding(HKEY_CURRENT_USER);
  EXPECT_EQ(loadBinding(), standaloneBinding());
}

TEST_F(BindingTest, AKeyWithOneValueChangesThatOneOnly) {
  RegistryKey::create(HKEY_LOCAL_MACHINE, keyPath).setText(L"Application", L"NorvGlobal.Other");
  Binding expected = suiteBinding();
  expected.application = L"NorvGlobal.Other";
  EXPECT_EQ(loadBinding(), expected);
}

TEST_F(BindingTest, AValueThatIsNoTextIsLeftOut) {
  const DWORD number = 1;
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, keyPath.c_str(), L"Security", REG_DWORD, &number, sizeof number),
            ERROR_SUCCESS);
  EXPECT_EQ(loadBinding(), suiteBinding());
}

TEST_F(BindingTest, OnlyTheTextOneAsksForHostCalls) {
  const auto key = RegistryKey::create(HKEY_CURRENT_USER, keyPath);
  for (const wchar_t* text : {L"", L"0", L"no", L"11"}) {
    key.setText(L"HostCalls", text);
    EXPECT_FALSE(loadBinding().hostCalls);
  }
  key.setText(L"HostCalls", L"1");
  EXPECT_TRUE(loadBinding().hostCalls);
}

TEST_F(BindingTest, RemovingWhatIsNotThereIsNoError) {
  removeBinding(HKEY_CURRENT_USER);
  removeBinding(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(loadBinding(), suiteBinding());
}

}  // namespace
}  // namespace tolvane::suite
