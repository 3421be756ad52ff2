#include "embedded/embedded_command.h"

#include <chrono>
#include <utility>

#include "embedded/batch_run.h"
#include "embedded/embedded_recordset.h"
#include "embedded/errors.h"
#include "embedded/source_text.h"
#include "embedded/time_limit.h"
#include "embedded/values.h"

namespace tolvane::embedded {
namespace {

PlaceholderValue placeholderOf(const Parameter& parameter) {
  PlaceholderValue placeholder{parameterType(parameter), {}, std::nullopt};
  if (const auto* bytes = parameter.value.get<Bytes>(); bytes && placeholder.type.isBinary()) {
    const bool fits = placeholder.type.isLong() || bytes->size() <= static_cast<std::size_t>(placeholder.type.length);
    if (!fits) throw doesNotFit();
    placeholder.document = *bytes;
  } else {
    placeholder.value = toStored(parameter.value, placeholder.type);
  }
  return placeholder;
}

}  // namespace

void EmbeddedCommand::setCommandTimeout(std::int32_t seconds) {
  if (seconds < 0) throw AutomationError(AdoError::invalidArgument, std::string(commandSource));
  timeout_ = seconds;
}

void EmbeddedCommand::appendParameter(const Parameter& parameter) {
  (void)parameterType(parameter);
  parameters_.push_back(parameter);
}

std::shared_ptr<Recordset> EmbeddedCommand::execute() {
  if (text_.find_first_not_of(" \t\r\n") == std::string::npos) {
    throw AutomationError(oledb::noCommand, std::string(commandSource),
                          "Command text was not set for the command object.");
  }
  std::vector<PlaceholderValue> placeholders;
  for (const auto& parameter : parameters_) placeholders.push_back(placeholderOf(parameter));
  const TimeLimit limit(session_->database(), std::chrono::seconds(timeout_));
  const auto sql =
      statementOf(text_, type_ == CommandType::table ? static_cast<std::int32_t>(type_) : unspecifiedOptions,
                  session_->catalogue());
  return EmbeddedRecordset::of(session_, runBatch(session_, sql, placeholders, FirstRead::now));
}

}  // namespace tolvane::embedded
