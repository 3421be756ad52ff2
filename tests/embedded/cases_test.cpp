// The files of tests/embedded/cases, in the form of those of tests/tsql/cases, on an account set as programs open it.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include "account_set.h"
#include "support/case_file.h"
#include "tsql/datetime.h"

namespace tolvane::embedded {
namespace {

std::string dateText(Date date) {
  const double day = date.days < 0 ? std::trunc(date.days) : std::floor(date.days);
  const auto ticks = std::llround(std::abs(date.days - day) * tsql::DateTime::ticksPerDay);
  const auto moment = tsql::carried(static_cast<std::int64_t>(day) - 2, ticks);  // from 1899-12-30 to 1900-01-01
  return moment ? tsql::storedDateTime(*moment) : "no date";
}

std::string shown(const Value& value) {
  if (value.isNull()) return "NULL";
  if (const auto* flag = value.get<bool>()) return *flag ? "1" : "0";
  if (const auto* amount = value.get<Currency>()) return exactText(*amount);
  if (const auto* number = value.get<Decimal>()) return exactText(*number);
  if (const auto* date = value.get<Date>()) return dateText(*date);
  if (const auto* bytes = value.get<Bytes>()) {
    std::string text = "0x";
    char digits[3];
    for (const auto byte : bytes->view()) {
      std::snprintf(digits, sizeof digits, "%02X", byte);
      text += digits;
    }
    return text;
  }
  return toText(value);
}

std::string answerTo(EngineConnection& connection, const std::string& statement) {
  std::string answer;
  try {
    for (auto rows = connection.execute(statement); rows; rows = rows->nextRecordset()) {
      if (rows->state() != ObjectState::open) continue;
      for (; !rows->eof(); rows->moveNext()) {
        for (std::size_t i = 0; i < rows->fields().size(); ++i) answer += (i > 0 ? " | " : "") + shown(rows->value(i));
        answer += "\n";
      }
    }
  } catch (const AutomationError& error) {
    answer += "error " + std::to_string(error.database().nativeNumber) + ": " + error.description() + "\n";
  }
  return answer;
}

std::filesystem::path folder() {
  return std::filesystem::path(TOLVANE_SOURCE_DIR) / "tests/embedded/cases";
}

std::vector<std::string> files() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder())) {
    if (entry.path().extension() == ".test") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class CasesTest : public AccountSetTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(CasesTest, AnswerAsWritten) {
  const auto blocks = test::casesOf(folder() / (GetParam() + ".test"));
  ASSERT_FALSE(blocks.empty());
  for (const test::Case& block : blocks) {
    EXPECT_EQ(answerTo(*connection_, block.statement), block.expected) << GetParam() << ":" << block.line << "\n"
                                                                       << block.statement;
  }
}

INSTANTIATE_TEST_SUITE_P(Files, CasesTest, ::testing::ValuesIn(files()), [](const auto& file) { return file.param; });

}  // namespace
}  // namespace tolvane::embedded
