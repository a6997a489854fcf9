#include "platform/foundation/defaults/user_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "platform/foundation/defaults/defaults_suites.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A storage whose other processes are this test.
class SharedStorage final : public DefaultsStorage {
 public:
  std::optional<PropertyList> object(const String& key) const override { return own_.object(key); }
  PropertyList::Dictionary contents() const override { return own_.contents(); }
  void setObject(const String& key, const PropertyList& object) override { own_.setObject(key, object); }
  void removeObject(const String& key) override { own_.removeObject(key); }
  void setForeignChangeHandler(std::function<void()> handler) override { handler_ = std::move(handler); }
  std::vector<String> takeForeignChanges() override { return std::exchange(foreign_, {}); }

  // Another process sets both to the same.
  void changeElsewhere(const String& first, const String& second, std::int64_t value) {
    for (const String& key : {first, second}) own_.setObject(key, {value});
    foreign_ = {first, second};
    if (handler_) handler_();
  }

 private:
  MemoryDefaultsStorage own_;
  std::function<void()> handler_;
  std::vector<String> foreign_;
};

class Lines final : public NSObject {
 public:
  void observeValueForKeyPath(const String& keyPath, const std::shared_ptr<NSObject>&,
                              const NSKeyValueChangeDictionary* change, void*) override {
    const auto text = [](const auto& value) -> std::string {
      if (!value) return "-";
      const auto* const list = std::get_if<PropertyList>(&*value);
      return list == nullptr ? "null" : std::to_string(*list->template as<std::int64_t>());
    };
    lines.push_back(keyPath.str() + ": " + text(change->oldValue) + " -> " + text(change->newValue));
    if (const auto call = then) call();  // A copy, since it may put an end to itself.
  }

  std::vector<std::string> lines;
  std::function<void()> then;
};

TEST(NSUserDefaults, tellsOfWhatOtherProcessesChangeAsOfItsOwn) {
  auto storage = std::make_unique<SharedStorage>();
  SharedStorage& shared = *storage;
  const auto defaults = NSUserDefaults::make(std::move(storage));
  const auto observer = std::make_shared<Lines>();
  for (const char* key : {"a", "b"}) defaults->addObserver(observer, key, 3, nullptr);
  shared.changeElsewhere("a", "b", 1);
  EXPECT_THAT(std::exchange(observer->lines, {}), ElementsAre("a: null -> 1", "b: null -> 1"));
  EXPECT_EQ(defaults->objectForKey("b"), PropertyList{std::int64_t{1}});

  observer->then = [&] {
    observer->then = nullptr;
    defaults->setObject(PropertyList{std::int64_t{3}}, "b");
  };
  shared.changeElsewhere("a", "b", 2);
  EXPECT_THAT(observer->lines, ElementsAre("a: 1 -> 2", "b: 1 -> 3", "b: 3 -> 3"))
      << "what is written here meanwhile stays";
  EXPECT_EQ(defaults->objectForKey("b"), PropertyList{std::int64_t{3}});
}

TEST(DefaultsSuites, opensEachSuiteOnceAndKeepsIt) {
  std::vector<std::string> opened;
  DefaultsSuites suites([&](const String& name) {
    opened.push_back(name.str());
    return std::make_unique<MemoryDefaultsStorage>();
  });
  suites.named("org.example.a")->setObject(PropertyList{true}, "key");
  const auto other = suites.named("org.example.b");
  EXPECT_EQ(suites.named("org.example.a")->objectForKey("key"), PropertyList{true});
  EXPECT_EQ(other, suites.named("org.example.b"));
  EXPECT_EQ(other->objectForKey("key"), std::nullopt);
  EXPECT_THAT(opened, ElementsAre("org.example.a", "org.example.b"));
}

TEST(DefaultsSuites, refusesNamesThatAreNoFileNames) {
  std::vector<std::string> opened;
  DefaultsSuites suites([&](const String& name) {
    opened.push_back(name.str());
    return std::make_unique<MemoryDefaultsStorage>();
  });
  const String refused[] = {"",
                            ".",
                            "..",
                            ".hidden",
                            "-option",
                            "_",
                            "a/b",
                            "a b",
                            "a\\b",
                            "\u00e4",
                            "a\n",
                            std::string_view("a\0", 2),
                            "../settings",
                            "a:b",
                            "a%2f",
                            std::string(101, 'a')};
  for (const String& name : refused) EXPECT_EQ(suites.named(name), nullptr) << name.str();
  EXPECT_THAT(opened, IsEmpty());
  for (const String& name : {String("a"), String("9"), String("A-b_c.d"), String(std::string(100, 'a'))}) {
    EXPECT_NE(suites.named(name), nullptr) << name.str();
  }
}

}  // namespace
}  // namespace tarnix
