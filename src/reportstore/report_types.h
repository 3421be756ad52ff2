// Codes of the report catalogue.
#pragma once

#include <cstdint>

namespace tolvane {

/// t_Rpt_Content.FRptType
namespace report_type {
inline constexpr std::int32_t ordinary = 1;
inline constexpr std::int32_t variantDocument = 2;  ///< the document is a variant's record
inline constexpr std::int32_t regimeTemplate = 3;   ///< listed to every user
}  // namespace report_type

/// t_Rpt_Right.FRightCode
namespace right_code {
inline constexpr std::int32_t listed = 1;
inline constexpr std::int32_t full = 4;  ///< creator and owner
}  // namespace right_code

}  // namespace tolvane
