#include "tds_server/token_writer.h"

namespace tolvane::tds {
namespace {

constexpr std::string_view productName = "Microsoft SQL Server";
constexpr std::uint32_t version74 = 0x04000074;
constexpr std::uint8_t transactSql = 1;

}  // namespace

void TokenWriter::withLength(Token token, const Buffer& content) {
  Buffer whole;
  put(whole, token);
  put(whole, static_cast<std::uint16_t>(content.size()));
  putBytes(whole, content);
  stream_.write(whole);
}

void TokenWriter::loginAcknowledged() {
  Buffer content;
  put(content, transactSql);
  put(content, version74);
  putText<std::uint8_t>(content, productName);
  for (const std::uint8_t part : {12, 0, 0x10, 0}) content.push_back(part);
  withLength(Token::loginAcknowledged, content);
}

void TokenWriter::environment(Environment kind, std::string_view now, std::string_view before) {
  Buffer content;
  put(content, kind);
  putText<std::uint8_t>(content, now);
  putText<std::uint8_t>(content, before);
  withLength(Token::environmentChange, content);
}

void TokenWriter::collation() {
  Buffer content;
  put(content, Environment::collation);
  put(content, static_cast<std::uint8_t>(sizeof collationBytes));
  putBytes(content, collationBytes);
  put(content, std::uint8_t{0});
  withLength(Token::environmentChange, content);
}

void TokenWriter::transaction(Environment kind, std::uint64_t number) {
  Buffer content;
  put(content, kind);
  const bool begins = kind == Environment::beginTransaction;
  const auto descriptor = [&](bool there) {
    put(content, static_cast<std::uint8_t>(there ? sizeof number : 0));
    if (there) put(content, number);
  };
  descriptor(begins);
  descriptor(!begins);
  withLength(Token::environmentChange, content);
}

void TokenWriter::notice_(Token token, const Notice& notice) {
  Buffer content;
  put(content, notice.number);
  put(content, std::uint8_t{1});
  put(content, notice.severity);
  putText<std::uint16_t>(content, notice.words);
  putText<std::uint8_t>(content, "testserver");
  putText<std::uint8_t>(content, "");
  put(content, std::uint32_t{1});
  withLength(token, content);
}

void TokenWriter::returnStatus(std::int32_t status) {
  Buffer whole;
  put(whole, Token::returnStatus);
  put(whole, status);
  stream_.write(whole);
}

void TokenWriter::returnValue(std::string_view name, std::int32_t value) {
  Buffer whole;
  put(whole, Token::returnValue);
  put(whole, std::uint16_t{0});
  putText<std::uint8_t>(whole, name);
  put(whole, std::uint8_t{1});
  put(whole, std::uint32_t{0});
  put(whole, std::uint16_t{0});
  put(whole, WireType::integer);
  put(whole, static_cast<std::uint8_t>(sizeof value));
  put(whole, static_cast<std::uint8_t>(sizeof value));
  put(whole, value);
  stream_.write(whole);
}

void TokenWriter::done(Token kind, std::uint16_t status, std::uint64_t rows) {
  Buffer whole;
  put(whole, kind);
  put(whole, status);
  put(whole, std::uint16_t{0});
  put(whole, rows);
  stream_.write(whole);
}

}  // namespace tolvane::tds
