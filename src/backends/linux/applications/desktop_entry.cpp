#include "backends/linux/applications/desktop_entry.h"

#include <algorithm>

#include "backends/linux/files/key_file.h"
#include "backends/linux/files/property_list_text.h"
#include "platform/foundation/split.h"
#include "platform/foundation/utf8.h"

namespace tarnix::linux_desktop {
namespace {

constexpr std::size_t kNameLimit = 256;  // Bytes.
constexpr std::size_t kWordLimit = 64;

// A name is shown in one line whatever it holds, and cut between characters.
String presentableName(std::string name) {
  if (name.size() > kNameLimit) {
    std::size_t end = kNameLimit;
    while (end > 0 && isUtf8Continuation(name[end])) --end;
    name.resize(end);
  }
  std::replace_if(
      name.begin(), name.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, ' ');
  return String(name);
}

// The words of a command line as the section "The Exec key" has it. None when a quote stays open.
std::vector<std::string> wordsOf(std::string_view line) {
  std::vector<std::string> words;
  bool isQuoted = false, isInWord = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isEscape = isQuoted && line[i] == '\\' && i + 1 < line.size();
    if (line[i] == '"') isQuoted = !isQuoted;
    if (!isQuoted && (line[i] == ' ' || line[i] == '\t')) {
      isInWord = false;
      continue;
    }
    if (!isInWord && words.size() == kWordLimit) break;
    if (!isInWord) words.emplace_back();
    isInWord = true;
    if (line[i] != '"' || isEscape) words.back().push_back(isEscape ? line[++i] : line[i]);
  }
  return isQuoted ? std::vector<std::string>() : words;
}

// Takes the keys of an entry one after another. Of a text that comes twice, the first counts.
class Collector {
 public:
  explicit Collector(const std::vector<std::string>& locales) : locales_(locales) {}

  void take(std::string_view key, std::string_view value) {
    if (key == "Type") return keep(type_, std::string(value));
    if (key == "Name") return takeName(locales_.size(), value);
    if (key.starts_with("Name[") && key.ends_with(']')) return takeName(rankOf(key), value);
    if (key == "Icon") return keep(entry_.icon, unescaped(value));
    if (key == "StartupWMClass") return keep(entry_.windowClass, unescaped(value));
    if (key == "TryExec") return keep(entry_.triedProgram, unescaped(value));
    if (key == "Exec") return keep(entry_.command, wordsOf(unescaped(value)));
    if (key == "Hidden" && value == "true") entry_.isHidden = true;
    if (key == "NoDisplay" && value == "true") entry_.isInMenus = false;
  }

  std::optional<DesktopEntry> finish() {
    const bool isApplication = type_ == "Application" && !entry_.name.empty();
    return isApplication || entry_.isHidden ? std::optional(std::move(entry_)) : std::nullopt;
  }

 private:
  template <typename Value>
  static void keep(Value& member, Value value) {
    if (member.empty()) member = std::move(value);
  }

  // The lower, the better; the name without a locale comes last, and other locales are behind it.
  std::size_t rankOf(std::string_view key) const {
    const std::string_view locale = key.substr(5, key.size() - 6);
    const auto found = std::find(locales_.begin(), locales_.end(), locale);
    return found == locales_.end() ? locales_.size() + 1 : static_cast<std::size_t>(found - locales_.begin());
  }

  void takeName(std::size_t rank, std::string_view value) {
    if (rank >= nameRank_ || value.empty() || !isXMLText(value)) return;
    nameRank_ = rank;
    entry_.name = presentableName(unescaped(value));
  }

  const std::vector<std::string>& locales_;
  DesktopEntry entry_;
  std::string type_;
  std::size_t nameRank_ = locales_.size() + 1;
};

}  // namespace

std::vector<std::string> localeNames(std::string_view locale) {
  const auto takeBehind = [&](char mark) {
    const std::size_t position = std::min(locale.find(mark), locale.size());
    const std::string part(locale.substr(position));
    locale = locale.substr(0, position);
    return part;
  };
  const std::string modifier = takeBehind('@');
  takeBehind('.');
  const std::string country = takeBehind('_');
  const std::string language(locale);
  if (language.empty() || language == "C" || language == "POSIX") return {};
  std::vector<std::string> names = {language + country + modifier, language + country, language + modifier,
                                    language};
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string messageLocale(const Environment& environment) {
  for (const char* const variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = environment(variable);
    if (value != nullptr && value[0] != '\0') return value;
  }
  return {};
}

std::vector<std::string> messageLanguages(const Environment& environment) {
  const std::string locale = messageLocale(environment);
  const std::string_view name = std::string_view(locale).substr(0, locale.find_first_of(".@"));
  if (name.empty() || name == "C" || name == "POSIX") return {};
  std::vector<std::string> languages;
  if (const char* const wanted = environment("LANGUAGE")) {
    for (const std::string_view each : split(wanted, ':')) languages.emplace_back(each);
  }
  languages.push_back(locale);
  return languages;
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& locales) {
  if (text.size() > kDesktopEntrySizeLimit || text.find('\0') != std::string_view::npos) return std::nullopt;
  Collector collector(locales);
  forEachKey(text, "Desktop Entry",
             [&](std::string_view key, std::string_view value) { collector.take(key, value); });
  return collector.finish();
}

}  // namespace tarnix::linux_desktop
