#include "typelib/identifiers.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace tolvane::typelib {
namespace {

struct Published {
  const char* className;
  const char* classIdentifier;
  const char* interfaceIdentifier;
};

// What clients have compiled into themselves. A line may be added, never changed.
constexpr std::array published{
    Published{"SrvRptRetrieve", "7FAB0143-3580-8FAE-93E1-6BEA02A2F5B4", "6C9DE5A4-E603-8F2B-AEFC-1BEF168C0165"},
    Published{"SrvRptUpdate", "A56112D3-51EF-8B57-A071-A341D7F1A541", "EC88946A-FDCC-8CBA-BB90-2D41C3FA7D48"},
    Published{"RptPropItemClassInfo", "35666272-5703-8183-A14D-C3B888C68151", "9C6CF057-1F91-8BEE-B071-EB991E373050"},
    Published{"RptPropItemClassUpdate", "6B11367D-A639-8996-B2EC-10C6E9C29E88", "DB90747B-369E-89B7-88CD-164A98F367AD"},
    Published{"RptPropItemInfo", "904FD93C-3166-8D5D-8A05-01F163B1E223", "01386793-6328-88AE-AA0B-367C94986E78"},
    Published{"RptPropItemUpdate", "9B402CF6-18F1-8E5C-AF8E-ADF072F6B236", "2AA18C9A-E8B0-8277-9CF3-75E1769E8CC5"},
    Published{"CsRetrieve", "DD60D1BD-BB17-8EE9-B166-87EC40B47FDF", "22F0766B-3E06-87AC-8BDD-8DDD9BF4A716"},
    Published{"CsUpdate", "AFB89D2A-E513-8DF4-99A0-65ECDB468576", "A528DA2E-DE0F-8B69-9DBC-DD8431628C6F"},
    Published{"MultiAccountInfo", "81DBB724-BDE5-87C3-99E5-A0E92E44DED9", "0B9DFBEA-FC76-8ABE-9689-4BB96A74A6F8"},
    Published{"MultiAccountUpdate", "ABCEF08D-2CB5-8AD6-8FFB-477B595C52A0", "FD5ED5C9-3A61-85A7-9C76-79FA6DFD1945"},
    Published{"RptBatchPrnInfo", "678362D0-8F91-821F-8488-F5FFBD76A675", "EEDAF374-CBD5-8738-A2A2-65EB27E429D2"},
    Published{"RptBatchPrnUpdate", "001DBF32-EEB8-8C1A-AD0F-474E5C4D1E64", "E69D38C1-D5F4-8085-BE92-2BC43C9396A3"},
};

TEST(Identifiers, StayWhatClientsWereCompiledWith) {
  for (const Published& known : published) {
    EXPECT_EQ(text(classIdentifier(known.className)), known.classIdentifier) << known.className;
    EXPECT_EQ(text(interfaceIdentifier(known.className)), known.interfaceIdentifier) << known.className;
  }
  EXPECT_EQ(text(libraryIdentifier()), "5425770F-5647-8AC4-B786-2A6E1629DA66");
  EXPECT_EQ(text(enumerationIdentifier("TransactionMode")), "42F32FBB-B313-8821-B65E-3E4E0C9DDA87");
}

TEST(Identifiers, OfEveryClassOfTheCatalogueArePublished) {
  std::vector<std::string> listed;
  for (const Published& known : published) listed.emplace_back(known.className);
  std::vector<std::string> there;
  for (const ClassDescription& description : classes()) there.push_back(description.name);
  EXPECT_EQ(there, listed);
}

TEST(Identifiers, AreAllDifferent) {
  std::set<std::string> seen{text(libraryIdentifier()), text(enumerationIdentifier("TransactionMode"))};
  for (const ClassDescription& description : classes()) {
    EXPECT_TRUE(seen.insert(text(classIdentifier(description.name))).second) << description.name;
    EXPECT_TRUE(seen.insert(text(interfaceIdentifier(description.name))).second) << description.name;
  }
}

TEST(Identifiers, CarryTheMarksOfIdentifiersMadeByARule) {
  const std::string made = text(classIdentifier("AnyClass"));
  EXPECT_EQ(made[14], '8');
  EXPECT_NE(std::string("89AB").find(made[19]), std::string::npos);
}

TEST(Identifiers, NameClassesWithAndWithoutTheirVersion) {
  EXPECT_EQ(programmaticIdentifier("CsUpdate"), "NorvTolvane.CsUpdate");
  EXPECT_EQ(versionedProgrammaticIdentifier("CsUpdate"), "NorvTolvane.CsUpdate.1");
}

}  // namespace
}  // namespace tolvane::typelib
