// The fields of a record set.
#pragma once

#include <cstddef>

#include "automation/dispatch_object.h"
#include "standalone_com/recordset_object.h"

namespace tolvane::standalone_com {

/// `Item(name or position)` (default; a value can be set), `Count`; "for each" gives the fields.
class FieldsObject : public automation::DispatchObject {
 public:
  explicit FieldsObject(automation::ComPtr<RecordsetObject> recordset) : recordset_(std::move(recordset)) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  automation::ComPtr<RecordsetObject> recordset_;
};

/// `Value` (default), `Name`, `Type`, `DefinedSize`, `ActualSize` (of texts and documents; of others as defined),
/// `Attributes`, `AppendChunk(data)`, `GetChunk(size)` (Null when the field is empty or all was given; one series, from
/// the field's beginning, for each field object). It shows the record set's current row. Error 3420 when the set was
/// closed since the field was taken from it.
class FieldObject : public automation::DispatchObject {
 public:
  FieldObject(automation::ComPtr<RecordsetObject> recordset, std::size_t index)
      : recordset_(std::move(recordset)), index_(index), opening_(recordset_->opening()) {}

 protected:
  [[nodiscard]] automation::Members members() const override;
  [[nodiscard]] automation::Variant call(DISPID member, const automation::MemberCall& call) override;

 private:
  [[nodiscard]] Recordset& rows() const;
  [[nodiscard]] const FieldInfo& info() const { return rows().fields().at(index_); }
  [[nodiscard]] automation::Variant chunk(std::int32_t size);

  automation::ComPtr<RecordsetObject> recordset_;
  std::size_t index_;
  unsigned opening_;
  std::size_t given_ = 0;  // by GetChunk, in bytes or UTF-16 units
  unsigned stop_ = 0;      // where that was
};

}  // namespace tolvane::standalone_com
