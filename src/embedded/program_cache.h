// Compiled batches, found again when a batch differs in its literals only.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/database.h"
#include "platform/data_access.h"
#include "tsql/compiler.h"

namespace tolvane::embedded {

/// What a record set needs to know of a query's columns; shared by all sets of the query.
struct ResultShape {
  std::vector<FieldInfo> fields;
  std::vector<tsql::ResultColumn> columns;
  std::string table;     ///< of which the rows are rows; empty when they are of no single table
  bool hasLong = false;  ///< some column holds long values, read by row number
  /// For each column that holds long values: reads one of them, ?1 being the row's number. A large document comes as
  /// its length, without being read.
  std::vector<std::shared_ptr<StatementPool>> longReaders;
  std::vector<std::string> reads;  ///< tables whose change would change the rows

  [[nodiscard]] bool hasRows() const { return !table.empty(); }
};

/// A step's statements, ready to be prepared: in the order of the step, or, of a query, the form that gives row numbers
/// where there is one.
struct PreparedStep {
  std::vector<std::shared_ptr<StatementPool>> pools;
  std::shared_ptr<const ResultShape> shape;  ///< of a query whose rows go to the caller
};

struct CompiledProgram {
  tsql::Program program;
  std::vector<PreparedStep> steps;
  std::uint64_t catalogueVersion = 0;

  CompiledProgram(tsql::Program compiled, std::uint64_t version);
};

/// The SQLite schema of a table, "main" or "temp": temporary tables and table variables tell by their first sign.
[[nodiscard]] const char* schemaName(std::string_view table);

/// Keeps the programs used last, up to a bound. A program is good for one version of the catalogue.
class ProgramCache {
 public:
  explicit ProgramCache(std::size_t shapes = 512) : bound_(shapes) {}

  /// The program of a batch, compiled if there is none. Raises what the compiler raises.
  [[nodiscard]] std::shared_ptr<CompiledProgram> find(const tsql::ShapedBatch& batch, const tsql::Catalogue& catalogue,
                                                      const tsql::CompileOptions& options);

  [[nodiscard]] std::uint64_t hits() const { return hits_; }
  [[nodiscard]] std::uint64_t misses() const { return misses_; }
  [[nodiscard]] std::size_t size() const { return entries_.size(); }

 private:
  struct Variant {
    std::string key;  // values of the structural literals and types of the placeholders
    std::shared_ptr<CompiledProgram> program;
  };
  struct Entry {
    std::string key;
    std::vector<int> structuralLiterals;
    std::vector<Variant> variants;
  };

  std::size_t bound_;
  std::list<Entry> entries_;  // the one used last is first
  std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
  std::uint64_t hits_ = 0;
  std::uint64_t misses_ = 0;
};

}  // namespace tolvane::embedded
