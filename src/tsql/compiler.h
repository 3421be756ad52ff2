#pragma once

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/catalogue.h"
#include "tsql/program.h"
#include "tsql/sql_error.h"
#include "tsql/token.h"

namespace tolvane::tsql {

// A batch cut into tokens, with its literals lifted out. Views point into the text that was given, which must outlive
// it. Movable, not copyable.
struct ShapedBatch {
  std::string_view text;
  std::vector<Token> tokens;  // ends with a token of kind End
  std::vector<Literal> literals;
  int placeholders = 0;
  // The text with every literal replaced by its kind: two batches with the same key differ in literal values only.
  std::string key;
  std::deque<std::string> storage;  // texts of literals that are not in the batch as such (doubled quotes, bytes)

  ShapedBatch() = default;
  ShapedBatch(ShapedBatch&&) = default;
  ShapedBatch& operator=(ShapedBatch&&) = default;

  // Makes this the shape of another text, keeping the memory that it has.
  // Throws SqlError: 105 for a text or name without its end, 102 for a character that begins no token, 113 for a
  // comment without its end, 1007 for a number with more than 38 digits.
  void assign(std::string_view batch);
};

// The shape of a batch; see ShapedBatch::assign.
ShapedBatch shape(std::string_view batch);

// The values of the literals that a program of this shape depends on, as one text: the second half of a cache's key
// (the first is ShapedBatch::key; Program::structuralLiterals of a program found by the first half tells the list,
// which is the same for all programs of a shape).
//
// A number below 0 stands for a literal, widthOf(number), of which only the width counts.
std::string structuralKey(const ShapedBatch& batch, const std::vector<int>& structuralLiterals);

constexpr int widthOf(int number) {
  return ~number;
}

// The width that the type of a text literal has.
std::int32_t literalWidth(const Literal& literal);

struct CompileOptions {
  // Types of the command's "?" parameters, in order; those beyond the list count as nvarchar(4000).
  std::vector<Type> placeholders;
  // Variables that are there already: the parameters of a text that is run by another batch.
  std::vector<Variable> parameters;
  // For messages that name a table in full; empty where there is none.
  std::string database;
};

// Compiles a batch. Throws SqlError for what SQL Server refuses before it runs the first statement: syntax (102, 156),
// unknown columns of known tables (207), ambiguous ones (209), undeclared variables (137), operand types that do not go
// together (402, 206 ...), and for what this engine does not support, with the place and the word. Unknown tables are
// no error here: their statements become DeferredStep. An empty batch (blanks and comments only) gives a program
// without steps.
Program compile(const ShapedBatch& batch, const Catalogue& catalogue, const CompileOptions& options = {});

// The parameters that a text declares for sp_executesql: "@a int, @b varchar(9) output".
struct FormalParameter {
  Variable variable;
  bool output = false;
};
std::vector<FormalParameter> formalParameters(const ShapedBatch& text);

// Compiles the statement of a deferred step of `program` with the catalogue as it is now. The result's steps use the
// slots of `program.variables`; jumps are relative to its own steps. Throws SqlError, 208 for a table that still is not
// there.
Program compileDeferred(const ShapedBatch& batch, const Program& program, const DeferredStep& step,
                        const Catalogue& catalogue, const CompileOptions& options = {});

}  // namespace tolvane::tsql
