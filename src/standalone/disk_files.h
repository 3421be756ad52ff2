// Binary files of the machine's file system.
#pragma once

#include <memory>
#include <string>

#include "platform/files.h"

namespace tolvane::standalone {

/// Names are UTF-8. Errors: 53 (nothing there to remove), 57 (device), 61 (disk full), 70 (no permission),
/// 75 (not a file that can be opened), 76 (no such folder).
class DiskFiles : public Files {
 public:
  [[nodiscard]] bool exists(const std::string& name) override;
  [[nodiscard]] std::unique_ptr<BinaryFile> openBinary(const std::string& name) override;
  void remove(const std::string& name) override;
};

}  // namespace tolvane::standalone
