#include "embedded/program_cache.h"

#include <algorithm>
#include <utility>

#include "embedded/values.h"
#include "tsql/sqlite_text.h"

namespace tolvane::embedded {
namespace {

// Of one shape, so many programs are kept that differ in structural literals (TOP 10, TOP 20) or parameter types.
constexpr std::size_t variantsOfAShape = 16;

std::shared_ptr<StatementPool> poolOf(std::string text) {
  return std::make_shared<StatementPool>(std::move(text));
}

// A document of at least this many bytes is read straight into the memory that is handed out; below, one more copy is
// cheaper than opening it.
constexpr std::string_view directReadBytes = "65536";

std::shared_ptr<StatementPool> longReader(const std::string& table, const std::string& column) {
  const auto name = tsql::quoted(column);
  return poolOf("SELECT CASE WHEN typeof(" + name + ")='blob' AND length(" + name +
                ")>=" + std::string(directReadBytes) + " THEN length(" + name + ") ELSE " + name + " END FROM " +
                tsql::quoted(table) + " WHERE rowid=?1");
}

std::shared_ptr<const ResultShape> shapeOf(const tsql::Query& query, const std::vector<std::string>& reads) {
  auto shape = std::make_shared<ResultShape>();
  shape->columns = query.columns;
  shape->reads = reads;
  for (const auto& column : query.columns) {
    shape->fields.push_back(fieldInfo(column.name, column.type));
    const bool readLater = query.rows && column.type.isLong() && !column.column.empty();
    shape->longReaders.push_back(readLater ? longReader(query.rows->table, column.column) : nullptr);
    shape->hasLong = shape->hasLong || readLater;
  }
  if (query.rows) shape->table = query.rows->table;
  return shape;
}

PreparedStep prepared(const tsql::StepBody& body, const std::vector<std::string>& reads) {
  PreparedStep step;
  const auto takeQuery = [&](const tsql::Query& query) { step.pools.push_back(poolOf(query.statement.text)); };
  const auto takeAll = [&](const std::vector<tsql::Statement>& statements) {
    for (const auto& statement : statements) step.pools.push_back(poolOf(statement.text));
  };
  if (const auto* query = std::get_if<tsql::QueryStep>(&body)) {
    const auto& rows = query->query.rows;
    step.pools.push_back(poolOf(rows ? rows->textWithoutLong : query->query.statement.text));
    step.shape = shapeOf(query->query, reads);
  } else if (const auto* execute = std::get_if<tsql::ExecuteStep>(&body)) {
    takeAll(execute->statements);
  } else if (const auto* ddl = std::get_if<tsql::DdlStep>(&body)) {
    for (const auto& refusal : ddl->refusals) step.pools.push_back(poolOf(refusal.query.text));
    takeAll(ddl->preparations);
    takeAll(ddl->statements);
  } else if (const auto* jump = std::get_if<tsql::JumpUnlessStep>(&body)) {
    takeQuery(jump->condition);
  } else if (const auto* assign = std::get_if<tsql::AssignStep>(&body)) {
    takeQuery(assign->query);
    takeAll(assign->forRow);
  } else if (const auto* print = std::get_if<tsql::PrintStep>(&body)) {
    takeQuery(print->query);
  } else if (const auto* raised = std::get_if<tsql::RaiseStep>(&body)) {
    takeQuery(raised->query);
  } else if (const auto* thrown = std::get_if<tsql::ThrowStep>(&body)) {
    if (thrown->query) takeQuery(*thrown->query);
  } else if (const auto* transaction = std::get_if<tsql::TransactionStep>(&body)) {
    takeQuery(transaction->query);
  } else if (const auto* option = std::get_if<tsql::OptionStep>(&body)) {
    takeQuery(option->query);
  } else if (const auto* cursor = std::get_if<tsql::CursorStep>(&body)) {
    takeQuery(cursor->query);
  } else if (const auto* text = std::get_if<tsql::RunTextStep>(&body)) {
    takeQuery(text->query);
  }
  return step;
}

void appendTypes(std::string& key, const tsql::CompileOptions& options) {
  for (const auto& type : options.placeholders) {
    key += '?';
    key += std::to_string(type.pack());
  }
  for (const auto& parameter : options.parameters) {
    key += parameter.name;
    key += ' ';
    key += std::to_string(parameter.type.pack());
  }
}

}  // namespace

const char* schemaName(std::string_view table) {
  return table.starts_with('#') || table.starts_with('@') ? "temp" : "main";
}

CompiledProgram::CompiledProgram(tsql::Program compiled, std::uint64_t version)
    : program(std::move(compiled)), catalogueVersion(version) {
  steps.reserve(program.steps.size());
  for (const auto& step : program.steps) steps.push_back(prepared(step.body, program.tablesRead));
}

std::shared_ptr<CompiledProgram> ProgramCache::find(const tsql::ShapedBatch& batch, const tsql::Catalogue& catalogue,
                                                    const tsql::CompileOptions& options) {
  const auto found = byKey_.find(batch.key);
  std::string key;
  if (found != byKey_.end()) {
    auto& entry = *found->second;
    if (!entry.structuralLiterals.empty()) key = tsql::structuralKey(batch, entry.structuralLiterals);
    appendTypes(key, options);
    const auto variant =
        std::find_if(entry.variants.begin(), entry.variants.end(), [&](const Variant& v) { return v.key == key; });
    if (variant != entry.variants.end() && variant->program->catalogueVersion == catalogue.version()) {
      ++hits_;
      if (found->second != entries_.begin()) entries_.splice(entries_.begin(), entries_, found->second);
      return variant->program;
    }
  }
  ++misses_;
  auto compiled = std::make_shared<CompiledProgram>(tsql::compile(batch, catalogue, options), catalogue.version());
  if (found == byKey_.end()) {
    entries_.push_front({batch.key, compiled->program.structuralLiterals, {}});
    byKey_.emplace(entries_.front().key, entries_.begin());
    if (!compiled->program.structuralLiterals.empty()) {
      key = tsql::structuralKey(batch, compiled->program.structuralLiterals);
    }
    appendTypes(key, options);
  } else {
    entries_.splice(entries_.begin(), entries_, found->second);
  }
  auto& entry = entries_.front();
  std::erase_if(entry.variants,
                [&](const Variant& v) { return v.key == key || v.program->catalogueVersion != catalogue.version(); });
  if (entry.variants.size() == variantsOfAShape) entry.variants.erase(entry.variants.begin());
  entry.variants.push_back({std::move(key), compiled});
  if (entries_.size() > bound_) {
    byKey_.erase(entries_.back().key);
    entries_.pop_back();
  }
  return compiled;
}

}  // namespace tolvane::embedded
