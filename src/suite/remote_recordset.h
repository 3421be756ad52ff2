// ADO's record set.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/late_bound.h"
#include "automation/object_border.h"
#include "platform/data_access.h"
#include "suite/ado_library.h"

namespace tolvane::suite {

/// Passes every operation on; errors are ADO's own. What does not change while a set is open is asked for once: the
/// Fields collection, a Field for each column that is used, the columns' descriptions. A value then costs one call.
///
/// A set that a service returns reaches its caller as the ADO object that it is.
class RemoteRecordset : public Recordset, public automation::RemoteReference {
 public:
  /// `set` may be open or closed; `connection` is what it is opened on.
  RemoteRecordset(std::shared_ptr<AdoLibrary> ado, automation::LateBound set, automation::LateBound connection)
      : ado_(std::move(ado)), set_(std::move(set)), connection_(std::move(connection)) {}

  [[nodiscard]] IDispatch* dispatch() const override { return set_.get(); }

  void open(const std::string& source, CursorType cursorType, LockType lockType, std::int32_t options) override;
  void close() override;
  [[nodiscard]] ObjectState state() const override;
  void setCursorLocation(CursorLocation location) override;

  [[nodiscard]] bool bof() override;
  [[nodiscard]] bool eof() override;
  [[nodiscard]] std::int32_t recordCount() override;
  void moveFirst() override;
  void moveNext() override;
  void moveLast() override;

  [[nodiscard]] const std::vector<FieldInfo>& fields() override;
  [[nodiscard]] Value value(std::size_t index) override;
  [[nodiscard]] Value value(std::string_view name) override;

  void addNew() override;
  void setValue(std::string_view name, const Value& value) override;
  void appendChunk(std::string_view name, const Value& chunk) override;
  void update() override;
  void cancelUpdate() override;
  [[nodiscard]] EditMode editMode() const override;

  void setFilter(const std::string& criteria) override;
  void detach() override;
  [[nodiscard]] std::shared_ptr<Recordset> nextRecordset() override;

 private:
  /// The Field of a column; ADO's own error 3265 for one that there is not.
  [[nodiscard]] const automation::LateBound& field(std::size_t index);
  [[nodiscard]] const automation::LateBound& field(std::string_view name);
  template <typename Key>
  [[nodiscard]] automation::LateBound findField(Key key);
  void forgetFields();

  std::shared_ptr<AdoLibrary> ado_;
  automation::LateBound set_;
  automation::LateBound connection_;  ///< none after a detach
  automation::LateBound fields_;
  std::vector<automation::LateBound> byIndex_;
  /// By name as it was asked for; another letter case is another entry.
  std::map<std::string, automation::LateBound, std::less<>> byName_;
  std::vector<FieldInfo> infos_;
};

}  // namespace tolvane::suite
