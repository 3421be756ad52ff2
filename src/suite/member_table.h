// The members of someone else's class that this module names, in a form that can be gone through.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "automation/late_bound.h"

namespace tolvane::suite {

/// The ways in which a member is used; several of them may be joined.
enum Use : unsigned { calls = 1, reads = 2, writes = 4, writesObject = 8 };

/// Derived classes have one TableMember for each member. One table serves all objects of its class on one thread.
class MemberTable {
 public:
  class TableMember : public automation::RemoteMember {
   public:
    /// `arguments`: how many it is given, a property's new value not among them.
    TableMember(MemberTable& table, const wchar_t* name, unsigned uses, std::size_t arguments = 0)
        : RemoteMember(name), uses_(uses), arguments_(arguments) {
      table.members_.push_back(this);
    }
    [[nodiscard]] unsigned uses() const { return uses_; }
    [[nodiscard]] std::size_t arguments() const { return arguments_; }

   private:
    unsigned uses_;
    std::size_t arguments_;
  };

  MemberTable(const MemberTable&) = delete;
  MemberTable& operator=(const MemberTable&) = delete;

  /// The interface that has these members, as its type library calls it; of the suite's own classes, what they are.
  [[nodiscard]] std::wstring_view interfaceName() const { return interfaceName_; }
  [[nodiscard]] const std::vector<const TableMember*>& members() const { return members_; }

 protected:
  explicit MemberTable(std::wstring_view interfaceName) : interfaceName_(interfaceName) {}
  ~MemberTable() = default;

 private:
  std::wstring_view interfaceName_;
  std::vector<const TableMember*> members_;
};

}  // namespace tolvane::suite
