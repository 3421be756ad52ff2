#include "automation/error_translation.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

#include "automation/text.h"

namespace tolvane::automation {
namespace {

struct Report {
  HRESULT code = S_OK;
  UINT argument = 99;
  std::uint32_t number = 0;
  std::string source;
  std::string description;
};

Report reportOf(const std::function<void()>& failing) {
  Report report;
  EXCEPINFO info{};
  try {
    failing();
  } catch (...) {
    report.code = reportException(&info, &report.argument);
  }
  report.number = static_cast<std::uint32_t>(info.scode);
  report.source = utf8(viewOf(info.bstrSource));
  report.description = utf8(viewOf(info.bstrDescription));
  SysFreeString(info.bstrSource);
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrHelpFile);
  return report;
}

TEST(ErrorTranslation, AnAutomationErrorKeepsNumberSourceAndDescription) {
  const auto report = reportOf([] { throw AutomationError(0x80044047, "Tolvane.X.Y", "报表"); });
  EXPECT_EQ(report.code, DISP_E_EXCEPTION);
  EXPECT_EQ(report.number, 0x80044047U);
  EXPECT_EQ(report.source, "Tolvane.X.Y");
  EXPECT_EQ(report.description, "报表");
}

TEST(ErrorTranslation, ASmallNumberTravelsInTheFacilityOfRunTimeErrors) {
  EXPECT_EQ(reportOf([] { throw AutomationError(5, "s", "d"); }).number, 0x800A0005U);
}

TEST(ErrorTranslation, AnArgumentFaultIsACodeOfInvokeWithThePlace) {
  const auto report = reportOf([] { throw ArgumentFault(DISP_E_TYPEMISMATCH, 3); });
  EXPECT_EQ(report.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(report.argument, 3U);
  EXPECT_EQ(report.number, 0U);
}

TEST(ErrorTranslation, OtherExceptionsAreErrorsToo) {
  EXPECT_EQ(reportOf([] { throw std::bad_alloc(); }).number, 0x800A0007U);
  EXPECT_EQ(reportOf([] { throw std::length_error("x"); }).number, 0x800A0007U);
  EXPECT_EQ(reportOf([] { throw std::runtime_error("words"); }).description, "words");
  EXPECT_EQ(reportOf([] { throw 1; }).number, 0x80004005U);
}

TEST(ErrorTranslation, NothingNeedsAPlaceForTheError) {
  try {
    throw AutomationError(RuntimeError::typeMismatch, "s");
  } catch (...) {
    EXPECT_EQ(reportException(nullptr, nullptr), DISP_E_EXCEPTION);
  }
}

TEST(ErrorTranslation, CodesOfInvokeMeanTheNumbersThatBasicShows) {
  const struct {
    HRESULT code;
    RuntimeError error;
  } rows[] = {{DISP_E_PARAMNOTOPTIONAL, RuntimeError::argumentNotOptional},
              {DISP_E_BADPARAMCOUNT, RuntimeError::wrongArgumentCount},
              {DISP_E_PARAMNOTFOUND, RuntimeError::namedArgumentNotFound},
              {DISP_E_TYPEMISMATCH, RuntimeError::typeMismatch},
              {DISP_E_OVERFLOW, RuntimeError::overflow},
              {DISP_E_MEMBERNOTFOUND, RuntimeError::memberNotFound},
              {DISP_E_UNKNOWNNAME, RuntimeError::memberNotFound},
              {DISP_E_BADINDEX, RuntimeError::subscriptOutOfRange},
              {DISP_E_BADVARTYPE, RuntimeError::typeNotSupported},
              {E_OUTOFMEMORY, RuntimeError::outOfMemory},
              {E_INVALIDARG, RuntimeError::invalidArgument},
              {REGDB_E_CLASSNOTREG, RuntimeError::cannotCreateObject}};
  for (const auto& row : rows) {
    try {
      raiseFailure(row.code);
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), errorNumber(row.error)) << std::hex << row.code;
    }
  }
}

TEST(ErrorTranslation, AnErrorOfTheCalleeKeepsItsOwnWords) {
  EXCEPINFO info{};
  info.scode = static_cast<SCODE>(0x80040E14);
  info.bstrSource = newBstr(std::string_view("ADODB.Connection"));
  info.bstrDescription = newBstr(std::string_view("Incorrect syntax near 'x'."));
  try {
    raiseFailure(DISP_E_EXCEPTION, &info);
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x80040E14U);
    EXPECT_EQ(error.source(), "ADODB.Connection");
    EXPECT_EQ(error.description(), "Incorrect syntax near 'x'.");
  }
  EXPECT_EQ(info.bstrSource, nullptr);
}

TEST(ErrorTranslation, ASmallCodeOfTheCalleeIsANumberToo) {
  EXCEPINFO info{};
  info.wCode = 1001;
  try {
    raiseFailure(DISP_E_EXCEPTION, &info);
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x800A03E9U);
    EXPECT_FALSE(error.description().empty());
  }
}

TEST(ErrorTranslation, OtherCodesHaveTheSystemsWords) {
  try {
    raiseFailure(E_ACCESSDENIED);
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), 0x80070005U);
    EXPECT_FALSE(error.description().empty());
  }
}

}  // namespace
}  // namespace tolvane::automation
