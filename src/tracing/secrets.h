// Keeps passwords out of what is written.
#pragma once

#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane::tracing {

/// What stands for a password.
inline constexpr std::string_view hidden = "***";

/// Whether a column or key of this name holds a password (FMPassWord, in any letter case).
[[nodiscard]] bool isSecretName(std::string_view name);

/// The statement with the passwords in it hidden: texts compared with or assigned to a password column, and the value
/// for it in an insert, and texts that hold a connection's password. The services put such texts into statements
/// without escaping them, so a statement in which a password cannot be told from what surrounds it is cut off where the
/// password may begin.
[[nodiscard]] std::string maskSql(const std::string& sql);

/// Whether a parameter of the statement may be a password.
[[nodiscard]] bool hasSecretParameters(const std::string& sql);

/// A data-source name with its password hidden; the text is otherwise unchanged.
[[nodiscard]] std::string maskDsn(const std::string& dsn);

/// Whether a text has a password as connection texts have it: "PWD=..." or "Password=..." at its beginning or behind a
/// ";". Such texts are values too: the column FPropsString keeps them.
[[nodiscard]] bool holdsPassword(std::string_view text);

/// A value as it may be shown: the password in a connection text is hidden, everything else unchanged.
[[nodiscard]] Value maskValue(const Value& value);

}  // namespace tolvane::tracing
