// ADO as one thread sees it: its classes, and those of their members that the services need.
#pragma once

#include <string>
#include <vector>

#include "automation/late_bound.h"
#include "suite/member_table.h"

namespace tolvane::suite {

struct ConnectionMembers : MemberTable {
  ConnectionMembers() : MemberTable(L"_Connection") {}
  TableMember execute{*this, L"Execute", calls, 3};
};

struct RecordsetMembers : MemberTable {
  RecordsetMembers() : MemberTable(L"_Recordset") {}
  TableMember open{*this, L"Open", calls, 5};
  TableMember close{*this, L"Close", calls};
  TableMember state{*this, L"State", reads};
  TableMember cursorLocation{*this, L"CursorLocation", writes};
  TableMember bof{*this, L"BOF", reads};
  TableMember eof{*this, L"EOF", reads};
  TableMember recordCount{*this, L"RecordCount", reads};
  TableMember moveFirst{*this, L"MoveFirst", calls};
  TableMember moveNext{*this, L"MoveNext", calls};
  TableMember moveLast{*this, L"MoveLast", calls};
  TableMember fields{*this, L"Fields", reads};
  TableMember addNew{*this, L"AddNew", calls};
  TableMember update{*this, L"Update", calls};
  TableMember cancelUpdate{*this, L"CancelUpdate", calls};
  TableMember editMode{*this, L"EditMode", reads};
  TableMember filter{*this, L"Filter", writes};
  TableMember activeConnection{*this, L"ActiveConnection", writes | writesObject};
  TableMember nextRecordset{*this, L"NextRecordset", calls};
};

struct FieldsMembers : MemberTable {
  FieldsMembers() : MemberTable(L"Fields") {}
  TableMember count{*this, L"Count", reads};
  TableMember item{*this, L"Item", reads, 1};
};

struct FieldMembers : MemberTable {
  FieldMembers() : MemberTable(L"Field") {}
  TableMember name{*this, L"Name", reads};
  TableMember type{*this, L"Type", reads};
  TableMember definedSize{*this, L"DefinedSize", reads};
  TableMember attributes{*this, L"Attributes", reads};
  TableMember value{*this, L"Value", reads | writes};
  TableMember appendChunk{*this, L"AppendChunk", calls, 1};
};

struct CommandMembers : MemberTable {
  CommandMembers() : MemberTable(L"_Command") {}
  TableMember activeConnection{*this, L"ActiveConnection", writes | writesObject};
  TableMember commandText{*this, L"CommandText", writes};
  TableMember commandType{*this, L"CommandType", writes};
  TableMember commandTimeout{*this, L"CommandTimeout", writes};
  TableMember createParameter{*this, L"CreateParameter", calls, 5};
  TableMember parameters{*this, L"Parameters", reads};
  TableMember execute{*this, L"Execute", calls};
};

struct ParametersMembers : MemberTable {
  ParametersMembers() : MemberTable(L"Parameters") {}
  TableMember append{*this, L"Append", calls, 1};
};

/// Shared by the objects that a platform hands out; used from their thread.
class AdoLibrary {
 public:
  /// Programmatic identifiers of the classes that are created.
  AdoLibrary(std::wstring recordsetClass, std::wstring commandClass)
      : newRecordset(std::move(recordsetClass)), newCommand(std::move(commandClass)) {}

  /// All tables, to be checked against ADO's own type library.
  [[nodiscard]] std::vector<const MemberTable*> tables() const {
    return {&connection, &recordset, &fields, &field, &command, &parameters};
  }

  automation::RemoteClass newRecordset;
  automation::RemoteClass newCommand;
  ConnectionMembers connection;
  RecordsetMembers recordset;
  FieldsMembers fields;
  FieldMembers field;
  CommandMembers command;
  ParametersMembers parameters;
};

/// Sets a property that holds an object, in either of the two ways that classes know.
void putReference(const automation::LateBound& object, automation::RemoteMember& member, IDispatch* value);

/// A number, flag or text that a property or method gives, converted as the platform converts.
[[nodiscard]] std::int32_t readInt32(const automation::LateBound& object, automation::RemoteMember& member);
[[nodiscard]] bool readBoolean(const automation::LateBound& object, automation::RemoteMember& member);
[[nodiscard]] std::string readText(const automation::LateBound& object, automation::RemoteMember& member);
/// An object that it gives; null for nothing.
[[nodiscard]] automation::LateBound readObject(const automation::LateBound& object, automation::RemoteMember& member);

}  // namespace tolvane::suite
