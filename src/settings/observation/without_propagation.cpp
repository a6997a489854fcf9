#include "settings/observation/without_propagation.h"

#include "platform/foundation/thread.h"

namespace tarnix {
namespace {

const String& flagKey() {
  static const String key = "_DefaultsObservation.Protocol_threadUpdatingValuesFlag";
  return key;
}

void setSuppressed(bool isSuppressed) {
  NSThread::currentThread().threadDictionary().insert_or_assign(flagKey(), PropertyList{isSuppressed});
}

}  // namespace

bool isPropagationSuppressed() {
  const auto& dictionary = NSThread::currentThread().threadDictionary();
  const auto found = dictionary.find(flagKey());
  const bool* const flag = found == dictionary.end() ? nullptr : found->second.as<bool>();
  return flag != nullptr && *flag;
}

namespace Defaults {

void withoutPropagation(const std::function<void()>& block) {
  struct Silence {
    Silence() { setSuppressed(true); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { setSuppressed(false); }
  };
  const Silence silence;
  block();
}

}  // namespace Defaults
}  // namespace tarnix
