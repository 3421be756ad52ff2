#include "typelib/interface_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace tolvane::typelib {
namespace {

using ::testing::HasSubstr;

class Sample : public Service {
 public:
  explicit Sample(Platform& platform) : Service(platform) {}
  bool Everything(const std::string&, std::int32_t, bool, Date, const Value&, Value&, std::string&,
                  const std::shared_ptr<PropertyBag>&, Int32Array&, VariantArray&) {
    return true;
  }
  std::shared_ptr<Recordset> Defaults(std::int32_t, const std::string&, bool, const Value&) { return nullptr; }
  void Nothing() {}
};

std::string sampleText() {
  const std::vector<ClassDescription> sample{
      describe<Sample>("Sample", TransactionMode::required, "Says \"hello\".")
          .method(7, "Everything", &Sample::Everything, "Takes all.",
                  {"sText", "lNumber", "bFlag", "dDay", "vIn", "vOut", "sOut", "oBag", "lList", "vList"})
          .method(8, "Defaults", &Sample::Defaults, "Has defaults.",
                  {optional("lNumber", 5), optional("sText", "a"), optional("bFlag", true), optional("vAny")})
          .method(9, "Nothing", &Sample::Nothing, "Gives nothing.", {})};
  return interfaceText(sample);
}

TEST(InterfaceText, StatesEveryTypeAndDirection) {
  EXPECT_THAT(sampleText(), HasSubstr("VARIANT_BOOL Everything(\n"
                                      "        [in] BSTR sText,\n"
                                      "        [in] long lNumber,\n"
                                      "        [in] VARIANT_BOOL bFlag,\n"
                                      "        [in] DATE dDay,\n"
                                      "        [in] VARIANT vIn,\n"
                                      "        [in, out] VARIANT* vOut,\n"
                                      "        [in, out] BSTR* sOut,\n"
                                      "        [in] IDispatch* oBag,\n"
                                      "        [in, out] SAFEARRAY(long)* lList,\n"
                                      "        [in, out] SAFEARRAY(VARIANT)* vList);"));
}

TEST(InterfaceText, StatesDefaultsWhereTheLanguageCan) {
  EXPECT_THAT(sampleText(), HasSubstr("IDispatch* Defaults(\n"
                                      "        [in, defaultvalue(5)] long lNumber,\n"
                                      "        [in, defaultvalue(\"a\")] BSTR sText,\n"
                                      "        [in, defaultvalue(-1)] VARIANT_BOOL bFlag,\n"
                                      "        [in, optional] VARIANT vAny);"));
}

TEST(InterfaceText, GivesMembersTheDispatchNumbersOfTheMethodTable) {
  EXPECT_THAT(sampleText(), HasSubstr("[id(9), helpstring(\"Gives nothing.\")]\n    void Nothing();"));
}

TEST(InterfaceText, KeepsQuotationMarksOfASummaryApart) {
  EXPECT_THAT(sampleText(), HasSubstr("helpstring(\"Says \\\"hello\\\".\")"));
}

TEST(InterfaceText, HasTransModeAsTheFirstMemberOfEveryInterface) {
  const std::string text = interfaceText(classes());
  std::size_t found = 0;
  for (const ClassDescription& description : classes()) {
    const std::string opening = "dispinterface _" + description.name +
                                " {\n  properties:\n    [id(1), readonly] TransactionMode TransMode;\n  methods:\n";
    if (text.find(opening) != std::string::npos) ++found;
  }
  EXPECT_EQ(found, classes().size());
}

}  // namespace
}  // namespace tolvane::typelib
