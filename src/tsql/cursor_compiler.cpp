#include <utility>

#include "tsql/batch_compiler.h"
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementNode;

void BatchCompiler::checkCursorItems(const tree::Select& select) const {
  if (!select.into.empty()) throw notSupported(batch_, select.token, "INTO in a cursor");
  for (const auto& item : select.items) {
    if (item.variable.empty()) continue;
    writer_.fail(item.token, 154, "Variable assignment is not allowed in a cursor declaration.");
  }
}

void BatchCompiler::cursor(const StatementNode& node) {
  CursorStep step;
  step.name = node.name;
  step.keeps = node.on;
  step.forward = node.unique;
  step.local = node.ifExists;
  static constexpr std::pair<std::string_view, CursorStep::Verb> verbs[] = {
      {"DECLARE", CursorStep::Verb::Declare},   {"OPEN", CursorStep::Verb::Open},
      {"CLOSE", CursorStep::Verb::Close},       {"DEALLOCATE", CursorStep::Verb::Deallocate},
      {"NEXT", CursorStep::Verb::Next},         {"PRIOR", CursorStep::Verb::Prior},
      {"FIRST", CursorStep::Verb::First},       {"LAST", CursorStep::Verb::Last},
      {"ABSOLUTE", CursorStep::Verb::Absolute}, {"RELATIVE", CursorStep::Verb::Relative}};
  for (const auto& [word, verb] : verbs) {
    if (word == node.operation) step.verb = verb;
  }
  if (node.query) {
    if (node.query->body->select) checkCursorItems(*node.query->body->select);
    // Which tables the rows come from is known of the whole program only, so its list is put aside.
    auto others = std::exchange(program_.tablesRead, {});
    const BoundQuery bound = writer_.bind(*node.query, nullptr, false);
    step.query = writer_.finishQuery(bound);
    step.reads = program_.tablesRead;
    program_.tablesRead.insert(program_.tablesRead.end(), others.begin(), others.end());
  } else if (node.value) {
    const Typed place = writer_.convert(writer_.expression(*node.value, nullptr), Type::of(TypeKind::Int));
    step.query.statement = writer_.finish("SELECT " + place.sql);
  }
  for (const auto& name : node.columns) step.slots.push_back(writer_.variableSlot(name, node.endToken));
  add(node, std::move(step));
}

}  // namespace tolvane::tsql
