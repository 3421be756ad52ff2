#include "platform/error.h"

#include <array>
#include <utility>

namespace tolvane {
namespace {

template <typename Number>
struct Words {
  Number number;
  std::string_view text;
};

constexpr std::array runtimeWords{
    Words<RuntimeError>{RuntimeError::invalidArgument, "Invalid procedure call or argument"},
    Words<RuntimeError>{RuntimeError::overflow, "Overflow"},
    Words<RuntimeError>{RuntimeError::outOfMemory, "Out of memory"},
    Words<RuntimeError>{RuntimeError::subscriptOutOfRange, "Subscript out of range"},
    Words<RuntimeError>{RuntimeError::typeMismatch, "Type mismatch"},
    Words<RuntimeError>{RuntimeError::fileNotFound, "File not found"},
    Words<RuntimeError>{RuntimeError::deviceInput, "Device I/O error"},
    Words<RuntimeError>{RuntimeError::diskFull, "Disk full"},
    Words<RuntimeError>{RuntimeError::permissionDenied, "Permission denied"},
    Words<RuntimeError>{RuntimeError::fileAccess, "Path/File access error"},
    Words<RuntimeError>{RuntimeError::pathNotFound, "Path not found"},
    Words<RuntimeError>{RuntimeError::objectNotSet, "Object variable or With block variable not set"},
    Words<RuntimeError>{RuntimeError::invalidUseOfNull, "Invalid use of Null"},
    Words<RuntimeError>{RuntimeError::objectRequired, "Object required"},
    Words<RuntimeError>{RuntimeError::cannotCreateObject, "ActiveX component can't create object"},
    Words<RuntimeError>{RuntimeError::memberNotFound, "Object doesn't support this property or method"},
    Words<RuntimeError>{RuntimeError::namedArgumentNotFound, "Named argument not found"},
    Words<RuntimeError>{RuntimeError::argumentNotOptional, "Argument not optional"},
    Words<RuntimeError>{RuntimeError::wrongArgumentCount, "Wrong number of arguments or invalid property assignment"},
    Words<RuntimeError>{RuntimeError::typeNotSupported,
                        "Variable uses an Automation type not supported in Visual Basic"},
};

constexpr std::array adoWords{
    Words<AdoError>{AdoError::invalidArgument,
                    "Arguments are of the wrong type, are out of acceptable range, or are in conflict with one "
                    "another."},
    Words<AdoError>{AdoError::noCurrentRecord,
                    "Either BOF or EOF is True, or the current record has been deleted. Requested operation requires "
                    "a current record."},
    Words<AdoError>{AdoError::illegalOperation, "Operation is not allowed in this context."},
    Words<AdoError>{AdoError::featureNotAvailable,
                    "Current Recordset does not support updating. This may be a limitation of the provider, or of the "
                    "selected locktype."},
    Words<AdoError>{AdoError::itemNotFound,
                    "Item cannot be found in the collection corresponding to the requested name or ordinal."},
    Words<AdoError>{AdoError::objectNotValid, "Object is no longer valid."},
    Words<AdoError>{AdoError::dataConversion, "Application uses a value of the wrong type for the current operation."},
    Words<AdoError>{AdoError::objectClosed, "Operation is not allowed when the object is closed."},
    Words<AdoError>{AdoError::objectOpen, "Operation is not allowed when the object is open."},
    Words<AdoError>{AdoError::badParameter,
                    "Parameter object is improperly defined. Inconsistent or incomplete information was provided."},
    Words<AdoError>{AdoError::invalidConnection,
                    "The connection cannot be used to perform this operation. It is either closed or invalid in this "
                    "context."},
};

template <typename Table, typename Number>
std::string_view find(const Table& table, Number number) {
  for (const auto& row : table) {
    if (row.number == number) return row.text;
  }
  return {};
}

}  // namespace

std::string_view errorText(RuntimeError error) {
  return find(runtimeWords, error);
}
std::string_view errorText(AdoError error) {
  return find(adoWords, error);
}

AutomationError::AutomationError(std::uint32_t number, std::string source, std::string description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {}

AutomationError::AutomationError(RuntimeError error, std::string source)
    : AutomationError(errorNumber(error), std::move(source), std::string(errorText(error))) {}

AutomationError::AutomationError(AdoError error, std::string source)
    : AutomationError(errorNumber(error), std::move(source), std::string(errorText(error))) {}

AutomationError& AutomationError::withHelp(std::string file, std::uint32_t context) {
  helpFile_ = std::move(file);
  helpContext_ = context;
  return *this;
}

AutomationError& AutomationError::withDatabase(DatabaseDetail detail) {
  database_ = std::move(detail);
  return *this;
}

void raise(RuntimeError error, std::string_view source) {
  throw AutomationError(error, std::string(source));
}

}  // namespace tolvane
