#include "standalone_com/class_table.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <utility>

#include "automation/registry.h"
#include "automation/text.h"
#include "standalone_com/client.h"

namespace tolvane::standalone_com {
namespace {

using testing::Client;

TEST(ClassTableTest, IdentifiersOfClassesNeverChange) {
  const std::pair<std::wstring, std::wstring> fixed[] = {
      {L"NorvStandalone.Application", L"{36455759-E36C-450E-9AF0-CC936B20C7A9}"},
      {L"NorvStandalone.Security", L"{F536D995-2870-42F1-AC02-F66994A7525C}"},
      {L"NorvStandalone.Loader", L"{74B5295E-B6BA-4766-AB41-742EAC77106D}"},
      {L"NorvStandalone.DataFlow", L"{7990CF03-247D-4518-8044-CFE58CBF4825}"},
      {L"NorvStandalone.Dictionary", L"{CBF11F86-0FA9-48DD-A02D-BF567A371156}"},
      {L"NorvStandalone.Collection", L"{6C06EE92-35CC-401C-86D6-939A38CCCAC8}"},
      {L"NorvStandalone.Vector", L"{DB62FE89-DBB2-4EE9-82B7-BEF8D0CC37E4}"},
      {L"NorvStandalone.Connection", L"{9737495E-A66F-4A7D-A1F0-3FAC6471D2D6}"},
      {L"NorvStandalone.Recordset", L"{85266922-47CE-4357-AEC8-3F0F3674B229}"},
      {L"NorvStandalone.Command", L"{B5120A94-9E07-45D0-B7D7-E9FAFB9B40BB}"},
  };
  ASSERT_EQ(classTable().size(), std::size(fixed));
  for (std::size_t i = 0; i < std::size(fixed); ++i) {
    EXPECT_EQ(classTable()[i].name, fixed[i].first);
    EXPECT_EQ(automation::textOf(classTable()[i].identifier), fixed[i].second);
  }
}

TEST(ClassTableTest, TheDllIsInUseAsLongAsOneOfItsObjects) {
  for (const ClassEntry& known : classTable()) {
    const std::string name = automation::utf8(known.name).substr(std::string("NorvStandalone.").size());
    EXPECT_TRUE(Client::canUnload()) << name;
    for (int i = 0; i < 1000; ++i) (void)Client::create(name);
    const Client last = Client::create(name);
    EXPECT_FALSE(Client::canUnload()) << name;
  }
  EXPECT_TRUE(Client::canUnload());
}

}  // namespace
}  // namespace tolvane::standalone_com
