// What the server reads in a batch before the engine runs it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvane::tds {

/// The statements of a batch that ";" separates, so that each has a result of its own. A batch with control of flow or
/// variables stays whole.
[[nodiscard]] std::vector<std::string> statementsOf(std::string_view text);

/// "@P1", "@P2", ... outside quotes become "?".
[[nodiscard]] std::string withMarks(std::string_view text);

/// How many "?" stand outside quotes.
[[nodiscard]] std::size_t markCount(std::string_view text);

/// The first words of a text, in small letters; fewer where there are fewer.
[[nodiscard]] std::vector<std::string> firstWords(std::string_view text, std::size_t count);

/// The name behind "create database" and "drop database".
[[nodiscard]] std::string databaseIn(std::string_view text);

}  // namespace tolvane::tds
