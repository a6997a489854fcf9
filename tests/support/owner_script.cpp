#include "support/owner_script.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <string_view>

#include "support/generated_text.h"

namespace tarnix::test {
namespace {

using std::chrono::milliseconds;
using Conduct = OwnerScript::Conduct;
using OddTargets = OwnerScript::OddTargets;

constexpr const char* kUsage = R"(Usage: tarnix_hostile_owner MODE [OPTION]...
Owns the clipboard selection and behaves as MODE says:
  good            serves what the options give
  empty           owns the selection and offers nothing
  never           answers nothing
  targets-only    answers TARGETS and no other request
  incr-stall      announces an incremental transfer and stops after --chunks pieces (0)
  drip            sends one byte every --delay milliseconds (1000)
  die-on-targets, die-on-data, die-in-incr
                  exits when asked for TARGETS, for data, or after --chunks pieces (1)
  wrong-type, wrong-format, wrong-targets
                  lies about the type or the format of the data, or about the type of TARGETS
  many-targets    offers --count targets (100000)
  invalid-atoms   offers atoms that do not exist
  long-names      offers targets with names of 64 KB
  late            answers everything --delay milliseconds late (3000)
  secret          hints that its text is a password, and tells who reads it all the same
  flood COUNT     takes the selection COUNT times, --interval milliseconds apart (0)
Options:
  --text TEXT  --size BYTES  --rtf TEXT  --html TEXT  --uri PATH...  --source IDENTIFIER
  --offer TARGET=TEXT...  --chunk BYTES  --window CLASS  --stay yes (after a loss)  --seconds LIMIT (60)
Prints `owner` once it owns the selection, `request TARGET` for every request, `cleared` when it lost it.
)";

[[noreturn]] void fail(const std::string& complaint) {
  std::fprintf(stderr, "%s\n%s", complaint.c_str(), kUsage);
  std::exit(2);
}

std::size_t number(const std::string& text) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) fail("Not a number: " + text);
  return value;
}

// Everything a `file` URI must not hold as it is, RFC 3986 section 3.3.
std::string percentEncoded(std::string_view path) {
  static constexpr std::string_view kPlain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
  std::string encoded;
  for (const char byte : path) {
    if (kPlain.find(byte) != std::string_view::npos) {
      encoded += byte;
    } else {
      char escape[4];
      std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned char>(byte));
      encoded += escape;
    }
  }
  return encoded;
}

void behaveWhenIncremental(OwnerScript& script, Conduct afterLastChunk, std::size_t chunks) {
  script.incrementalAbove = 0;
  script.chunksToSend = chunks;
  script.afterLastChunk = afterLastChunk;
  script.chunkSize = 16;
}

void drip(OwnerScript& script) {
  script.incrementalAbove = 0;
  script.chunkSize = 1;
  script.chunkDelay = milliseconds(1000);
}

using Deviation = std::function<void(OwnerScript&)>;

const std::map<std::string, Deviation>& modes() {
  static const std::map<std::string, Deviation> kModes = {
      {"good", [](OwnerScript&) {}},
      {"empty", [](OwnerScript&) {}},
      {"flood", [](OwnerScript&) {}},
      {"never", [](OwnerScript& script) { script.onTargets = script.onData = Conduct::ignore; }},
      {"targets-only", [](OwnerScript& script) { script.onData = Conduct::ignore; }},
      {"incr-stall", [](OwnerScript& script) { behaveWhenIncremental(script, Conduct::ignore, 0); }},
      {"drip", drip},
      {"die-on-targets", [](OwnerScript& script) { script.onTargets = Conduct::die; }},
      {"die-on-data", [](OwnerScript& script) { script.onData = Conduct::die; }},
      {"die-in-incr", [](OwnerScript& script) { behaveWhenIncremental(script, Conduct::die, 1); }},
      {"wrong-type", [](OwnerScript& script) { script.isDataTypeHonest = false; }},
      {"wrong-format", [](OwnerScript& script) { script.dataFormat = 32; }},
      {"wrong-targets", [](OwnerScript& script) { script.isTargetsTypeHonest = false; }},
      {"many-targets", [](OwnerScript& script) { script.oddTargets = OddTargets::many; }},
      {"invalid-atoms", [](OwnerScript& script) { script.oddTargets = OddTargets::invalid; }},
      {"long-names", [](OwnerScript& script) { script.oddTargets = OddTargets::longNames; }},
      {"late", [](OwnerScript& script) { script.answerDelay = milliseconds(3000); }},
      {"secret", [](OwnerScript& script) { script.isSecret = true; }},
  };
  return kModes;
}

bool endsWithItsOwnership(const std::string& mode) {
  return mode == "good" || mode == "empty" || mode == "secret" || mode == "flood";
}

// What the options gather before it becomes the list of representations.
struct Content {
  std::optional<std::string> text;
  std::string uriList;
  std::vector<Representation> others;

  void offer(std::vector<std::string> targets, std::string bytes) {
    others.push_back({std::move(targets), std::make_shared<const std::string>(std::move(bytes))});
  }
  void offerAssignment(const std::string& assignment) {
    const std::size_t sign = assignment.find('=');
    if (sign == std::string::npos) fail("--offer wants TARGET=TEXT");
    offer({assignment.substr(0, sign)}, assignment.substr(sign + 1));
  }
};

using OptionHandler = std::function<void(OwnerScript&, Content&, const std::string& value)>;

const std::map<std::string, OptionHandler>& options() {
  static const std::map<std::string, OptionHandler> kOptions = {
      {"--text", [](auto&, Content& content, auto& value) { content.text = value; }},
      {"--size", [](auto&, Content& content, auto& value) { content.text = generatedText(number(value)); }},
      {"--rtf", [](auto&, Content& content, auto& value) { content.offer({"text/rtf"}, value); }},
      {"--html", [](auto&, Content& content, auto& value) { content.offer({"text/html"}, value); }},
      {"--uri", [](auto&, Content& content,
                   auto& value) { content.uriList += "file://" + percentEncoded(value) + "\r\n"; }},
      {"--source",
       [](auto&, Content& content, auto& value) { content.offer({"org.nspasteboard.source"}, value); }},
      {"--offer", [](auto&, Content& content, auto& value) { content.offerAssignment(value); }},
      {"--chunk", [](OwnerScript& script, auto&, auto& value) { script.chunkSize = number(value); }},
      {"--chunks", [](OwnerScript& script, auto&, auto& value) { script.chunksToSend = number(value); }},
      {"--count", [](OwnerScript& script, auto&, auto& value) { script.oddTargetCount = number(value); }},
      {"--stay", [](OwnerScript& script, auto&, auto& value) { script.outlivesLoss = value == "yes"; }},
      {"--window", [](OwnerScript& script, auto&, auto& value) { script.windowClass = value; }},
      {"--delay",
       [](OwnerScript& script, auto&, auto& value) {
         (script.chunkDelay.count() > 0 ? script.chunkDelay : script.answerDelay) =
             milliseconds(number(value));
       }},
      {"--interval",
       [](OwnerScript& script, auto&, auto& value) { script.copyInterval = milliseconds(number(value)); }},
      {"--seconds", [](OwnerScript& script, auto&,
                       auto& value) { script.timeLimit = std::chrono::seconds(number(value)); }},
  };
  return kOptions;
}

std::vector<Representation> representations(const std::string& mode, const OwnerScript& script,
                                            Content content) {
  std::vector<Representation> all;
  if (mode == "empty") return all;
  if (!content.text && content.others.empty() && content.uriList.empty()) content.text = "text of " + mode;
  if (content.text) {
    all.push_back({{"text/plain;charset=utf-8", "UTF8_STRING", "text/plain", "STRING", "TEXT"},
                   std::make_shared<const std::string>(std::move(*content.text))});
  }
  if (!content.uriList.empty()) content.offer({"text/uri-list"}, content.uriList);
  if (script.isSecret) content.offer({"x-kde-passwordManagerHint"}, "secret");
  all.insert(all.end(), content.others.begin(), content.others.end());
  return all;
}

}  // namespace

OwnerScript parseOwnerScript(const std::vector<std::string>& arguments) {
  if (arguments.empty()) fail("A mode is needed.");
  const std::string& mode = arguments.front();
  const auto deviation = modes().find(mode);
  if (deviation == modes().end()) fail("Unknown mode: " + mode);
  OwnerScript script;
  script.outlivesLoss = !endsWithItsOwnership(mode);
  deviation->second(script);

  std::size_t next = 1;
  if (mode == "flood") {
    if (arguments.size() < 2) fail("flood wants a count.");
    script.copies = static_cast<int>(number(arguments[next++]));
  }
  Content content;
  for (; next < arguments.size(); next += 2) {
    const auto option = options().find(arguments[next]);
    if (option == options().end()) fail("Unknown option: " + arguments[next]);
    if (next + 1 == arguments.size()) fail("A value is needed: " + arguments[next]);
    option->second(script, content, arguments[next + 1]);
  }
  script.representations = representations(mode, script, std::move(content));
  return script;
}

}  // namespace tarnix::test
