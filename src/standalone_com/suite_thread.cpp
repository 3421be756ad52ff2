#include "standalone_com/suite_thread.h"

#include <utility>

#include "automation/per_thread.h"
#include "platform/error.h"
#include "standalone/share_folder.h"
#include "standalone_com/engines.h"

namespace tolvane::standalone_com {
namespace {

automation::PerThread<SuiteThread>& threads() {
  static automation::PerThread<SuiteThread> all;
  return all;
}

}  // namespace

std::shared_ptr<SuiteThread> SuiteThread::current() {
  return threads().get([] { return std::make_shared<SuiteThread>(); });
}

SuiteThread::SuiteThread() : platform_({engines(), standalone::findResources()}) {}

SuiteThread::FileCloser::~FileCloser() {
  closeUnusedFiles();
}

void SuiteThread::beginCall(TransactionMode mode) {
  calls_.push_back(std::make_unique<standalone::Call>(session(), mode));
}

bool SuiteThread::endCall() {
  const auto call = takeCall();
  const bool kept = !aborted_ && call->finish();
  if (calls_.empty()) aborted_ = false;
  return kept;
}

void SuiteThread::abortCall() {
  const auto call = takeCall();
  aborted_ = !calls_.empty();
}

SuiteThread::CallHandle SuiteThread::takeCall() {
  if (calls_.empty()) {
    throw AutomationError(errorNumber(RuntimeError::invalidArgument), std::string(applicationName),
                          "No call is under way: BeginCall begins one.");
  }
  CallHandle call = std::move(calls_.back());
  calls_.pop_back();
  return call;
}

}  // namespace tolvane::standalone_com
