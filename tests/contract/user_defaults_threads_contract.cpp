#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <thread>

#include "contract/user_defaults_contract.h"

namespace tarnix::test {
namespace {

using ::testing::Each;

constexpr int kThreads = 4;
constexpr int kRounds = 12;

void onThreads(const std::function<void(int)>& body) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(body, i);
  for (std::thread& each : threads) each.join();
}

PropertyList number(int value) { return {std::int64_t{value}}; }

// Text and a dictionary that say the same, so that a reader notices half a value.
PropertyList pairOf(int value) {
  const String text(std::string(100, static_cast<char>('a' + value % 26)));
  return {PropertyList::Dictionary{{"first", {text}}, {"second", {PropertyList::Array{{text}}}}}};
}

bool isWhole(const PropertyList& pair) {
  const auto* const entries = pair.as<PropertyList::Dictionary>();
  return entries != nullptr && entries->at("first") == entries->at("second").as<PropertyList::Array>()->at(0);
}

}  // namespace

TEST_P(UserDefaultsContract, readersNeverSeeHalfAValueWhileOthersWrite) {
  set("pair", pairOf(0).value);
  std::atomic<int> writing = kThreads / 2;
  std::atomic<int> torn = 0;
  onThreads([&](int thread) {
    if (thread % 2 == 0) {
      for (int i = 0; i < kRounds; ++i) defaults->setObject(pairOf(thread * kRounds + i), "pair");
      --writing;
    }
    do {
      const auto found = defaults->objectForKey("pair");
      if (!found || !isWhole(*found) || !isWhole(defaults->dictionaryRepresentation().at("pair"))) ++torn;
    } while (writing > 0);
  });
  EXPECT_EQ(torn, 0);
}

TEST_P(UserDefaultsContract, changesAreToldOnTheThreadThatMakesThemInTheirOrder) {
  std::vector<std::shared_ptr<NotingObserver>> observers;
  std::vector<std::thread::id> threads(kThreads);
  for (int i = 0; i < kThreads; ++i) observers.push_back(observer("own " + std::to_string(i), "no"));
  const auto shared = observer("shared", "n");
  onThreads([&](int thread) {
    threads[static_cast<std::size_t>(thread)] = std::this_thread::get_id();
    for (int i = 0; i < kRounds; ++i) {
      defaults->setObject(number(i), "own " + std::to_string(thread));
      defaults->setObject(number(thread * kRounds + i), "shared");
    }
  });
  for (std::size_t i = 0; i < observers.size(); ++i) {
    const auto notes = observers[i]->take();
    ASSERT_EQ(notes.size(), std::size_t{kRounds});
    for (int round = 0; round < kRounds; ++round) {
      const auto& note = notes[static_cast<std::size_t>(round)];
      EXPECT_EQ(note.thread, threads[i]);
      EXPECT_EQ(std::get<PropertyList>(*note.change.newValue), number(round));
      const auto* const old = std::get_if<PropertyList>(&*note.change.oldValue);
      EXPECT_TRUE(round == 0 ? old == nullptr : *old == number(round - 1));
    }
  }
  EXPECT_EQ(shared->take().size(), std::size_t{kThreads * kRounds});
  restart();
  for (int i = 0; i < kThreads; ++i) {
    EXPECT_EQ(defaults->objectForKey("own " + std::to_string(i)), number(kRounds - 1));
  }
}

}  // namespace tarnix::test
