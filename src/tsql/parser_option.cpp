// SET of options. One that would change what later statements mean is taken only with the meaning that holds anyway.
#include <algorithm>

#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementPtr;

namespace {

enum class Takes : std::uint8_t { Both, On, Off, Neither };

struct Switch {
  std::string_view name;
  Takes takes;
};

// clang-format off
constexpr Switch switches[] = {
    {"NOCOUNT", Takes::Both},
    {"XACT_ABORT", Takes::Both},
    {"ARITHABORT", Takes::Both},  // means nothing beside ANSI_WARNINGS ON
    {"FORCEPLAN", Takes::Both},
    {"REMOTE_PROC_TRANSACTIONS", Takes::Both},
    {"ANSI_NULLS", Takes::On},
    {"ANSI_WARNINGS", Takes::On},
    {"ANSI_PADDING", Takes::On},
    {"ANSI_NULL_DFLT_ON", Takes::On},
    {"QUOTED_IDENTIFIER", Takes::On},
    {"CONCAT_NULL_YIELDS_NULL", Takes::On},
    {"ANSI_NULL_DFLT_OFF", Takes::Off},
    {"ARITHIGNORE", Takes::Off},
    {"NUMERIC_ROUNDABORT", Takes::Off},
    {"IMPLICIT_TRANSACTIONS", Takes::Off},
    {"CURSOR_CLOSE_ON_COMMIT", Takes::Off},
    {"FMTONLY", Takes::Off},
    {"NOEXEC", Takes::Off},
    {"PARSEONLY", Takes::Off},
    {"SHOWPLAN_ALL", Takes::Off},
    {"SHOWPLAN_TEXT", Takes::Off},
    {"SHOWPLAN_XML", Takes::Off},
    {"ANSI_DEFAULTS", Takes::Neither},
    {"DISABLE_DEF_CNST_CHK", Takes::Neither},
};
// clang-format on

const Switch* findSwitch(std::string_view word) {
  const auto same = [&](const Switch& row) { return sameName(row.name, word); };
  const auto* found = std::ranges::find_if(switches, same);
  return found == std::end(switches) ? nullptr : found;
}

StatementPtr makeOption(std::string_view name, bool on) {
  auto result = std::make_unique<tree::StatementNode>();
  result->kind = StatementKind::Option;
  result->name = name;
  result->on = on;
  return result;
}

}  // namespace

// SET option [, option ...] { ON | OFF }, and the options that take a value.
StatementPtr Parser::option() {
  if (isWord("TRANSACTION") && isWord(1, "ISOLATION")) return isolationLevel();
  if (isWord("STATISTICS")) return statistics();
  if (findSwitch(here()) == nullptr) return valuedOption();
  std::vector<int> words;
  do {
    if (findSwitch(here()) == nullptr) fail();
    words.push_back(at_++);
  } while (takeOperator(","));
  const bool on = takeWord("ON");
  if (!on) expectWord("OFF");
  auto result = makeOption(findSwitch(text(batch_.tokens[static_cast<std::size_t>(words.front())]))->name, on);
  for (const int word : words) {
    const Switch& found = *findSwitch(text(batch_.tokens[static_cast<std::size_t>(word)]));
    const bool taken = found.takes == Takes::Both || found.takes == (on ? Takes::On : Takes::Off);
    if (!taken) throw notSupported(batch_, word, on ? "the option ON" : "the option OFF");
    // Of those that may stand in a list, one alone does something when it is run.
    if (found.name == "XACT_ABORT") result->name = found.name;
  }
  return result;
}

StatementPtr Parser::isolationLevel() {
  at_ += 2;
  expectWord("LEVEL");
  if (takeWord("READ")) {
    if (!takeWord("COMMITTED")) expectWord("UNCOMMITTED");
  } else if (takeWord("REPEATABLE")) {
    expectWord("READ");
  } else if (!takeWord("SERIALIZABLE")) {
    expectWord("SNAPSHOT");
  }
  return makeOption("TRANSACTION ISOLATION LEVEL", false);
}

// Times and reads are messages; plans would be results.
StatementPtr Parser::statistics() {
  ++at_;
  bool results = false;
  const int first = at_;
  do {
    results = results || isWord("PROFILE") || isWord("XML");
    if (!takeWord("IO") && !takeWord("TIME") && !takeWord("PROFILE")) expectWord("XML");
  } while (takeOperator(","));
  const bool on = takeWord("ON");
  if (!on) expectWord("OFF");
  if (results && on) throw notSupported(batch_, first, "the option ON");
  return makeOption("STATISTICS", on);
}

StatementPtr Parser::valuedOption() {
  const int word = at_;
  if (takeWord("LOCK_TIMEOUT")) {
    if (token().kind == TokenKind::Variable) throw notSupported(batch_, word, "the option from a variable");
    (void)takeSignedInteger();
    return makeOption("LOCK_TIMEOUT", true);
  }
  if (takeWord("DEADLOCK_PRIORITY")) {
    if (token().kind == TokenKind::Variable) throw notSupported(batch_, word, "the option from a variable");
    if (!takeWord("LOW") && !takeWord("NORMAL") && !takeWord("HIGH")) (void)takeSignedInteger();
    return makeOption("DEADLOCK_PRIORITY", true);
  }
  if (isWord("TEXTSIZE") && (peek(1).kind == TokenKind::Literal || isOperator(1, "-"))) {
    ++at_;
    const int size = takeSignedInteger();
    if (size != -1 && size != 2147483647) throw notSupported(batch_, word, "another size of texts");
    return makeOption("TEXTSIZE", true);
  }
  if (isWord("ROWCOUNT") && peek(1).kind == TokenKind::Literal) {
    ++at_;
    if (structuralInteger() != 0) throw notSupported(batch_, word, "a limit of rows");
    return makeOption("ROWCOUNT", false);
  }
  if (isWord("DATEFORMAT") && isWord(1, "MDY")) {
    at_ += 2;
    return makeOption("DATEFORMAT", true);
  }
  if (takeWord("DATEFIRST")) {
    auto result = makeOption("DATEFIRST", true);
    result->value = constantOrVariable(true);
    return result;
  }
  if (takeWord("LANGUAGE")) {
    const bool english = sameName(here(), "us_english") || sameName(here(), "english") ||
                         sameName(here(), "'us_english'") || sameName(here(), "'english'") ||
                         sameName(here(), "N'us_english'") || sameName(here(), "[us_english]");
    if (!english) throw notSupported(batch_, word, "another language");
    if (token().kind == TokenKind::Literal) structural_.push_back(token().literal);
    ++at_;
    return makeOption("LANGUAGE", true);
  }
  static constexpr std::string_view known[] = {
      "ROWCOUNT",     "DATEFORMAT",         "TEXTSIZE", "CONTEXT_INFO", "QUERY_GOVERNOR_COST_LIMIT",
      "FIPS_FLAGGER", "RESULT_SET_CACHING", "OFFSETS",  "ERRLVL",       "RECOMMENDATIONS"};
  for (const auto name : known) {
    if (isWord(name)) refuse("the option");
  }
  if (token().kind != TokenKind::Word || isReserved(here())) fail();
  throw SqlError(195, 15, "'" + std::string(here()) + "' is not a recognized SET option.").at(lineOf(batch_, at_));
}

}  // namespace tolvane::tsql
