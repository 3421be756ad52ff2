#include "host/call_request.h"

#include <gtest/gtest.h>

#include <fstream>

#include "host/usage_error.h"

namespace tolvane::host {
namespace {

std::string refusal(const std::string& member, const std::vector<std::string>& assignments = {},
                    const std::optional<std::string>& dsn = "Database=x") {
  try {
    (void)readCall(member, assignments, dsn);
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

/// The argument of that name, Missing when it is not given.
Value argument(const CallRequest& request, const std::string& name) {
  for (const auto& [key, value] : request.arguments.named) {
    if (key == name) return value;
  }
  return missingArgument;
}

TEST(CallRequestTest, NamesAreTakenInAnyLetterCase) {
  const auto request = readCall("srvrptretrieve.GETRPTPLX", {"LRPTID=5"}, "Database=x");
  EXPECT_EQ(request.serviceClass->name, "SrvRptRetrieve");
  EXPECT_EQ(request.method->name, "GetRptPlx");
  EXPECT_EQ(argument(request, "lRptID"), Value(std::int32_t{5}));
}

TEST(CallRequestTest, TheFirstParameterIsTheDataSource) {
  EXPECT_EQ(argument(readCall("SrvRptRetrieve.GetRptPlx", {}, "Database=x"), "sDsn"), Value("Database=x"));
  EXPECT_EQ(argument(readCall("SrvRptRetrieve.GetRptPlx", {"sDsn=\"Database=y\""}, "Database=x"), "sDsn"),
            Value("Database=y"));
}

TEST(CallRequestTest, InOutParametersThatAreLeftOutStartEmpty) {
  const auto request = readCall("SrvRptRetrieve.GetRptPlx", {}, "Database=x");
  EXPECT_EQ(argument(request, "vPlx"), Value());
  EXPECT_EQ(argument(request, "vPrinterBuf"), Value());
}

TEST(CallRequestTest, OtherParametersThatAreLeftOutAreMissing) {
  EXPECT_TRUE(argument(readCall("SrvRptRetrieve.GetRptPlx", {}, "Database=x"), "lRptID").isMissing());
}

TEST(CallRequestTest, AFileIsGivenAsItsBytes) {
  const std::string name = ::testing::TempDir() + "tolvane_call_request.bin";
  std::ofstream(name, std::ios::binary) << std::string("\0\x01\xFF", 3);
  EXPECT_EQ(argument(readCall("SrvRptUpdate.SavePlxToSrv", {"vPlx=@" + name}, "x"), "vPlx"), Value(Bytes({0, 1, 255})));
  std::ofstream(name, std::ios::binary | std::ios::trunc).flush();
  EXPECT_EQ(argument(readCall("SrvRptUpdate.SavePlxToSrv", {"vPlx=@" + name}, "x"), "vPlx"), Value(Bytes()));
  std::remove(name.c_str());
  EXPECT_EQ(refusal("SrvRptUpdate.SavePlxToSrv", {"vPlx=@" + name}), "The file " + name + " cannot be read.");
}

TEST(CallRequestTest, UnknownNamesAreAnsweredWithTheNearest) {
  EXPECT_EQ(refusal("SrvRptRetreive.GetRptPlx"),
            "There is no class SrvRptRetreive. Did you mean SrvRptRetrieve? \"tolvane classes\" lists them.");
  EXPECT_EQ(refusal("SrvRptRetrieve.GetRptPlz"),
            "SrvRptRetrieve has no method GetRptPlz. Did you mean GetRptPlx? \"tolvane describe SrvRptRetrieve\" lists "
            "its methods.");
  EXPECT_EQ(refusal("SrvRptRetrieve.GetRptPlx", {"lRtpID=1"}),
            "SrvRptRetrieve.GetRptPlx has no parameter lRtpID. Did you mean lRptID? \"tolvane describe "
            "SrvRptRetrieve.GetRptPlx\" lists its parameters.");
}

TEST(CallRequestTest, UnusableAssignmentsAreRefused) {
  EXPECT_NE(refusal("SrvRptRetrieve").find("CLASS.METHOD"), std::string::npos);
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {"lRptID"}).find("parameter=JSON"), std::string::npos);
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {"lRptID=abc"}).find("Values are JSON"), std::string::npos);
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {"lRptID=1", "lrptid=2"}).find("twice"), std::string::npos);
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {"lRptID=\"\xD6\xD0\""}), "");
}

TEST(CallRequestTest, ACallWithoutADataSourceSaysHowToNameOne) {
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {}, std::nullopt).find("--dsn"), std::string::npos);
  EXPECT_NE(refusal("SrvRptRetrieve.GetRptPlx", {}, "Database=\xFF"), "");
}

TEST(CallRequestTest, APropertyNeedsNoDataSource) {
  EXPECT_EQ(refusal("SrvRptRetrieve.TransMode", {}, std::nullopt), "");
}

}  // namespace
}  // namespace tolvane::host
