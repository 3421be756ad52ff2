#include "odbc/odbc_command.h"

#include <utility>

#include "odbc/batch_run.h"
#include "odbc/errors.h"
#include "odbc/odbc_recordset.h"
#include "odbc/source_text.h"
#include "odbc/values.h"
#include "platform/conversions.h"

namespace tolvane::odbc {
namespace {

constexpr std::int32_t widestDecimal = 28;

// What ADO's parameter says about its value, as a column would.
Column columnOf(const Parameter& parameter) {
  Column column;
  column.type = parameter.type;
  column.size = parameter.size;
  switch (parameter.type) {
    case DataType::empty:
    case DataType::variant:
      column.type = DataType::varWChar;
      break;
    case DataType::longVarChar:
    case DataType::longVarWChar:
    case DataType::longVarBinary:
      column.size = -1;
      break;
    case DataType::binary:
    case DataType::varBinary:
      if (column.size == 0) column.size = -1;
      break;
    case DataType::numeric: {
      // As many decimals as the value has; ADO's own parameters say so in properties that this one has not.
      const bool has = !parameter.value.isNull() && !parameter.value.isEmpty();
      column.precision = widestDecimal;
      column.scale = has ? toDecimal(parameter.value).scale : 0;
      break;
    }
    default:
      break;
  }
  return column;
}

ParameterValue valueOf(const Parameter& parameter) {
  ParameterValue result;
  result.column = columnOf(parameter);
  result.value = assigned(parameter.value, result.column);
  if (const auto* bytes = result.value.get<Bytes>()) {
    result.isDocument = true;
    result.chunks.push_back(*bytes);
    result.value = Null{};
  }
  return result;
}

}  // namespace

void requireText(const std::string& text) {
  if (text.find_first_not_of(" \t\r\n") != std::string::npos) return;
  throw AutomationError(oledb::noCommand, std::string(rowset::commandSource),
                        "Command text was not set for the command object.");
}

void OdbcCommand::setCommandTimeout(std::int32_t seconds) {
  if (seconds < 0) throw AutomationError(AdoError::invalidArgument, std::string(rowset::commandSource));
  timeout_ = seconds;
}

void OdbcCommand::appendParameter(const Parameter& parameter) {
  if (parameter.size < 0) throw AutomationError(AdoError::badParameter, std::string(rowset::commandSource));
  parameters_.push_back(parameter);
}

std::shared_ptr<Recordset> OdbcCommand::execute() {
  requireText(text_);
  if (markCount(text_) > parameters_.size()) {
    throw AutomationError(oledb::parameterNotOptional, std::string(rowset::databaseSource),
                          "No value given for one or more required parameters.");
  }
  BatchOptions options;
  options.timeout = timeout_;
  for (const auto& parameter : parameters_) options.parameters.push_back(valueOf(parameter));
  const auto source = readSource(text_, type_ == CommandType::table);
  return OdbcRecordset::of(session_,
                           runBatch(*session_, type_ == CommandType::table ? source.statement : text_, options));
}

}  // namespace tolvane::odbc
