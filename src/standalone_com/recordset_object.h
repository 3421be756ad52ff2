// ADO's record set on the standalone suite.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "automation/dispatch_object.h"
#include "standalone_com/connection_object.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {

/// `Open([Source][, ActiveConnection][, CursorType][, LockType][, Options])`, `Close`, `State`, `BOF`, `EOF`,
/// `RecordCount`, `MoveFirst`, `MoveNext`, `MoveLast`, `AddNew` and `Update([Fields, Values])`, `CancelUpdate`,
/// `EditMode`, `Filter`, `Fields` (the default member; with an argument the field, whose value can be set),
/// `ActiveConnection`, `CursorLocation`, `CursorType`, `LockType`, `Source`, `NextRecordset`, `GetRows([Rows])`.
/// A set that was detached stays so: another connection is taken when it is opened again only.
class RecordsetObject : public automation::DispatchObject {
 public:
  /// A new, closed set.
  explicit RecordsetObject(std::shared_ptr<SuiteThread> suite) : suite_(std::move(suite)) {}
  /// The result of a statement on `connection`.
  RecordsetObject(std::shared_ptr<SuiteThread> suite, automation::ComPtr<ConnectionObject> connection,
                  std::shared_ptr<Recordset> rows)
      : suite_(std::move(suite)), connection_(std::move(connection)), rows_(std::move(rows)) {}

  /// The rows; error 3704 when it is closed.
  [[nodiscard]] Recordset& rows() const;
  /// Another one after each Close: tells fields that outlived their columns.
  [[nodiscard]] unsigned opening() const { return opening_; }
  /// Another one whenever the set may have come to another row: ends what GetChunk had begun.
  [[nodiscard]] unsigned stop() const { return stop_; }
  /// The position of a field, from a name or a position; error 3265 when there is none.
  [[nodiscard]] std::size_t fieldIndex(const Value& nameOrPosition) const;
  void setField(std::size_t index, const Value& value) const;

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  void open(const automation::MemberCall& call);
  void close();
  void openSource(const Value& source, std::int32_t options);
  [[nodiscard]] automation::Variant fields(const automation::MemberCall& call);
  [[nodiscard]] automation::Variant activeConnection(const automation::MemberCall& call);
  void setActiveConnection(automation::ComPtr<ConnectionObject> connection);
  [[nodiscard]] automation::Variant filter(const automation::MemberCall& call);
  [[nodiscard]] automation::Variant source(const automation::MemberCall& call);
  void setFields(const automation::MemberCall& call) const;
  [[nodiscard]] automation::Variant nextRecordset() const;
  [[nodiscard]] automation::Variant takeRows(const automation::MemberCall& call) const;
  [[nodiscard]] bool isOpen() const { return rows_ && rows_->state() == ObjectState::open; }
  [[nodiscard]] CursorLocation cursorLocation() const;
  [[nodiscard]] CursorType cursorType() const;
  void requireClosed() const;

  std::shared_ptr<SuiteThread> suite_;
  automation::ComPtr<ConnectionObject> connection_;
  std::shared_ptr<Recordset> rows_;  // none while closed
  std::string source_;
  std::string filter_;
  std::optional<CursorLocation> cursorLocation_;  // the connection's while it is not set
  CursorType cursorType_ = CursorType::forwardOnly;
  LockType lockType_ = LockType::readOnly;
  unsigned opening_ = 0;
  unsigned stop_ = 0;
};

}  // namespace tolvane::standalone_com
