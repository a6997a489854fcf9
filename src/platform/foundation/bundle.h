#pragma once

#include <string>
#include <vector>

#include "platform/foundation/string.h"

namespace tarnix {

// What the program brings along; of it, its fixed texts in the user's language.
class NSBundle {
 public:
  // The languages that the user reads, the best first, as "de_AT", "de-AT" or "de". Spoken is the first that
  // the program speaks, English where it speaks none.
  explicit NSBundle(const std::vector<std::string>& preferredLocalizations = {});
  // The installed platform's; an English one where none is installed.
  static const NSBundle& mainBundle();

  // The key itself where nothing stands for it.
  String localizedStringForKey(const String& key) const;

 private:
  bool isGerman_ = false;
};

}  // namespace tarnix
