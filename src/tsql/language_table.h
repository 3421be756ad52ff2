#pragma once

#include <span>
#include <string_view>

namespace tolvane::tsql {

// One construct of T-SQL, with a statement that shows it. The examples use a table t (a int, b nvarchar(20), d
// datetime, m money); tests compile each of them.
struct LanguageRow {
  std::string_view construct;
  std::string_view example;
};

// What the engine takes beyond functions, operators and types, which have tables of their own.
std::span<const LanguageRow> supportedConstructs();

// What it refuses with error 40517, which names the word and its line. A construct in neither list is an error of
// syntax.
std::span<const LanguageRow> refusedConstructs();

}  // namespace tolvane::tsql
