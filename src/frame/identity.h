// Who calls, and what that user may do: the questions that services put to the suite's security component.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/platform.h"

namespace tolvane {

/// The caller's identifier as the security component knows it: 16 bits, as several columns are; larger ones do not
/// survive.
[[nodiscard]] std::int16_t getCurrentUserID(Platform& platform, Context& context);

[[nodiscard]] bool isAdministrator(Platform& platform, Context& context);

/// Whether the caller has all rights of `accessMask` on an object; `source` names who asks.
[[nodiscard]] bool accessCheck(Platform& platform, Context& context, std::int32_t objectType, std::int32_t objectID,
                               std::int32_t accessMask, const std::string& source);

/// The rights that a user has on a class of items as a whole (`t_UserItemClassRight`), 0 without a row.
/// Error 5, Source "Tolvane.Globals.CheckParentItemRight", when the item class is missing.
[[nodiscard]] std::int32_t checkParentItemRight(Platform& platform, Context& context, std::int32_t userID,
                                                std::optional<std::int32_t> itemClassID = std::nullopt);

/// Whether the caller's view of the data is unrestricted (`t_user.FDataVokeType`): 1 when neither the user nor the
/// user's primary group has bit 0 set, or the user has no row; else 0.
[[nodiscard]] std::int32_t isDataViewUnrestricted(Platform& platform, Context& context, Connection& connection);

}  // namespace tolvane
