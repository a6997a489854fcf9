#pragma once

#include <vector>

#include "platform/foundation/string.h"

namespace tarnix {

// The spellings of a text that are canonically equivalent and in use (Unicode Standard Annex 15): as it
// stands, composed (NFC) and decomposed (NFD), each once. Only the text itself where it is ASCII or no UTF-8.
std::vector<String> canonicalSpellings(const String& text);

}  // namespace tarnix
