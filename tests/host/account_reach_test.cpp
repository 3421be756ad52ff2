#include "host/account_reach.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include "platform/error.h"
#include "standalone/objects.h"

namespace tolvane::host {
namespace {

standalone::Dictionary configuration(const Value& driverType, const Value& properties = "") {
  standalone::Dictionary bag;
  bag.set("FDriverType", driverType);
  bag.set("FServerName", "srv");
  bag.set("FAisName", "AIS2012");
  bag.set("FMUserName", "sa");
  bag.set("FMPassWord", "se;cr}et");
  bag.set("FPropsString", properties);
  return bag;
}

std::uint32_t errorOf(const PropertyBag& bag) {
  try {
    (void)dataSourceOf(bag);
  } catch (const AutomationError& error) {
    return error.number();
  }
  return 0;
}

/// Opens nothing and says what it was asked for.
class RefusingEngine : public Engine {
 public:
  std::shared_ptr<EngineConnection> open(const DataSourceName& name) override {
    throw AutomationError(oledb::unspecified, "x", "no server " + name.get("Server") + name.get("Database"));
  }
};

TEST(AccountReach, DriverTypeZeroIsAFileInAFolder) {
  const DataSourceName name = dataSourceOf(configuration(std::int32_t{0}));
  EXPECT_EQ(name.get("Engine"), "sqlite");
  EXPECT_EQ(name.get("Database"), "srv/AIS2012");
  EXPECT_FALSE(name.has("PWD"));
}

TEST(AccountReach, WithoutAFolderTheFileStandsAlone) {
  auto bag = configuration(std::int32_t{0});
  bag.set("FServerName", Null{});
  EXPECT_EQ(dataSourceOf(bag).get("Database"), "AIS2012");
}

TEST(AccountReach, OtherDriverTypesAreServersThroughOdbc) {
  for (const std::int32_t type : {1, 2, -1}) {
    const DataSourceName name = dataSourceOf(configuration(type));
    EXPECT_EQ(name.get("Engine"), "odbc");
    EXPECT_EQ(name.get("Server"), "srv");
    EXPECT_EQ(name.get("Database"), "AIS2012");
    EXPECT_EQ(name.get("UID"), "sa");
    EXPECT_EQ(name.get("PWD"), "se;cr}et");
  }
}

TEST(AccountReach, PropertiesAddPairsButDoNotChangeTheColumns) {
  const auto name =
      dataSourceOf(configuration(std::int32_t{2}, "Port=1433;SERVER=other;engine=sqlite;Driver={Free;TDS}"));
  EXPECT_EQ(name.get("Port"), "1433");
  EXPECT_EQ(name.get("Driver"), "Free;TDS");
  EXPECT_EQ(name.get("Server"), "srv");
  EXPECT_EQ(name.get("Engine"), "odbc");
}

TEST(AccountReach, PropertiesOfAnotherFormAreRefused) {
  EXPECT_EQ(errorOf(configuration(std::int32_t{2}, "just words")), errorNumber(RuntimeError::invalidArgument));
}

TEST(AccountReach, ADriverTypeThatIsNoNumberIsRefused) {
  EXPECT_EQ(errorOf(configuration("odbc")), errorNumber(RuntimeError::typeMismatch));
}

TEST(AccountReach, AnEngineThatIsNotBuiltInIsWhereItEnds) {
  const auto steps = reachAccountSet({}, configuration(std::int32_t{2}));
  ASSERT_EQ(steps.size(), 2U);
  EXPECT_TRUE(steps[0].done);
  EXPECT_FALSE(steps[1].done);
  EXPECT_EQ(steps[1].text, "odbc is not part of this program.");
}

TEST(AccountReach, TheEnginesErrorIsTold) {
  const standalone::Engines engines{{"odbc", std::make_shared<RefusingEngine>()}};
  const auto steps = reachAccountSet(engines, configuration(std::int32_t{2}));
  ASSERT_EQ(steps.size(), 3U);
  EXPECT_EQ(steps[2].name, "connection");
  EXPECT_EQ(steps[2].text, "no server srvAIS2012");
}

TEST(AccountReach, NoStepShowsThePassword) {
  const standalone::Engines engines{{"odbc", std::make_shared<RefusingEngine>()}};
  for (const ReachStep& step : reachAccountSet(engines, configuration(std::int32_t{2}))) {
    EXPECT_EQ(step.text.find("cr}et"), std::string::npos) << step.text;
  }
}

}  // namespace
}  // namespace tolvane::host
