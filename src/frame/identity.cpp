#include "frame/identity.h"

#include "frame/sql_text.h"
#include "frame/translation.h"
#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

constexpr std::int16_t restricted = 1;

std::string userKey(Context& context) {
  return context.getLoginInfo()->userKey();
}

std::shared_ptr<Recordset> run(Command& command, const std::string& text) {
  command.setCommandText(text);
  return command.execute();
}

}  // namespace

std::int16_t getCurrentUserID(Platform& platform, Context& context) {
  return platform.newSecurity()->getCurrentUserID(userKey(context));
}

bool isAdministrator(Platform& platform, Context& context) {
  return platform.newSecurity()->isAdministrator(userKey(context));
}

bool accessCheck(Platform& platform, Context& context, std::int32_t objectType, std::int32_t objectID,
                 std::int32_t accessMask, const std::string& source) {
  return platform.newSecurity()->accessCheck(userKey(context), objectType, objectID, accessMask, source);
}

std::int32_t checkParentItemRight(Platform& platform, Context& context, std::int32_t userID,
                                  std::optional<std::int32_t> itemClassID) {
  if (!itemClassID) {
    const std::string language = context.getLoginInfo()->languageCode();
    throw AutomationError(errorNumber(RuntimeError::invalidArgument),
                          sql(applicationName, ".Globals.CheckParentItemRight"),
                          translate(platform, "缺少Item Class 参数。", language));
  }
  const auto rows =
      context.getConnection()->execute(sql("Select FUserItemClassRight From t_UserItemClassRight ",
                                           " Where FUserID =", userID, " and FItemClassID=", *itemClassID));
  return rows->eof() ? 0 : toInt32(rows->value("FUserItemClassRight"));
}

std::int32_t isDataViewUnrestricted(Platform& platform, Context& context, Connection& connection) {
  const auto command = connection.newCommand();
  command->setCommandType(CommandType::text);
  command->setCommandTimeout(0);
  const std::int16_t userID = getCurrentUserID(platform, context);
  const auto user = run(*command, sql("Select FDataVokeType,FPrimaryGroup From t_user Where FUserID =", userID));
  if (user->eof()) return 1;
  const std::int16_t userType = toInt16(user->value("FDataVokeType"));
  const std::int32_t primaryGroup = toInt32(user->value("FPrimaryGroup"));
  const auto group = run(*command, sql("Select FDataVokeType From t_user Where FUserID =", primaryGroup));
  const std::int16_t groupType = group->eof() ? std::int16_t{0} : toInt16(group->value("FDataVokeType"));
  return ((userType | groupType) & restricted) == 0 ? 1 : 0;
}

}  // namespace tolvane
