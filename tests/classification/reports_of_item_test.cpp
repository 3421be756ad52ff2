// The statements that list the reports of an item, for every kind of reader.
#include "classification/reports_of_item.h"

#include <gtest/gtest.h>

#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

ItemReader reader() {
  ItemReader result;
  result.userID = 17;
  result.nameColumn = "FRptName_en";
  return result;
}
ItemReader administrator() {
  ItemReader result = reader();
  result.isAdministrator = true;
  return result;
}
ItemReader readerOfAll() {
  ItemReader result = reader();
  result.seesAllReports = true;
  return result;
}
ItemReader readerOfShared() {
  ItemReader result = reader();
  result.seesSharedReports = true;
  return result;
}

/// The nature item's statement where 1001 and 1002 are the other standards.
std::string ofNature(const ItemReader& who, std::int32_t item) {
  RecordingPlatform platform;
  platform.answer("others", {{"FNumber"}, {{"1001"}, {"1002"}}});
  const auto connection = platform.application()->getContext()->getConnection();
  return reportsOfNatureItem(who, item, *connection->execute("others"));
}

TEST(SplitItemName, CutsAtTheFirstHyphenBehindAParenthesis) {
  const auto plain = splitItemName("(性质)-普通报表");
  EXPECT_EQ(plain->standard, "性质");
  EXPECT_EQ(plain->item, "普通报表");
  const auto hyphens = splitItemName("(a-b-c)-d-e)-f");
  EXPECT_EQ(hyphens->standard, "a-b-c");
  EXPECT_EQ(hyphens->item, "d-e)-f");
}

TEST(SplitItemName, GivesNothingWithoutSuchAHyphen) {
  for (const char* name : {"", "a-b", "(a) -b", ")-", "-", ")"}) EXPECT_FALSE(splitItemName(name)) << name;
}

TEST(SplitItemName, TakesEmptyNames) {
  const auto names = splitItemName("()-");
  EXPECT_EQ(names->standard, "");
  EXPECT_EQ(names->item, "");
}

TEST(ReportsOfItem, OfAReaderOfSharedReportsBeginWithTheItemsTemplates) {
  EXPECT_EQ(reportsOfItem(readerOfShared(), "1001", 126),
            "Select FRptName_en As FRptName From t_Rpt_Content Where FRptType=3 And F1001=126 UNION ALL Select "
            "FRptName_en As FRptName From t_Rpt_Content a Where a.FRptType=1  And a.F1001=126 AND  EXISTS ( SELECT * "
            "FROM t_Rpt_Right b WHERE b.FUserID=17 And b.FRightCode>=1 And a.FRptID=b.FRptID )");
}

TEST(ReportsOfItem, OfAReaderWithoutRightsAreThoseGrantedAndNoTemplates) {
  EXPECT_EQ(reportsOfItem(reader(), "1001", 126),
            "Select FRptName_en As FRptName From t_Rpt_Content Where FRptType=8  UNION ALL Select FRptName_en As "
            "FRptName From t_Rpt_Content a Where a.FRptType=1  And a.F1001=126 AND  EXISTS ( SELECT * FROM "
            "t_Rpt_Right b WHERE b.FUserID=17 And b.FRightCode>=1 And a.FRptID=b.FRptID )");
}

TEST(ReportsOfItem, OfAReaderOfAllAreThoseNotDenied) {
  EXPECT_EQ(reportsOfItem(readerOfAll(), "1001", 126),
            "Select FRptName_en As FRptName From t_Rpt_Content Where FRptType=8  UNION ALL Select FRptName_en As "
            "FRptName From t_Rpt_Content a Where a.FRptType=1 And a.F1001=126 AND NOT EXISTS ( SELECT * FROM "
            "t_Rpt_Right WHERE FUserID=17 And FRightCode<1 And FRptID=a.FRptID )");
}

TEST(ReportsOfItem, OfAnAdministratorAreAll) {
  EXPECT_EQ(reportsOfItem(administrator(), "1001", 126),
            "Select FRptName_en As FRptName From t_Rpt_Content Where FRptType=8  UNION ALL Select FRptName_en As "
            "FRptName From t_Rpt_Content a Where a.FRptType=1  And a.F1001=126");
}

TEST(ReportsOfNatureItem, OfItemsThreeAndFourAreTemplates) {
  for (const std::int32_t item : {3, 4}) {
    EXPECT_EQ(ofNature(administrator(), item),
              "Select FRptName_en As FRptName From t_Rpt_Content a Where a.FRptType=3 And a.F1001=0 And a.F1002=0");
  }
}

TEST(ReportsOfNatureItem, OfOtherItemsAreOrdinaryReports) {
  for (const std::int32_t item : {1, 2, 5, 99}) {
    EXPECT_EQ(ofNature(administrator(), item),
              "Select FRptName_en As FRptName From t_Rpt_Content a Where a.FRptType=1 And a.F1001=0 And a.F1002=0");
  }
}

TEST(ReportsOfNatureItem, ShowTemplatesToReadersOfSharedReportsAlone) {
  EXPECT_EQ(ofNature(readerOfShared(), 3),
            "Select FRptName_en As FRptName From t_Rpt_Content a Where a.FRptType=3  And a.F1001=0 And a.F1002=0");
  EXPECT_EQ(ofNature(readerOfAll(), 3),
            "Select FRptName_en As FRptName From t_Rpt_Content a Where 1 = 0 And a.F1001=0 And a.F1002=0");
}

TEST(ReportsOfNatureItem, OfAReaderAreThoseGranted) {
  EXPECT_EQ(ofNature(reader(), 1),
            "Select FRptName_en As FRptName From t_Rpt_Content a,t_Rpt_Right b Where a.FRptType=1 And a.F1001=0 And "
            "a.F1002=0 And b.FUserID=17 And b.FRightCode >=1 And a.FRptID=b.FRptID");
}

TEST(ReportsOfNatureItem, OfAReaderOfAllDropTheConditionThatNoOtherStandardFilesThem) {
  EXPECT_EQ(ofNature(readerOfAll(), 1),
            "Select FRptName_en As FRptName From t_Rpt_Content a Where a.FRptType=1  AND NOT EXISTS ( SELECT * FROM "
            "t_Rpt_Right b WHERE b.FUserID=17 And b.FRightCode<1 And a.FRptID=b.FRptID )");
}

}  // namespace
}  // namespace tolvane::test
