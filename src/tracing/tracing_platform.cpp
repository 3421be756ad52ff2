#include "tracing/tracing_platform.h"

#include <utility>

#include "tracing/traced_data_access.h"

namespace tolvane::tracing {
namespace {

class TracedLogin : public Login {
 public:
  TracedLogin(Tracer& tracer, std::shared_ptr<Login> inner) : tracer_(tracer), inner_(std::move(inner)) {}
  std::int32_t currentUserID() override {
    return tracer_.record(
        Tracer::line("CurrentUserID"), [&] { return inner_->currentUserID(); }, true);
  }
  std::string userKey() override {
    // The key may open more than the account set, so it is not written.
    return tracer_.record(Tracer::line("UserKey"), [&] { return inner_->userKey(); });
  }
  std::string languageCode() override {
    return tracer_.record(
        Tracer::line("LanguageCode"), [&] { return inner_->languageCode(); }, true);
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<Login> inner_;
};

class TracedContext : public Context {
 public:
  TracedContext(Tracer& tracer, std::shared_ptr<Context> inner) : tracer_(tracer), inner_(std::move(inner)) {}

  const std::shared_ptr<Context>& inner() const { return inner_; }

  void openDataSource(const std::string& dsn) override {
    Json line = Tracer::line("OpenDataSource");
    line["dsn"] = tracer_.dsn(dsn);
    tracer_.record(std::move(line), [&] { inner_->openDataSource(dsn); });
  }
  std::shared_ptr<Login> getLoginInfo() override {
    return std::make_shared<TracedLogin>(
        tracer_, tracer_.record(Tracer::line("GetLoginInfo"), [&] { return inner_->getLoginInfo(); }));
  }
  std::shared_ptr<Connection> getConnection() override {
    return traced(tracer_, tracer_.record(Tracer::line("GetConnection"), [&] { return inner_->getConnection(); }));
  }
  void beginWork() override {
    tracer_.record(Tracer::line("BeginWork"), [&] { inner_->beginWork(); });
  }
  void completeWork() override {
    tracer_.record(Tracer::line("CompleteWork"), [&] { inner_->completeWork(); });
  }
  std::string callText() override { return inner_->callText(); }

 private:
  Tracer& tracer_;
  std::shared_ptr<Context> inner_;
};

class TracedApplication : public GlobalApplication {
 public:
  TracedApplication(Tracer& tracer, std::shared_ptr<GlobalApplication> inner)
      : tracer_(tracer), inner_(std::move(inner)) {}
  std::shared_ptr<Context> getContext() override {
    return std::make_shared<TracedContext>(
        tracer_, tracer_.record(Tracer::line("GetContext"), [&] { return inner_->getContext(); }));
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<GlobalApplication> inner_;
};

class TracedSecurity : public Security {
 public:
  TracedSecurity(Tracer& tracer, std::shared_ptr<Security> inner) : tracer_(tracer), inner_(std::move(inner)) {}
  std::int16_t getCurrentUserID(const std::string& userKey) override {
    return tracer_.record(
        Tracer::line("Security.GetCurrentUserID"), [&] { return inner_->getCurrentUserID(userKey); }, true);
  }
  bool isAdministrator(const std::string& userKey) override {
    return tracer_.record(
        Tracer::line("IsAdministrator"), [&] { return inner_->isAdministrator(userKey); }, true);
  }
  bool accessCheck(const std::string& userKey, std::int32_t objectType, std::int32_t objectID, std::int32_t accessMask,
                   const std::string& source) override {
    Json line = Tracer::line("AccessCheck");
    line["objectType"] = objectType;
    line["objectID"] = objectID;
    line["mask"] = accessMask;
    line["source"] = source;
    return tracer_.record(
        std::move(line), [&] { return inner_->accessCheck(userKey, objectType, objectID, accessMask, source); }, true);
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<Security> inner_;
};

class TracedResourceLoader : public ResourceLoader {
 public:
  TracedResourceLoader(Tracer& tracer, std::shared_ptr<ResourceLoader> inner)
      : tracer_(tracer), inner_(std::move(inner)) {}
  void setResFileBaseName(const std::string& name) override { inner_->setResFileBaseName(name); }
  void setLanguageID(const std::string& language) override {
    language_ = language;
    inner_->setLanguageID(language);
  }
  std::string loadString(const std::string& text) override {
    Json line = Tracer::line("LoadString");
    line["text"] = text;
    line["language"] = language_;
    return tracer_.record(
        std::move(line), [&] { return inner_->loadString(text); }, true);
  }
  void unload() override {
    tracer_.record(Tracer::line("Unload"), [&] { inner_->unload(); });
  }

 private:
  Tracer& tracer_;
  std::shared_ptr<ResourceLoader> inner_;
  std::string language_;
};

class TracedDataFlow : public DataFlow {
 public:
  TracedDataFlow(Tracer& tracer, std::shared_ptr<DataFlow> inner) : tracer_(tracer), inner_(std::move(inner)) {}
  void refreshSubFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                      bool first, bool second) override {
    tracer_.record(line("RefreshSubFunc", callText, system, entries),
                   [&] { inner_->refreshSubFunc(callText, system, entries, first, second); });
  }
  void refreshDetailFunc(const std::string& callText, std::int16_t system, const std::shared_ptr<ItemList>& entries,
                         bool first, bool second) override {
    tracer_.record(line("RefreshDetailFunc", callText, system, entries),
                   [&] { inner_->refreshDetailFunc(callText, system, entries, first, second); });
  }

 private:
  static Json line(const char* operation, const std::string& callText, std::int16_t system,
                   const std::shared_ptr<ItemList>& entries) {
    Json result = Tracer::line(operation);
    result["arg"] = callText;
    result["system"] = system;
    result["entries"] = traceToJson(entries)["$list"];
    return result;
  }

  Tracer& tracer_;
  std::shared_ptr<DataFlow> inner_;
};

}  // namespace

std::shared_ptr<GlobalApplication> TracingPlatform::application() {
  if (!application_) application_ = std::make_shared<TracedApplication>(tracer_, inner_.application());
  return application_;
}

std::shared_ptr<Security> TracingPlatform::newSecurity() {
  return std::make_shared<TracedSecurity>(tracer_, inner_.newSecurity());
}

std::shared_ptr<ResourceLoader> TracingPlatform::newResourceLoader() {
  return std::make_shared<TracedResourceLoader>(tracer_, inner_.newResourceLoader());
}

std::shared_ptr<DataFlow> TracingPlatform::newDataFlow(const std::shared_ptr<Context>& context) {
  // The component's own statements are not the service's: it works on the context as it was before it was wrapped.
  const auto wrapped = std::dynamic_pointer_cast<TracedContext>(context);
  return std::make_shared<TracedDataFlow>(tracer_, inner_.newDataFlow(wrapped ? wrapped->inner() : context));
}

}  // namespace tolvane::tracing
