// RptPropItemClassUpdate: maintains classification standards.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/method_table.h"
#include "frame/service.h"

namespace tolvane {

/// Creates, renames and deletes classification standards (t_Rpt_PropClass). A standard N has a column "F" + N in
/// t_Rpt_Content, which is added with the standard and stays when it goes. Every change ends with the refresh of the
/// function menu, in the call's transaction. The name is the text under "FName" of the caller's bag and goes into SQL
/// as it is. Broken rules raise 80044047h; their Sources name the class "RptPropClsUpdate", and some the wrong method.
class RptPropItemClassUpdate : public Service {
 public:
  explicit RptPropItemClassUpdate(Platform& platform) : Service(platform) {}

  [[nodiscard]] static ClassDescription description();

  /// Adds a standard under the next free identifier from 1001 on, with one name in all three languages. Always 0:
  /// callers look the identifier up. Refused: an empty name, a name in use in the caller's language.
  std::int32_t Create(const std::string& sDsn, const std::shared_ptr<PropertyBag>& Properties);
  /// Changes the name in the caller's language; a language that has no column leaves the row as it is. Refused: a
  /// built-in standard, an empty name, another standard's name. 80044042h when there is no such standard.
  void Update(const std::string& sDsn, std::int32_t PropClsID, const std::shared_ptr<PropertyBag>& Properties);
  /// Removes a standard with its items and takes its identifier out of the users' saved views. Refused: the nature
  /// standard, one that does not exist, one under which reports are filed.
  void Delete(const std::string& sDsn, std::int32_t PropClsID);

 private:
  /// Takes a standard's identifier out of every user's saved view.
  void removeFromViews(Call& call, std::int32_t PropClsID);
};

/// A saved view without a standard: its identifier cut out wherever its digits stand, also within a longer number, and
/// the separators "\" tidied once.
[[nodiscard]] std::string viewWithoutStandard(std::string view, const std::string& standard);

}  // namespace tolvane
