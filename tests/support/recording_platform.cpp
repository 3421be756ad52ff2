#include "support/recording_platform.h"

#include <algorithm>
#include <utility>

#include "frame/method_table.h"
#include "frame/sql_text.h"
#include "platform/calendar.h"
#include "platform/conversions.h"
#include "standalone/objects.h"

namespace tolvane::test {
namespace {

std::string shown(const Value& value) {
  if (value.isEmpty()) return "Empty";
  if (value.isNull()) return "Null";
  if (value.isMissing()) return "Missing";
  if (const auto* bytes = value.get<Bytes>()) return sql("bytes(", bytes->size(), ")");
  if (const auto* text = value.get<std::string>()) return sql("'", *text, "'");
  return toText(value);
}

class RecordingRecordset : public Recordset {
 public:
  explicit RecordingRecordset(RecordingPlatform& platform) : platform_(platform) {}

  void fill(Rows rows) {
    for (const std::string& column : rows.columns) {
      fields_.push_back({column, DataType::variant, 0, true});
    }
    rows_ = std::move(rows.rows);
    visible_.resize(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i) visible_[i] = i;
    open_ = true;
  }

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t) override {
    platform_.record(
        sql("Open ", static_cast<std::int32_t>(cursorType), " ", static_cast<std::int32_t>(lockType), " ", source));
    fields_.clear();
    position_ = 0;
    fill(platform_.answerTo(source));
  }
  void close() override {
    platform_.record("Close");
    open_ = false;
  }
  ObjectState state() const override { return open_ ? ObjectState::open : ObjectState::closed; }
  void setCursorLocation(CursorLocation location) override {
    platform_.record(sql("CursorLocation ", static_cast<std::int32_t>(location)));
  }
  bool bof() override { return visible_.empty(); }
  bool eof() override { return position_ >= visible_.size(); }
  std::int32_t recordCount() override { return static_cast<std::int32_t>(visible_.size()); }
  void moveFirst() override { position_ = 0; }
  void moveNext() override { ++position_; }
  void moveLast() override { position_ = visible_.empty() ? 0 : visible_.size() - 1; }
  const std::vector<FieldInfo>& fields() override { return fields_; }
  Value value(std::size_t index) override {
    if (eof()) throw AutomationError(AdoError::noCurrentRecord, "ADODB.Field");
    return rows_[visible_[position_]][index];
  }
  Value value(std::string_view name) override {
    const auto found = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const FieldInfo& field) { return sameName(field.name, name); });
    if (found == fields_.end()) throw AutomationError(AdoError::itemNotFound, "ADODB.Recordset");
    return value(static_cast<std::size_t>(found - fields_.begin()));
  }
  void addNew() override {
    platform_.record("AddNew");
    visible_.push_back(rows_.size());
    rows_.emplace_back(fields_.size());
    position_ = visible_.size() - 1;
  }
  void setValue(std::string_view name, const Value& value) override {
    platform_.record(sql("Set ", name, "=", shown(value)));
  }
  void appendChunk(std::string_view name, const Value& chunk) override {
    platform_.record(sql("AppendChunk ", name, " ", shown(chunk)));
  }
  void update() override { platform_.record("Update"); }
  void cancelUpdate() override { platform_.record("CancelUpdate"); }
  EditMode editMode() const override { return EditMode::none; }
  /// Knows "Column = 'text'" alone.
  void setFilter(const std::string& criteria) override {
    platform_.record("Filter " + criteria);
    const std::size_t start = criteria.find("= '") + 3;
    const std::string name = criteria.substr(0, criteria.find(' '));
    const std::string text = criteria.substr(start, criteria.size() - start - 1);
    std::vector<std::size_t> matching;
    for (std::size_t row = 0; row < rows_.size(); ++row) {
      visible_.assign(1, row);
      position_ = 0;
      if (doubled(toText(value(name))) == text) matching.push_back(row);
    }
    visible_ = std::move(matching);
    position_ = 0;
  }
  void detach() override { platform_.record("Detach"); }
  std::shared_ptr<Recordset> nextRecordset() override { return nullptr; }

 private:
  RecordingPlatform& platform_;
  std::vector<FieldInfo> fields_;
  std::vector<std::vector<Value>> rows_;
  std::vector<std::size_t> visible_;
  std::size_t position_ = 0;
  bool open_ = false;
};

class RecordingCommand : public Command {
 public:
  explicit RecordingCommand(RecordingPlatform& platform) : platform_(platform) {}

  void setCommandText(const std::string& text) override { text_ = text; }
  void setCommandType(CommandType type) override { type_ = type; }
  void setCommandTimeout(std::int32_t seconds) override { timeout_ = seconds; }
  void appendParameter(const Parameter& parameter) override {
    parameters_ +=
        sql(" [", static_cast<std::int32_t>(parameter.type), " ", parameter.size, " ", shown(parameter.value), "]");
  }
  std::shared_ptr<Recordset> execute() override {
    platform_.record(sql("Command ", static_cast<std::int32_t>(type_), " ", timeout_, " ", text_, parameters_));
    auto rows = std::make_shared<RecordingRecordset>(platform_);
    rows->fill(platform_.answerTo(text_));
    return rows;
  }

 private:
  RecordingPlatform& platform_;
  std::string text_;
  std::string parameters_;
  CommandType type_ = CommandType::unknown;
  std::int32_t timeout_ = 30;
};

class RecordingConnection : public Connection {
 public:
  explicit RecordingConnection(RecordingPlatform& platform) : platform_(platform) {}

  std::shared_ptr<Recordset> execute(const std::string& text, std::int32_t) override {
    platform_.record("Execute " + text);
    auto rows = std::make_shared<RecordingRecordset>(platform_);
    rows->fill(platform_.answerTo(text));
    return rows;
  }
  std::shared_ptr<Recordset> newRecordset() override { return std::make_shared<RecordingRecordset>(platform_); }
  std::shared_ptr<Command> newCommand() override { return std::make_shared<RecordingCommand>(platform_); }

 private:
  RecordingPlatform& platform_;
};

class RecordingLogin : public Login {
 public:
  explicit RecordingLogin(RecordingPlatform& platform) : platform_(platform) {}
  std::int32_t currentUserID() override {
    platform_.record("CurrentUserID");
    return platform_.userID;
  }
  std::string userKey() override {
    platform_.record("UserKey");
    return "key";
  }
  std::string languageCode() override {
    platform_.record("LanguageCode");
    return platform_.language;
  }

 private:
  RecordingPlatform& platform_;
};

class RecordingContext : public Context {
 public:
  explicit RecordingContext(RecordingPlatform& platform) : platform_(platform) {}
  void openDataSource(const std::string& dsn) override { platform_.record("OpenDataSource " + dsn); }
  std::shared_ptr<Login> getLoginInfo() override {
    platform_.record("GetLoginInfo");
    return std::make_shared<RecordingLogin>(platform_);
  }
  std::shared_ptr<Connection> getConnection() override {
    platform_.record("GetConnection");
    return std::make_shared<RecordingConnection>(platform_);
  }
  void beginWork() override { platform_.record("BeginWork"); }
  void completeWork() override { platform_.record("CompleteWork"); }
  std::string callText() override { return "call"; }

 private:
  RecordingPlatform& platform_;
};

class RecordingApplication : public GlobalApplication {
 public:
  explicit RecordingApplication(RecordingPlatform& platform) : platform_(platform) {}
  std::shared_ptr<Context> getContext() override {
    platform_.record("GetContext");
    return std::make_shared<RecordingContext>(platform_);
  }

 private:
  RecordingPlatform& platform_;
};

class RecordingSecurity : public Security {
 public:
  explicit RecordingSecurity(RecordingPlatform& platform) : platform_(platform) {}
  std::int16_t getCurrentUserID(const std::string&) override {
    platform_.record("Security.GetCurrentUserID");
    return toInt16(platform_.userID);
  }
  bool isAdministrator(const std::string&) override {
    platform_.record("IsAdministrator");
    return platform_.administrator;
  }
  bool accessCheck(const std::string&, std::int32_t objectType, std::int32_t objectID, std::int32_t accessMask,
                   const std::string& source) override {
    platform_.record(sql("AccessCheck ", objectType, " ", objectID, " ", accessMask, " ", source));
    return platform_.access;
  }

 private:
  RecordingPlatform& platform_;
};

class RecordingLoader : public ResourceLoader {
 public:
  explicit RecordingLoader(RecordingPlatform& platform) : platform_(platform) {}
  void setResFileBaseName(const std::string& name) override { platform_.record("ResFileBaseName " + name); }
  void setLanguageID(const std::string& language) override {
    platform_.record("LanguageID " + language);
    language_ = language;
  }
  std::string loadString(const std::string& text) override {
    platform_.record("LoadString " + text);
    const auto found = platform_.translations.find(text);
    return found == platform_.translations.end() ? language_ + ":" + text : found->second;
  }
  void unload() override { platform_.record("Unload"); }

 private:
  RecordingPlatform& platform_;
  std::string language_;
};

std::string shownEntries(const ItemList& entries) {
  std::string text = "[";
  for (std::int32_t i = 1; i <= entries.count(); ++i) {
    const auto bag = entries.item(i).objectAs<PropertyBag>();
    text += sql(i == 1 ? "" : "; ", toText(bag->item("FSubFuncID")), " ", toText(bag->item("FFuncName")));
  }
  return text + "]";
}

class RecordingDataFlow : public DataFlow {
 public:
  explicit RecordingDataFlow(RecordingPlatform& platform) : platform_(platform) {}
  void refreshSubFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries, bool,
                      bool) override {
    platform_.record(sql("RefreshSubFunc ", callText, " ", system, " ", shownEntries(*entries)));
  }
  void refreshDetailFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                         bool, bool) override {
    platform_.record(sql("RefreshDetailFunc ", callText, " ", system, " ", shownEntries(*entries)));
  }

 private:
  RecordingPlatform& platform_;
};

/// Files in memory.
class MemoryFiles : public Files {
 public:
  explicit MemoryFiles(RecordingPlatform& platform) : platform_(platform) {}
  bool exists(const std::string& name) override { return contents_.contains(name); }
  std::unique_ptr<BinaryFile> openBinary(const std::string& name) override {
    platform_.record("OpenFile " + name);
    return std::make_unique<File>(contents_[name]);
  }
  void remove(const std::string& name) override {
    platform_.record("RemoveFile " + name);
    contents_.erase(name);
  }

 private:
  class File : public BinaryFile {
   public:
    explicit File(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}
    void put(std::uint64_t position, std::span<const std::uint8_t> bytes) override {
      bytes_.resize(std::max<std::size_t>(bytes_.size(), position - 1 + bytes.size()));
      std::copy(bytes.begin(), bytes.end(), bytes_.begin() + static_cast<std::ptrdiff_t>(position - 1));
    }
    std::size_t get(std::uint64_t position, std::span<std::uint8_t> bytes) override {
      const std::size_t count = std::min<std::size_t>(bytes.size(), bytes_.size() - (position - 1));
      std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(position - 1), count, bytes.begin());
      return count;
    }
    std::uint64_t length() override { return bytes_.size(); }
    void close() override {}

   private:
    std::vector<std::uint8_t>& bytes_;
  };
  RecordingPlatform& platform_;
  std::map<std::string, std::vector<std::uint8_t>> contents_;
};

/// ASCII alone.
class PlainCodePage : public AnsiCodePage {
 public:
  std::string fromUtf8(const std::string& text) override { return text; }
  std::string toUtf8(std::span<const std::uint8_t> bytes) override { return {bytes.begin(), bytes.end()}; }
};

}  // namespace

RecordingPlatform::RecordingPlatform()
    : files_(std::make_unique<MemoryFiles>(*this)), ansi_(std::make_unique<PlainCodePage>()) {}
RecordingPlatform::~RecordingPlatform() = default;

void RecordingPlatform::answer(const std::string& start, Rows rows) {
  answers_.emplace_back(start, std::move(rows));
}
void RecordingPlatform::fail(const std::string& start, const AutomationError& error) {
  failures_.push_back({start, error});
}

void RecordingPlatform::record(std::string line) {
  log.push_back(line);
  const auto failure = std::find_if(failures_.begin(), failures_.end(),
                                    [&](const Failure& candidate) { return line.starts_with(candidate.start); });
  if (failure == failures_.end()) return;
  const AutomationError error = failure->error;
  failures_.erase(failure);
  throw error;
}

Rows RecordingPlatform::answerTo(const std::string& statement) {
  const auto found = std::find_if(answers_.begin(), answers_.end(),
                                  [&](const auto& candidate) { return statement.starts_with(candidate.first); });
  if (found == answers_.end()) return {};
  Rows rows = std::move(found->second);
  answers_.erase(found);
  return rows;
}

std::vector<std::string> RecordingPlatform::work() const {
  const auto last = std::find(log.rbegin(), log.rend(), "GetConnection");
  return {last.base(), log.end()};
}

std::vector<std::string> RecordingPlatform::statements() const {
  std::vector<std::string> result;
  for (const std::string& line : log) {
    if (line.starts_with("Execute ") || line.starts_with("Open ") || line.starts_with("Command "))
      result.push_back(line);
  }
  return result;
}

std::shared_ptr<GlobalApplication> RecordingPlatform::application() {
  return std::make_shared<RecordingApplication>(*this);
}
std::shared_ptr<Security> RecordingPlatform::newSecurity() {
  record("CreateSecurity");
  return std::make_shared<RecordingSecurity>(*this);
}
std::shared_ptr<ResourceLoader> RecordingPlatform::newResourceLoader() {
  record("CreateLoader");
  return std::make_shared<RecordingLoader>(*this);
}
std::shared_ptr<DataFlow> RecordingPlatform::newDataFlow(const std::shared_ptr<Context>&) {
  return std::make_shared<RecordingDataFlow>(*this);
}
std::shared_ptr<PropertyBag> RecordingPlatform::newPropertyBag() {
  return std::make_shared<standalone::Dictionary>();
}
std::shared_ptr<ItemList> RecordingPlatform::newItemList() {
  return std::make_shared<standalone::List>();
}
Files& RecordingPlatform::files() {
  return *files_;
}
AnsiCodePage& RecordingPlatform::ansi() {
  return *ansi_;
}
Date RecordingPlatform::today() {
  return dateOf(2012, 3, 15);
}

}  // namespace tolvane::test
