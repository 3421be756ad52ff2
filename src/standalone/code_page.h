// The ANSI code page of a Windows installation, by its number.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace tolvane::standalone {

/// 936 is Simplified Chinese, the suite's home. Error 5 for a number that no table is known for.
class CodePage : public AnsiCodePage {
 public:
  explicit CodePage(int number = 936);
  ~CodePage() override;
  [[nodiscard]] std::string fromUtf8(const std::string& text) override;
  [[nodiscard]] std::string toUtf8(std::span<const std::uint8_t> bytes) override;

 private:
  /// What the system has for the page; each system's source file knows it.
  struct Table;
  std::unique_ptr<Table> table_;
};

/// The error for a number without a table.
[[noreturn]] void refuseCodePage(int number);

}  // namespace tolvane::standalone
