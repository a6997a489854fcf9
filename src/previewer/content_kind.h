#pragma once

#include <string_view>

namespace tarnix::previewer {

struct ContentKind {
  enum class Family { picture, drawing, document, unknown };
  Family family = Family::unknown;
  const char* format = "";  // Of a picture, as the decoders are called.
};

// By what the file begins with, never by its name; what may be a text is unknown here.
ContentKind contentKindOf(std::string_view beginning);

}  // namespace tarnix::previewer
