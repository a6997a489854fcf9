#include "history/title_search.h"

#include "platform/foundation/canonical_mapping.h"

namespace tarnix {
namespace {

// A longer title is searched for the two pure spellings only: to normalise it would take too long for each
// key.
constexpr std::size_t kNormalizedSize = 1024 * 1024;

std::string orItself(const std::optional<std::string>& form, std::string_view text) {
  return form ? *form : std::string(text);
}

}  // namespace

TitleSearch::TitleSearch(std::string_view sought)
    : isASCII_(isASCII(sought)),
      precomposed_(isASCII_ ? "" : orItself(precomposedStringWithCanonicalMapping(sought), sought)),
      decomposed_(isASCII_ ? "" : orItself(decomposedStringWithCanonicalMapping(sought), sought)),
      literally_(sought),
      asPrecomposed_(precomposed_),
      asDecomposed_(decomposed_) {}

bool TitleSearch::isIn(std::string_view title) const {
  return literally_.isIn(title) || (!isASCII_ && isEquivalentIn(title));
}

bool TitleSearch::isEquivalentIn(std::string_view title) const {
  if (asPrecomposed_.isIn(title)) return true;
  if (title.size() > kNormalizedSize) return asDecomposed_.isIn(title);
  if (isASCII(title) || isPrecomposed(title)) return false;
  const auto form = precomposedStringWithCanonicalMapping(title);
  return form && asPrecomposed_.isIn(*form);
}

}  // namespace tarnix
