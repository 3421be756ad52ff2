// The suite around the services: who calls, on which data source, with which rights, in which language.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/data_access.h"
#include "platform/objects.h"

namespace tolvane {

/// How a class takes part in transactions (the global library's enumeration).
enum class TransactionMode : std::int32_t { required = 2, supported = 3 };

/// Tells who the caller is.
class Login {
 public:
  virtual ~Login() = default;
  [[nodiscard]] virtual std::int32_t currentUserID() = 0;
  /// The text by which the security component knows this login.
  [[nodiscard]] virtual std::string userKey() = 0;
  /// "chs", "cht" or "en".
  [[nodiscard]] virtual std::string languageCode() = 0;
};

/// The environment of one call: it opens the data source and hands out its connection.
class Context {
 public:
  virtual ~Context() = default;
  /// Raises an error that says which data source, and why, when it cannot be opened.
  virtual void openDataSource(const std::string& dsn) = 0;
  [[nodiscard]] virtual std::shared_ptr<Login> getLoginInfo() = 0;
  /// The connection of the data source that was opened last. Its cursors are client-side, so their counts are known.
  [[nodiscard]] virtual std::shared_ptr<Connection> getConnection() = 0;
  /// Announces work of several steps.
  virtual void beginWork() = 0;
  /// Votes that the work so far may be kept. The host decides when the call returns.
  virtual void completeWork() = 0;
  /// The text that the context holds for the current call; the data-flow component is given it.
  [[nodiscard]] virtual std::string callText() = 0;
};

/// One for each thread, made on first use.
class GlobalApplication {
 public:
  virtual ~GlobalApplication() = default;
  [[nodiscard]] virtual std::shared_ptr<Context> getContext() = 0;
};

/// The security component. Made anew for every question.
class Security {
 public:
  virtual ~Security() = default;
  [[nodiscard]] virtual std::int16_t getCurrentUserID(const std::string& userKey) = 0;
  [[nodiscard]] virtual bool isAdministrator(const std::string& userKey) = 0;
  [[nodiscard]] virtual bool accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID,
                                         std::int32_t accessMask, const std::string& source) = 0;
};

/// Looks Chinese texts up in one language's resource file.
class ResourceLoader {
 public:
  virtual ~ResourceLoader() = default;
  virtual void setResFileBaseName(const std::string& name) = 0;
  virtual void setLanguageID(const std::string& language) = 0;
  [[nodiscard]] virtual std::string loadString(const std::string& text) = 0;
  virtual void unload() = 0;
};

/// Keeps the suite's function menu.
class DataFlow {
 public:
  virtual ~DataFlow() = default;
  /// Replaces the sub-functions of system `system` (7: reports). `entries` holds bags; `callText` is
  /// Context::callText().
  virtual void refreshSubFunc(const std::string& callText, std::int16_t system,
                              const std::shared_ptr<ItemList>& entries, bool first, bool second) = 0;
  /// Replaces the entries under one sub-function.
  virtual void refreshDetailFunc(const std::string& callText, std::int16_t system,
                                 const std::shared_ptr<ItemList>& entries, bool first, bool second) = 0;
};

}  // namespace tolvane
