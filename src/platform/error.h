// The one exception that leaves a service, and the numbers that the platform itself raises.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace tolvane {

/// Run-time errors of automation programs. The values are the small numbers that such programs show; on the way to a
/// caller they are 800A0000h + number.
enum class RuntimeError : std::uint16_t {
  invalidArgument = 5,
  overflow = 6,
  outOfMemory = 7,
  subscriptOutOfRange = 9,
  typeMismatch = 13,
  fileNotFound = 53,
  deviceInput = 57,
  diskFull = 61,
  permissionDenied = 70,
  fileAccess = 75,
  pathNotFound = 76,
  objectNotSet = 91,
  invalidUseOfNull = 94,
  objectRequired = 424,
  cannotCreateObject = 429,
  memberNotFound = 438,
  namedArgumentNotFound = 448,
  argumentNotOptional = 449,
  wrongArgumentCount = 450,
  typeNotSupported = 458,
};

/// Errors that ADO itself raises (the database's own errors carry the numbers of its OLE DB provider).
enum class AdoError : std::uint16_t {
  invalidArgument = 3001,
  noCurrentRecord = 3021,
  illegalOperation = 3219,
  featureNotAvailable = 3251,
  itemNotFound = 3265,
  objectNotValid = 3420,
  dataConversion = 3421,
  objectClosed = 3704,
  objectOpen = 3705,
  badParameter = 3708,
  invalidConnection = 3709,
};

/// OLE DB numbers under which errors of a database reach automation clients.
namespace oledb {
inline constexpr std::uint32_t cantConvertValue = 0x80040E07;
inline constexpr std::uint32_t permissionDenied = 0x80040E09;
inline constexpr std::uint32_t noCommand = 0x80040E0C;
inline constexpr std::uint32_t parameterNotOptional = 0x80040E10;
inline constexpr std::uint32_t errorsInCommand = 0x80040E14;
inline constexpr std::uint32_t errorsOccurred = 0x80040E21;
inline constexpr std::uint32_t integrityViolation = 0x80040E2F;
inline constexpr std::uint32_t abortLimitReached = 0x80040E31;
inline constexpr std::uint32_t noTable = 0x80040E37;
inline constexpr std::uint32_t concurrencyViolation = 0x80040E38;
inline constexpr std::uint32_t authenticationFailed = 0x80040E4D;
inline constexpr std::uint32_t dataOverflow = 0x80040E57;
inline constexpr std::uint32_t unspecified = 0x80004005;
}  // namespace oledb

/// The 32-bit number under which a small error number travels to automation clients.
[[nodiscard]] constexpr std::uint32_t errorNumber(RuntimeError error) {
  return 0x800A0000U + static_cast<std::uint16_t>(error);
}
[[nodiscard]] constexpr std::uint32_t errorNumber(AdoError error) {
  return 0x800A0000U + static_cast<std::uint16_t>(error);
}

/// The platform's own words for a number.
[[nodiscard]] std::string_view errorText(RuntimeError error);
[[nodiscard]] std::string_view errorText(AdoError error);

/// What a database can add to an error. For traces and logs; never part of the description.
struct DatabaseDetail {
  std::string sql;                ///< the text that was sent
  std::string sqlState;           ///< five characters, or empty
  std::int32_t nativeNumber = 0;  ///< the server's own number, or 0
};

/// An error as automation clients see it: number, source, description, help file and help context. It passes through
/// the services unchanged; nothing is ever added to the description on the way.
class AutomationError : public std::exception {
 public:
  AutomationError(std::uint32_t number, std::string source, std::string description);
  AutomationError(RuntimeError error, std::string source);
  AutomationError(AdoError error, std::string source);

  [[nodiscard]] std::uint32_t number() const noexcept { return number_; }
  [[nodiscard]] const std::string& source() const noexcept { return source_; }
  [[nodiscard]] const std::string& description() const noexcept { return description_; }
  [[nodiscard]] const std::string& helpFile() const noexcept { return helpFile_; }
  [[nodiscard]] std::uint32_t helpContext() const noexcept { return helpContext_; }
  [[nodiscard]] const DatabaseDetail& database() const noexcept { return database_; }

  /// The description, for logs that know std::exception only.
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  AutomationError& withHelp(std::string file, std::uint32_t context);
  AutomationError& withDatabase(DatabaseDetail detail);

 private:
  std::uint32_t number_;
  std::string source_;
  std::string description_;
  std::string helpFile_;
  std::uint32_t helpContext_ = 0;
  DatabaseDetail database_;
};

/// The Source of errors that the component raises as a whole, and the first word of most of its other Sources.
inline constexpr std::string_view applicationName = "Tolvane";

/// Raises one of the platform's run-time errors with its own words.
[[noreturn]] void raise(RuntimeError error, std::string_view source = applicationName);

}  // namespace tolvane
