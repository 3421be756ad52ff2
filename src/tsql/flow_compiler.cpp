// Errors and their handlers, transactions and options of a batch.
#include <algorithm>

#include "tsql/batch_compiler.h"
#include "tsql/parser.h"

namespace tolvane::tsql {

using tree::StatementNode;

// The program goes from the end of the TRY block behind the CATCH block; an error of the former leads into the latter.
void BatchCompiler::tryCatch(const StatementNode& node) {
  Handler handler;
  handler.tryBegin = next();
  statement(*node.statements[0], false);
  handler.tryEnd = next();
  const int leave = add(node, JumpStep{});
  handler.catchBegin = next();
  statement(*node.statements[1], false);
  handler.catchEnd = next();
  sendTo(leave, next());
  program_.handlers.push_back(handler);
}

void BatchCompiler::transaction(const StatementNode& node, TransactionStep::Verb verb) {
  TransactionStep step;
  step.verb = verb;
  step.name = node.name;
  if (node.value) {
    Typed name = writer_.convert(writer_.expression(*node.value, nullptr), Type::text(TypeKind::NVarChar, 32));
    step.query.statement = writer_.finish("SELECT " + name.sql);
    step.query.columns.push_back({"", name.type, "", "", false});
  }
  add(node, std::move(step));
}

void BatchCompiler::option(const StatementNode& node) {
  OptionStep step{node.name, node.on, {}};
  if (node.value) {
    const Typed value = writer_.convert(writer_.expression(*node.value, nullptr), Type::of(TypeKind::Int));
    step.query.statement = writer_.finish("SELECT " + value.sql);
    step.query.columns.push_back({"", value.type, "", "", false});
  }
  add(node, std::move(step));
}

// The message with its values filled in. The function is told what the values are by a letter for each.
std::string BatchCompiler::formattedMessage(const StatementNode& node) {
  std::string kinds;
  std::string values;
  for (std::size_t i = 3; i < node.arguments.size(); ++i) {
    const Typed value = writer_.expression(*node.arguments[i], nullptr);
    switch (value.type.kind) {
      case TypeKind::Null:
        kinds += 'n';
        break;
      case TypeKind::TinyInt:
      case TypeKind::SmallInt:
      case TypeKind::Int:
        kinds += 'i';
        break;
      case TypeKind::BigInt:
        kinds += 'b';
        break;
      case TypeKind::Char:
      case TypeKind::VarChar:
      case TypeKind::NChar:
      case TypeKind::NVarChar:
        kinds += 's';
        break;
      case TypeKind::Binary:
      case TypeKind::VarBinary:
        throw notSupported(batch_, node.arguments[i]->token, "a binary value in RAISERROR");
      default:
        throw SqlError(Message::MessageParameter, {value.type.baseName(), std::to_string(i + 1)})
            .at(lineOf(batch_, node.arguments[i]->token));
    }
    values += "," + value.sql;
  }
  const Typed message = writer_.expression(*node.arguments[0], nullptr);
  return "ts_format_message(" + message.sql + "," + quotedText(kinds) + values + ")";
}

void BatchCompiler::raise(const StatementNode& node) {
  RaiseStep step;
  const Typed message = writer_.expression(*node.arguments[0], nullptr);
  step.numbered = message.type.isInteger();
  if (!message.type.isText() && !step.numbered && message.type.kind != TypeKind::Null) {
    throw notSupported(batch_, node.arguments[0]->token, "RAISERROR of a value of that type");
  }
  step.setsError = node.operation == "SETERROR";
  step.logs = node.on;
  const std::string text = step.numbered ? message.sql : formattedMessage(node);
  std::string numbers;
  for (std::size_t i = 1; i < 3; ++i) {
    const Typed number = writer_.convert(writer_.expression(*node.arguments[i], nullptr), Type::of(TypeKind::Int));
    numbers += "," + number.sql;
  }
  step.query.statement = writer_.finish("SELECT " + text + numbers);
  step.query.columns.push_back({"", message.type, "", "", false});
  add(node, std::move(step));
}

void BatchCompiler::runText(const StatementNode& node) {
  RunTextStep step;
  step.parameters = !node.value;
  std::string values;
  if (node.value) {
    const Typed text =
        writer_.convert(writer_.expression(*node.value, nullptr), Type::text(TypeKind::NVarChar, maxLength));
    values = text.sql;
  }
  for (std::size_t i = 0; i < node.passed.size(); ++i) {
    const auto& passed = node.passed[i];
    const Typed value = writer_.expression(*passed.value, nullptr);
    values += (values.empty() ? "" : ",") + value.sql;
    int slot = RunTextStep::notOutput;
    if (passed.output) slot = writer_.variableSlot(passed.value->name, passed.value->token);
    step.arguments.push_back({passed.name, value.type, slot});
  }
  step.query.statement = writer_.finish("SELECT " + values);
  program_.returnsRows = true;
  add(node, std::move(step));
}

void BatchCompiler::throwError(const StatementNode& node) {
  ThrowStep step;
  if (!node.arguments.empty()) {
    const Type types[] = {Type::of(TypeKind::Int), Type::text(TypeKind::NVarChar, 2048), Type::of(TypeKind::TinyInt)};
    Query query;
    std::string values;
    for (std::size_t i = 0; i < node.arguments.size(); ++i) {
      const Typed value = writer_.convert(writer_.expression(*node.arguments[i], nullptr), types[i]);
      values += (i > 0 ? "," : "") + value.sql;
      query.columns.push_back({"", value.type, "", "", false});
    }
    query.statement = writer_.finish("SELECT " + values);
    step.query = std::move(query);
  }
  add(node, std::move(step));
}

}  // namespace tolvane::tsql
