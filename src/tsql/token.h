#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tsql/type.h"

namespace tolvane::tsql {

enum class TokenKind : std::uint8_t {
  End,
  Word,         // keyword or plain name
  QuotedName,   // [x] or "x"
  Variable,     // @x, @@x
  Literal,      // text, number, binary; `literal` says which
  Placeholder,  // ?
  Operator,     // one or two characters: + <= <> , ( ) . ; ...
};

struct Token {
  TokenKind kind = TokenKind::End;
  std::uint32_t begin = 0;  // bytes of the batch
  std::uint32_t end = 0;
  std::int32_t literal = -1;  // number of the literal, or of the placeholder
};

// A literal, lifted out of the text. Views point into the batch's text or into ShapedBatch::storage.
struct Literal {
  Type type;                 // varchar/nvarchar(n), int, decimal(p,s), float, varbinary(n); never nullable
  std::int64_t integer = 0;  // kind Int
  double real = 0;           // kind Float
  std::string_view text;     // text without its quotes; decimal in canonical form ("12.50"); bytes of a binary
};

}  // namespace tolvane::tsql
