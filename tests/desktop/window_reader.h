#pragma once

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using AtspiAccessible = struct _AtspiAccessible;

namespace tarnix::test {

// What the windows of a program show and offer, as assistive tools see it. Every call asks the program anew
// and waits for its answer. Needs an `AccessibilityBus` in the process. A copy reads the same program.
class WindowReader {
 public:
  // One row of a list: its name is the title, its description what stands beside it.
  struct Row {
    std::string name;
    std::string description;
    bool isSelected = false;

    friend bool operator==(const Row&, const Row&) = default;
  };

  explicit WindowReader(pid_t process) : process_(process) {}

  // A window of the program is on show.
  bool isOpen() const;
  // The first rows of the list on show, top down. None when there is no list.
  std::vector<Row> rows(std::size_t limit = 200) const;
  std::size_t rowCount() const;
  std::vector<std::string> titles(std::size_t limit = 200) const;
  // The text of the first text area of several lines; absent when none is on show.
  std::optional<std::string> detailText() const;
  // How many characters it has, without reading them.
  std::optional<std::size_t> detailLength() const;
  // How the first place of it that reads so looks, as assistive tools are told: "weight" is "bold" and so on.
  // Empty when there is none.
  std::map<std::string, std::string> lookOf(std::string_view text) const;
  // Any element on show has this name or text.
  bool shows(std::string_view text) const;
  // Whether a switch or check box is on; absent when there is none of this name.
  std::optional<bool> isOn(std::string_view name) const;
  std::optional<bool> isEnabled(std::string_view name) const;

  // These are false when there is nothing of that name, or it refuses.
  bool press(std::string_view button) const;
  bool flip(std::string_view toggle) const;
  bool enter(std::string_view field, std::string_view text) const;
  bool select(std::size_t row) const;

  // All that is on show, one element a line, indented; for the messages of failed tests.
  std::string tree() const;

 private:
  struct Release {
    void operator()(AtspiAccessible* accessible) const;
  };
  using Element = std::unique_ptr<AtspiAccessible, Release>;
  using Condition = std::function<bool(AtspiAccessible*)>;

  Element application() const;
  Element find(const Condition& isWanted) const;
  static Element findIn(AtspiAccessible* element, const Condition& isWanted);
  Element list() const;
  Element textArea() const;
  Element toggleNamed(std::string_view name) const;
  static std::vector<Element> childrenOf(AtspiAccessible* element, std::size_t limit);

  pid_t process_;
};

}  // namespace tarnix::test
