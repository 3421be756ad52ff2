// Databases on a server: the platform's data access on ODBC, in the server's own language.
#pragma once

#include <memory>

#include "platform/engine.h"

namespace tolvane::odbc {

/// Opens data sources of the form `Engine=odbc;Driver=FreeTDS;Server=host;Port=1433;Database=name;UID=user;PWD=word`.
/// connection_text.h says which keys there are. A thread has one connection to a data source: opening it again on the
/// same thread gives the same one while somebody holds it. May be used by many threads; what it opens belongs to the
/// thread that opened it.
class OdbcEngine final : public Engine {
 public:
  /// Every opening makes sure that the server still answers, and connects anew when it does not; in a transaction the
  /// loss is left to be an error. Raises the driver's or server's words with the data source's name in front.
  [[nodiscard]] std::shared_ptr<EngineConnection> open(const DataSourceName& name) override;

  /// Ends this thread's kept connections that nobody uses; whoever drops a database needs it free.
  static void closeIdle();
};

}  // namespace tolvane::odbc
