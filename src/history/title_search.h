#pragma once

#include <string>
#include <string_view>

#include "history/substring_search.h"

namespace tarnix {

// Finds a text in titles byte by byte and, where it has letters beyond ASCII, in its canonically equivalent
// spellings too: "é" is found whether it was written as one character or as two, and so is the other way
// round.
class TitleSearch {
 public:
  // `sought` is borrowed.
  explicit TitleSearch(std::string_view sought);
  TitleSearch(const TitleSearch&) = delete;
  TitleSearch& operator=(const TitleSearch&) = delete;

  bool isIn(std::string_view title) const;

 private:
  bool isEquivalentIn(std::string_view title) const;

  bool isASCII_;
  // Empty for ASCII, which has one spelling only.
  std::string precomposed_;
  std::string decomposed_;
  SubstringSearch literally_;
  SubstringSearch asPrecomposed_;
  SubstringSearch asDecomposed_;
};

}  // namespace tarnix
