// The ANSI code page of a Windows installation, by its number.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace tolvane::standalone {

/// 936 is Simplified Chinese, the suite's home. Error 5 for a number that no table is known for.
class IcuCodePage : public AnsiCodePage {
 public:
  explicit IcuCodePage(int number = 936);
  ~IcuCodePage() override;
  [[nodiscard]] std::string fromUtf8(const std::string& text) override;
  [[nodiscard]] std::string toUtf8(std::span<const std::uint8_t> bytes) override;

 private:
  struct Converters;
  std::unique_ptr<Converters> converters_;
};

}  // namespace tolvane::standalone
