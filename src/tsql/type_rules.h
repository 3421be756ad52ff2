#pragma once

#include <string_view>

#include "tsql/type.h"

namespace tolvane::tsql {

enum class Conversion { Implicit, Explicit, None };

// Whether a value of one type turns into another: by itself, with CAST or CONVERT only, or not at all.
Conversion conversionBetween(const Type& from, const Type& to);

// The type of CASE, COALESCE, UNION and of both sides of a comparison: the higher kind, wide enough for both.
Type commonType(const Type& a, const Type& b);

// The decimal that an exact number is taken as beside a decimal: int is decimal(10,0), money decimal(19,4).
Type asDecimal(const Type& type);

// The type of `a op b` for decimals, by SQL Server's rule of precision and scale; op is one of + - * / %.
Type decimalResult(char op, const Type& a, const Type& b);

// The type of a text of that kind that holds both.
Type concatenation(const Type& a, const Type& b);

}  // namespace tolvane::tsql
