#include "frame/profile.h"

namespace tolvane {
namespace {

// The widths of t_SystemProfile.FCategory and FKey.
constexpr std::int32_t keyLength = 80;

Parameter textParameter(const std::string& text) {
  return {DataType::varWChar, ParameterDirection::input, keyLength, text};
}

}  // namespace

Value readProfile(Connection& connection, const std::string& category, const std::string& key,
                  const std::optional<Value>& fallback) {
  const auto command = connection.newCommand();
  command->setCommandType(CommandType::text);
  command->setCommandText("Select FValue From t_SystemProfile Where FCategory = ? And FKey = ?");
  command->appendParameter(textParameter(category));
  command->appendParameter(textParameter(key));
  const auto rows = command->execute();
  if (rows->eof()) return fallback.value_or(Value{});
  return rows->value("FValue");
}

}  // namespace tolvane
