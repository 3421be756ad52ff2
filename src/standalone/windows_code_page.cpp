#include <windows.h>

#include "standalone/code_page.h"
#include "system/windows_text.h"

namespace tolvane::standalone {

struct CodePage::Table {
  unsigned number;
};

CodePage::CodePage(int number) : table_(std::make_unique<Table>(Table{static_cast<unsigned>(number)})) {
  if (number <= 0 || IsValidCodePage(table_->number) == FALSE) refuseCodePage(number);
}

CodePage::~CodePage() = default;

std::string CodePage::fromUtf8(const std::string& text) {
  return system::toCodePage(table_->number, system::wideOf(text), system::QuestionMarks::oneEachCharacter);
}

std::string CodePage::toUtf8(std::span<const std::uint8_t> bytes) {
  return system::utf8Of(
      system::fromCodePage(table_->number, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}));
}

}  // namespace tolvane::standalone
