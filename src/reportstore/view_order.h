// How a user's view of the report list becomes an order.
#pragma once

#include <string>
#include <string_view>

namespace tolvane {

/// The order text for a view text of Chinese words separated by "!" (年度!期间 gives " Order by  FYear ,  FPeriod "). A
/// word that is none of the five leaves a gap, and with it a statement that the database refuses.
[[nodiscard]] std::string viewToOrder(std::string_view viewText);

}  // namespace tolvane
