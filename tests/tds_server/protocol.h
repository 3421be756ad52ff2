// The numbers of the TDS protocol, versions 7.2 to 7.4, as far as the server of the tests speaks it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tolvane::tds {

enum class PacketKind : std::uint8_t {
  batch = 0x01,
  remoteCall = 0x03,
  answer = 0x04,
  attention = 0x06,
  transaction = 0x0E,
  login = 0x10,
  preLogin = 0x12,
};

inline constexpr std::size_t packetHeaderSize = 8;
inline constexpr std::size_t packetSize = 4096;
inline constexpr std::uint8_t lastPacket = 0x01;

enum class Token : std::uint8_t {
  returnStatus = 0x79,
  columns = 0x81,
  error = 0xAA,
  info = 0xAB,
  returnValue = 0xAC,
  loginAcknowledged = 0xAD,
  row = 0xD1,
  environmentChange = 0xE3,
  done = 0xFD,
  doneProcedure = 0xFE,
  doneInProcedure = 0xFF,
};

/// Bits of a done token's status.
inline constexpr std::uint16_t doneMore = 0x01;
inline constexpr std::uint16_t doneError = 0x02;
inline constexpr std::uint16_t doneCount = 0x10;
inline constexpr std::uint16_t doneAttention = 0x20;

enum class Environment : std::uint8_t {
  database = 1,
  sizeOfPackets = 4,
  collation = 7,
  beginTransaction = 8,
  commitTransaction = 9,
  rollbackTransaction = 10,
};

/// What a transaction manager's request asks for.
enum class TransactionRequest : std::uint16_t { begin = 5, commit = 7, rollback = 8 };

/// Types as columns and parameters name them on the wire.
enum class WireType : std::uint8_t {
  image = 0x22,
  text = 0x23,
  uniqueIdentifier = 0x24,
  integer = 0x26,
  date = 0x28,
  dateTime2 = 0x2A,
  sqlVariant = 0x62,
  nText = 0x63,
  bit = 0x68,
  decimal = 0x6A,
  numeric = 0x6C,
  real = 0x6D,
  money = 0x6E,
  dateTime = 0x6F,
  varBinary = 0xA5,
  varChar = 0xA7,
  binary = 0xAD,
  character = 0xAF,
  nVarChar = 0xE7,
  nChar = 0xEF,
};

inline constexpr std::uint16_t maxLengthMark = 0xFFFF;
inline constexpr std::uint64_t partsNull = 0xFFFFFFFFFFFFFFFF;
inline constexpr std::uint32_t longNull = 0xFFFFFFFF;

/// Bits of a column's flags.
inline constexpr std::uint16_t columnNullable = 0x0001;
inline constexpr std::uint16_t columnUpdatable = 0x0008;
inline constexpr std::uint16_t columnIdentity = 0x0010;

/// Remote calls that have a number instead of a name.
enum class ProcedureNumber : std::uint16_t {
  cursorOpen = 2,
  cursorClose = 9,
  executeSql = 10,
  prepare = 11,
  execute = 12,
  prepareAndExecute = 13,
  unprepare = 15,
};

}  // namespace tolvane::tds
