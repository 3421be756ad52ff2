// Cursors: DECLARE, OPEN, FETCH, CLOSE, DEALLOCATE.
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementKind;
using tree::StatementPtr;

namespace {

StatementPtr makeCursor(std::string_view verb) {
  auto result = std::make_unique<tree::StatementNode>();
  result->kind = StatementKind::Cursor;
  result->operation = verb;
  return result;
}

}  // namespace

bool Parser::beginsCursor() const {
  return isName() && (isWord(1, "CURSOR") || isWord(1, "INSENSITIVE") || (isWord(1, "SCROLL") && isWord(2, "CURSOR")));
}

// name [INSENSITIVE] [SCROLL] CURSOR [options] FOR query; in the node `on` stands for rows that stay as they were,
// `unique` for a cursor that goes forward only.
StatementPtr Parser::declareCursor() {
  auto result = makeCursor("DECLARE");
  result->name = name();
  const bool insensitive = takeWord("INSENSITIVE");
  bool scroll = takeWord("SCROLL");
  expectWord("CURSOR");
  bool forward = false;
  bool placed = false;
  result->on = insensitive;
  for (;;) {
    if (takeWord("LOCAL")) {
      result->ifExists = true;
    } else if (takeWord("SCROLL")) {
      scroll = true;
    } else if (takeWord("FORWARD_ONLY") || takeWord("FAST_FORWARD")) {
      forward = true;
    } else if (takeWord("STATIC")) {
      result->on = placed = true;
    } else if (isWord("KEYSET") || isWord("DYNAMIC") || isWord("SCROLL_LOCKS") || isWord("OPTIMISTIC") ||
               isWord("TYPE_WARNING")) {
      refuse("the kind of the cursor");
    } else if (!takeWord("GLOBAL") && !takeWord("READ_ONLY")) {
      break;
    }
  }
  // Without a word a cursor that is static can go everywhere, another one forward.
  result->unique = forward || (!scroll && !placed);
  if (!takeWord("FOR")) fail();
  if (!beginsQuery(0) && !isWord("WITH")) fail();
  result->query = query();
  return result;
}

StatementPtr Parser::cursorCommand() {
  auto result = makeCursor(isWord("OPEN") ? "OPEN" : isWord("CLOSE") ? "CLOSE" : "DEALLOCATE");
  ++at_;
  takeWord("GLOBAL");
  if (token().kind == TokenKind::Variable) refuse("a cursor variable");
  result->name = name();
  return result;
}

// FETCH [[NEXT | PRIOR | FIRST | LAST | ABSOLUTE n | RELATIVE n] FROM] name INTO @variable, ...
StatementPtr Parser::fetch() {
  auto result = makeCursor("NEXT");
  const int word = at_++;
  static constexpr std::string_view directions[] = {"NEXT", "PRIOR", "FIRST", "LAST", "ABSOLUTE", "RELATIVE"};
  bool directed = false;
  for (const auto direction : directions) {
    if (directed || !isWord(direction)) continue;
    directed = true;
    ++at_;
    result->operation = direction;
    if (direction == "ABSOLUTE" || direction == "RELATIVE") result->value = constantOrVariable(true);
  }
  if (directed) {
    expectWord("FROM");
  } else {
    takeWord("FROM");
  }
  takeWord("GLOBAL");
  if (token().kind == TokenKind::Variable) refuse("a cursor variable");
  result->name = name();
  if (!takeWord("INTO")) throw notSupported(batch_, word, "FETCH without INTO");
  do {
    if (token().kind != TokenKind::Variable) fail();
    result->columns.emplace_back(here());
    ++at_;
  } while (takeOperator(","));
  return result;
}

}  // namespace tolvane::tsql
