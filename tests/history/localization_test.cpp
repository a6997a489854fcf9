#include "platform/foundation/localized_strings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>

#include "backends/simulated/desktop.h"
#include "history/content_view.h"
#include "platform/foundation/bundle.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::Contains;
using testing::IsEmpty;

// The texts of a tree that stand for themselves in no language.
class Keys {
 public:
  std::set<std::string> found;

  void collect(const Element& element) {
    std::visit([this](const auto& content) { note(content); }, element.content);
    for (const auto& modifier : element.modifiers)
      std::visit([this](const auto& each) { note(each); }, modifier);
    for (const Element& child : element.children) collect(child);
    for (const Element& attachment : element.attachments) collect(attachment);
    if (const auto* section = element.as<elements::Section>(); section && section->rowCount > 0)
      collect(section->row(0));
  }

 private:
  void add(const String& key) {
    if (!key.empty()) found.insert(key.str());
  }
  void note(const elements::Text& text) {
    if (!text.isVerbatim) add(text.text);
  }
  void note(const elements::Label& label) {
    if (!label.isVerbatim) add(label.title);
  }
  void note(const elements::Toggle& toggle) { add(toggle.label); }
  void note(const elements::Section& section) { add(section.header); }
  void note(const elements::ConfirmationDialog& dialog) {
    add(dialog.title);
    add(dialog.message);
  }
  void note(const modifiers::Help& help) { add(help.text); }
  void note(const modifiers::NavigationTitle& title) { add(title.title); }
  void note(const modifiers::AccessibilityLabel& label) { add(label.text); }
  template <typename Other>
  void note(const Other&) {}
};

TEST(Localization, everyFixedTextOfTheWindowIsInTheTable) {
  SimulatedDesktop desktop;
  desktop.app("editor").opensWindow();
  desktop.show<ContentView>();
  Keys keys;
  const auto look = [&] { keys.collect(*desktop.window().graph().tree()); };
  const auto copy = [&](const auto& content) {
    desktop.app("editor").copies(content);
    desktop.advance(300ms);
    look();
  };
  look();
  copy("plain");
  copy(simulated::ItemContent{{"public.rtf", "{\\rtf1 rich}"}, {"public.utf8-plain-text", "rich"}});
  copy(simulated::ItemContent{{"public.file-url", "/home/ada/report.pdf"}});
  copy(simulated::ItemContent{{"public.png", "a picture"}});
  EXPECT_THAT(keys.found, AllOf(Contains("Active"), Contains("Are you sure?"), Contains("Show in Finder"),
                                Contains("Rich Text"), Contains("Cannot preview content")))
      << "the tour has come by all variants";
  for (const std::string& key : keys.found) EXPECT_NE(localizedStringFor(key), nullptr) << key;
}

TEST(Localization, theTableIsCompleteAndWithoutASecondHome) {
  std::set<std::string_view> keys;
  for (const LocalizedString& each : kLocalizedStrings) {
    EXPECT_TRUE(keys.insert(each.key).second) << each.key;
    EXPECT_FALSE(each.english.empty() || each.german.empty()) << each.key;
    EXPECT_EQ(std::ranges::count(each.english, '&'), std::ranges::count(each.german, '&')) << each.key;
    EXPECT_EQ(std::ranges::count(each.english, '\n'), std::ranges::count(each.german, '\n')) << each.key;
  }
}

TEST(NSBundle, speaksTheFirstLanguageThatItKnows) {
  const auto spoken = [](std::vector<std::string> languages) {
    return NSBundle(languages).localizedStringForKey("Cancel").str();
  };
  EXPECT_EQ(spoken({}), "Cancel");
  EXPECT_EQ(spoken({"fr_FR", "de_AT.UTF-8", "en"}), "Abbrechen");
  EXPECT_EQ(spoken({"en_GB", "de"}), "Cancel");
  EXPECT_EQ(spoken({"den", "d", ""}), "Cancel");
  const NSBundle german({"de"});
  EXPECT_EQ(german.localizedStringForKey("5 sec ago"), "5 sec ago") << "what no table has";
  EXPECT_EQ(NSBundle().localizedStringForKey("Show in Finder"), "Show in File Manager");
}

}  // namespace
}  // namespace tarnix
