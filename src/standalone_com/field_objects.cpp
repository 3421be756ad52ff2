#include "standalone_com/field_objects.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "automation/foundation_objects.h"
#include "automation/text.h"
#include "rowset/server_errors.h"
#include "standalone_com/ado_arguments.h"

namespace tolvane::standalone_com {
namespace {

using automation::ComPtr;
using automation::makeObject;
using automation::Member;
using automation::MemberCall;
using automation::Members;
using automation::Variant;
using rowset::fieldSource;

enum : DISPID { item = DISPID_VALUE, count = 1 };
constexpr std::array fieldsMembers{
    Member{L"Item", item},
    Member{L"Count", count},
    Member{L"_NewEnum", DISPID_NEWENUM},
};

enum : DISPID {
  value = DISPID_VALUE,
  attributes = 1036,
  name = 1100,
  type = 1102,
  definedSize = 1103,
  appendChunk = 1107,
  getChunk = 1108,
  actualSize = 1109,
};
constexpr std::array fieldMembers{
    Member{L"Value", value},
    Member{L"Name", name},
    Member{L"Type", type},
    Member{L"DefinedSize", definedSize},
    Member{L"ActualSize", actualSize},
    Member{L"Attributes", attributes},
    Member{L"GetChunk", getChunk},
    Member{L"AppendChunk", appendChunk},
};

// ADO's FieldAttributeEnum. Whether a field can be written only the attempt tells.
constexpr std::int32_t unknownUpdatable = 8;
constexpr std::int32_t fixedLength = 16;
constexpr std::int32_t nullable = 32;
constexpr std::int32_t mayBeNull = 64;
constexpr std::int32_t longData = 128;

// What ADO gives as the size of long data: bytes, or characters of two bytes.
constexpr std::int32_t longBytes = 2147483647;
constexpr std::int32_t longCharacters = 1073741823;

bool isLong(const FieldInfo& info) {
  return info.definedSize < 0;
}

bool hasVariableLength(DataType type) {
  switch (type) {
    case DataType::varChar:
    case DataType::longVarChar:
    case DataType::varWChar:
    case DataType::longVarWChar:
    case DataType::varBinary:
    case DataType::longVarBinary:
      return true;
    default:
      return false;
  }
}

bool isWide(DataType type) {
  return type == DataType::wideChar || type == DataType::varWChar || type == DataType::longVarWChar;
}

std::int32_t attributesOf(const FieldInfo& info) {
  return unknownUpdatable | (info.nullable ? nullable | mayBeNull : 0) | (isLong(info) ? longData : 0) |
         (hasVariableLength(info.type) ? 0 : fixedLength);
}

std::int32_t definedSizeOf(const FieldInfo& info) {
  if (!isLong(info)) return info.definedSize;
  return isWide(info.type) ? longCharacters : longBytes;
}

std::int32_t actualSizeOf(const Value& content, const FieldInfo& info) {
  if (content.isNull()) return 0;
  if (const auto* bytes = content.get<Bytes>()) return static_cast<std::int32_t>(bytes->size());
  if (const auto* text = content.get<std::string>()) {
    const auto units = static_cast<std::int32_t>(automation::wide(*text).size());
    return isWide(info.type) ? units * 2 : units;
  }
  return info.definedSize;
}

/// The next `size` of `content` behind the first `given`, which are counted on.
template <typename Content>
Content nextPart(const Content& content, std::size_t size, std::size_t& given) {
  const std::size_t begin = std::min(given, content.size());
  const std::size_t length = std::min(size, content.size() - begin);
  given = begin + length;
  return {content.begin() + static_cast<std::ptrdiff_t>(begin),
          content.begin() + static_cast<std::ptrdiff_t>(begin + length)};
}

}  // namespace

Members FieldsObject::members() const {
  return fieldsMembers;
}

Variant FieldsObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case item: {
      const std::size_t index = recordset_->fieldIndex(call.value(0));
      if (!call.isPut()) return makeObject<FieldObject>(recordset_, index);
      recordset_->setField(index, call.keptValue(1));
      return {};
    }
    case count:
      return static_cast<std::int32_t>(recordset_->rows().fields().size());
    case DISPID_NEWENUM:
      return automation::enumerationResult(
          [recordset = recordset_] { return static_cast<std::int32_t>(recordset->rows().fields().size()); },
          [recordset = recordset_](std::int32_t index) {
            return Variant(makeObject<FieldObject>(recordset, static_cast<std::size_t>(index) - 1));
          });
    default:
      automation::raiseNoSuchMember();
  }
}

Recordset& FieldObject::rows() const {
  if (recordset_->opening() != opening_) raiseAdo(AdoError::objectNotValid, fieldSource);
  return recordset_->rows();
}

Variant FieldObject::chunk(std::int32_t size) {
  if (!isLong(info())) raiseAdo(AdoError::illegalOperation, fieldSource);
  if (size < 0) raiseAdo(AdoError::invalidArgument, fieldSource);
  const auto wanted = static_cast<std::size_t>(size);
  const Value content = rows().value(index_);
  if (stop_ != recordset_->stop()) given_ = 0;
  stop_ = recordset_->stop();
  if (const auto* bytes = content.get<Bytes>()) {
    if (given_ >= bytes->size()) return Variant::of(Null{});
    const auto part = nextPart(bytes->view(), wanted, given_);
    return Variant::of(Bytes(std::vector<std::uint8_t>(part.begin(), part.end())));
  }
  if (content.isNull()) return Variant::of(Null{});
  const std::wstring text = automation::wide(toText(content));
  if (given_ >= text.size()) return Variant::of(Null{});
  return automation::utf8(nextPart(text, wanted, given_));
}

Members FieldObject::members() const {
  return fieldMembers;
}

Variant FieldObject::call(DISPID member, const MemberCall& call) {
  switch (member) {
    case value:
      if (!call.isPut()) return Variant::of(rows().value(index_));
      (void)rows();
      recordset_->setField(index_, call.keptValue(0));
      return {};
    case name:
      return info().name;
    case type:
      return static_cast<std::int32_t>(info().type);
    case definedSize:
      return definedSizeOf(info());
    case actualSize:
      return actualSizeOf(rows().value(index_), info());
    case attributes:
      return attributesOf(info());
    case appendChunk:
      rows().appendChunk(info().name, call.keptValue(0));
      return {};
    case getChunk:
      return chunk(toInt32(call.value(0)));
    default:
      automation::raiseNoSuchMember();
  }
}

}  // namespace tolvane::standalone_com
