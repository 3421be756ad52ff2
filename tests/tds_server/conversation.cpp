#include "tds_server/conversation.h"

#include <chrono>
#include <utility>

#include "tds_server/batch_text.h"
#include "tds_server/catalogue_procedures.h"

namespace tolvane::tds {
namespace {

constexpr std::chrono::milliseconds busyTimeout{10'000};

// Where the log-in's message tells the places of its texts.
constexpr std::size_t userPlace = 40;
constexpr std::size_t databasePlace = 68;

constexpr std::string_view beforeDateTime =
    "The conversion of a datetime2 data type to a datetime data type resulted in an out-of-range value.";

std::span<const std::uint8_t> partAt(const Buffer& message, std::size_t place) {
  WireReader header{std::span(message).subspan(place)};
  const auto offset = header.number<std::uint16_t>();
  const auto units = header.number<std::uint16_t>();
  WireReader reader(message);
  (void)reader.take(offset);
  return reader.take(units * 2U);
}

// Nibbles change places and every byte is combined with A5.
std::string passwordIn(const Buffer& message) {
  const auto hidden = partAt(message, userPlace + 4);
  Buffer plain;
  for (const auto byte : hidden) {
    const auto value = static_cast<std::uint8_t>(byte ^ 0xA5U);
    plain.push_back(static_cast<std::uint8_t>(value << 4U | value >> 4U));
  }
  return WireReader::textOf(plain);
}

// Version and "no encryption"; offsets count from the beginning.
Buffer preLoginAnswer() {
  constexpr std::uint8_t notSupported = 2;
  return {0, 0, 11, 0, 6, 1, 0, 17, 0, 1, 0xFF, 12, 0, 0x10, 0, 0, 0, notSupported};
}

const char* nameOf(TransactionRequest request) {
  return request == TransactionRequest::begin ? "BEGIN" : request == TransactionRequest::commit ? "COMMIT" : "ROLLBACK";
}

}  // namespace

void Conversation::run() {
  try {
    if (!logIn()) return leave();
    try {
      while (const auto message = stream_.read()) {
        if (!serve(*message)) break;
      }
    } catch (const std::exception&) {
      // A client that breaks the protocol loses its connection.
    }
  } catch (const std::exception&) {
    stream_.drop();
  }
  leave();
}

// Lets go of the database before the server hears of it.
void Conversation::leave() {
  runner_.reset();
  if (entry_) state_.leave(*entry_);
  entry_.reset();
}

void Conversation::refuse(const Notice& notice) {
  tokens_.error(notice);
  tokens_.done(Token::done, doneError);
  stream_.finish();
}

bool Conversation::logIn() {
  auto message = stream_.read();
  if (message && message->kind == PacketKind::preLogin) {
    stream_.write(preLoginAnswer());
    stream_.finish();
    message = stream_.read();
  }
  if (!message || message->kind != PacketKind::login) return false;
  const auto user = WireReader::textOf(partAt(message->content, userPlace));
  database_ = WireReader::textOf(partAt(message->content, databasePlace));
  if (database_.empty()) database_ = "master";
  if (user != login_.user || passwordIn(message->content) != login_.password) {
    refuse({18456, 14, "Login failed for user '" + user + "'."});
    return false;
  }
  if (!state_.hasDatabase(database_)) {
    tokens_.error({4060, 11, "Cannot open database \"" + database_ + "\" requested by the login. The login failed."});
    refuse({18456, 14, "Login failed for user '" + user + "'."});
    return false;
  }
  entry_ = state_.enter(database_, [this] { end(); });
  runner_.emplace(state_, stream_, std::make_shared<embedded::Session>(state_.fileOf(database_), busyTimeout));
  // Nothing here has to outlive a power cut.
  runner_->session().runOwn("PRAGMA synchronous=OFF");
  tokens_.environment(Environment::database, database_, "master");
  tokens_.info({5701, 0, "Changed database context to '" + database_ + "'."});
  tokens_.collation();
  tokens_.loginAcknowledged();
  tokens_.environment(Environment::sizeOfPackets, std::to_string(packetSize), std::to_string(packetSize));
  tokens_.done(Token::done, 0);
  return stream_.finish();
}

bool Conversation::serve(const Message& message) {
  WireReader reader(message.content);
  switch (message.kind) {
    case PacketKind::batch:
      skipHeaders(reader);
      return serveBatch(reader);
    case PacketKind::remoteCall:
      skipHeaders(reader);
      return serveCall(reader);
    case PacketKind::transaction:
      skipHeaders(reader);
      return serveTransaction(reader);
    case PacketKind::attention:
      tokens_.done(Token::done, doneAttention);
      return stream_.finish();
    default:
      return false;
  }
}

bool Conversation::conclude(Outcome outcome, Answer& answer) {
  if (outcome == Outcome::dropped) {
    stream_.drop();
    return false;
  }
  if (outcome == Outcome::attention) {
    (void)stream_.read();
    tokens_.done(Token::done, doneAttention);
    return stream_.finish();
  }
  runner_->announceTransaction(tokens_);
  answer.finish();
  return stream_.finish();
}

bool Conversation::serveBatch(WireReader& reader) {
  std::string text;
  {
    Buffer units;
    while (!reader.atEnd()) putBytes(units, reader.take(2));
    text = WireReader::textOf(units);
  }
  state_.record(text);
  const auto imitation = state_.imitation();
  Answer answer(tokens_, imitation, Answer::Of::batch);
  return conclude(runner_->run(text, {}, answer), answer);
}

bool Conversation::serveCall(WireReader& reader) {
  const auto call = readCall(reader);
  const auto imitation = state_.imitation();
  Answer answer(tokens_, imitation, Answer::Of::procedure);
  return conclude(runCall(call, answer), answer);
}

Outcome Conversation::runText(const std::string& text, const RemoteCall& call, std::size_t firstValue, Answer& answer) {
  state_.record(text);
  std::vector<embedded::PlaceholderValue> values;
  for (auto i = firstValue; i < call.parameters.size(); ++i) {
    if (call.parameters[i].isBeforeDateTime()) {
      answer.failed(Notice{242, 16, std::string(beforeDateTime)});
      return Outcome::answered;
    }
    values.push_back(call.parameters[i].value);
  }
  return runner_->run(withMarks(text), std::move(values), answer);
}

Outcome Conversation::runCall(const RemoteCall& call, Answer& answer) {
  const auto& parameters = call.parameters;
  const auto has = [&](std::size_t count) {
    if (parameters.size() < count) throw ProtocolError(call.procedure + " with too few parameters");
  };
  if (call.procedure == "sp_executesql") {
    has(1);
    return runText(parameters[0].text(), call, 2, answer);
  }
  if (call.procedure == "sp_prepare" || call.procedure == "sp_prepexec") {
    has(3);
    prepared_[++lastPrepared_] = parameters[2].text();
    answer.returned(parameters[0].name, static_cast<std::int32_t>(lastPrepared_));
    return call.procedure == "sp_prepare" ? Outcome::answered : runText(parameters[2].text(), call, 3, answer);
  }
  if (call.procedure == "sp_execute") {
    has(1);
    const auto text = prepared_.find(parameters[0].integer());
    if (text != prepared_.end()) return runText(text->second, call, 1, answer);
    answer.failed(Notice{8179, 16, "Could not find prepared statement."});
    return Outcome::answered;
  }
  if (call.procedure == "sp_unprepare") {
    has(1);
    prepared_.erase(parameters[0].integer());
    return Outcome::answered;
  }
  state_.record(call.procedure);
  if (!answerCatalogue(call, runner_->session(), state_.imitation(), answer)) {
    answer.failed(Notice{2812, 16, "Could not find stored procedure '" + call.procedure + "'."});
  }
  return Outcome::answered;
}

bool Conversation::serveTransaction(WireReader& reader) {
  const auto imitation = state_.imitation();
  Answer answer(tokens_, imitation, Answer::Of::batch);
  const auto request = reader.number<TransactionRequest>();
  bool beginsNext = false;
  if (request != TransactionRequest::begin && !reader.atEnd()) {
    (void)reader.take(reader.number<std::uint8_t>());
    beginsNext = !reader.atEnd() && (reader.number<std::uint8_t>() & 1U) != 0;
  }
  const auto name = nameOf(request);
  state_.record(name);
  if (state_.takeFault(name)) return conclude(Outcome::dropped, answer);
  auto& session = runner_->session();
  try {
    if (request == TransactionRequest::begin) session.begin();
    if (request == TransactionRequest::commit) session.commit();
    if (request == TransactionRequest::rollback) session.rollback();
    runner_->announceTransaction(tokens_);
    if (beginsNext) session.begin();
    runner_->announceTransaction(tokens_);
    answer.ended();
  } catch (const tsql::SqlError& error) {
    answer.failed(session.failure(error, "transaction"));
  } catch (const AutomationError& error) {
    answer.failed(error);
  }
  answer.finish();
  return stream_.finish();
}

}  // namespace tolvane::tds
