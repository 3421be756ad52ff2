#include "suite/remote_components.h"

#include "automation/object_border.h"
#include "automation/text.h"
#include "platform/conversions.h"

namespace tolvane::suite {

using automation::Bstr;
using automation::ComPtr;
using automation::RemoteMember;
using automation::Variant;

std::int16_t RemoteSecurity::getCurrentUserID(const std::string& userKey) {
  return toInt16(security_.read(suite_->security.getCurrentUserID, userKey).take());
}

bool RemoteSecurity::isAdministrator(const std::string& userKey) {
  return toBoolean(security_.read(suite_->security.isAdministrator, userKey).take());
}

bool RemoteSecurity::accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID,
                                 std::int32_t accessMask, const std::string& source) {
  Bstr sourceText(source);
  return toBoolean(security_
                       .read(suite_->security.accessCheck, userKey, Variant::reference(objectType),
                             Variant::reference(objectID), Variant::reference(accessMask), true,
                             Variant::reference(sourceText.reference()))
                       .take());
}

void RemoteResourceLoader::setResFileBaseName(const std::string& name) {
  loader_.put(suite_->loader.resFileBaseName, name);
}

void RemoteResourceLoader::setLanguageID(const std::string& language) {
  loader_.put(suite_->loader.languageID, language);
}

std::string RemoteResourceLoader::loadString(const std::string& text) {
  Bstr key(text);
  return toText(loader_.read(suite_->loader.loadString, Variant::reference(key.reference())).take());
}

void RemoteResourceLoader::unload() {
  loader_.call(suite_->loader.unload);
}

void RemoteDataFlow::refreshSubFunc(const std::string& callText, std::int16_t system,
                                    const std::shared_ptr<ItemList>& entries, bool first, bool second) {
  refresh(suite_->dataFlow.refreshSubFunc, callText, system, entries, first, second);
}

void RemoteDataFlow::refreshDetailFunc(const std::string& callText, std::int16_t system,
                                       const std::shared_ptr<ItemList>& entries, bool first, bool second) {
  refresh(suite_->dataFlow.refreshDetailFunc, callText, system, entries, first, second);
}

void RemoteDataFlow::refresh(RemoteMember& member, const std::string& callText, std::int16_t system,
                             const std::shared_ptr<ItemList>& entries, bool first, bool second) {
  ComPtr<IDispatch> list = automation::dispatchOf(entries);
  dataFlow_.call(member, callText, system, Variant::reference(list.reference()), first, second);
}

}  // namespace tolvane::suite
