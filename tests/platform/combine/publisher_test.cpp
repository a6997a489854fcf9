#include "platform/combine/publisher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "platform/combine/observable_object.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SubjectTest : public testing::Test {
 protected:
  AnyCancellable record(std::vector<int>& received) {
    return subject->publisher().sink([&received](int value) { received.push_back(value); });
  }

  std::unique_ptr<Subject<int>> subject = std::make_unique<Subject<int>>();
  std::vector<int> first;
  std::vector<int> last;
};

TEST_F(SubjectTest, aSubscriberMayDropItselfAndOthersWhileItReceives) {
  AnyCancellable self;
  auto subscriptionOfFirst = record(first);
  AnyCancellable subscriptionOfLast;
  const auto captured = std::make_shared<int>(0);
  self = subject->publisher().sink([&, captured](int value) {
    self.cancel();
    subscriptionOfLast.cancel();
    *captured += value;  // The closure is still there.
  });
  subscriptionOfLast = record(last);
  subject->send(1);
  subject->send(2);
  EXPECT_THAT(first, ElementsAre(1, 2));
  EXPECT_THAT(last, IsEmpty());
  EXPECT_EQ(*captured, 1);
  EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(SubjectTest, aSubscriberAddedDuringASendWaitsForTheNext) {
  std::vector<AnyCancellable> added;
  const auto adder = subject->publisher().sink([&](int) { added.push_back(record(last)); });
  subject->send(1);
  EXPECT_THAT(last, IsEmpty());
  subject->send(2);
  EXPECT_THAT(last, ElementsAre(2));
}

TEST_F(SubjectTest, mayBeDestroyedByASubscriber) {
  const auto destroyer = subject->publisher().sink([&](int) { subject.reset(); });
  const auto after = record(last);
  EXPECT_FALSE(subject->send(1));
  EXPECT_THAT(last, ElementsAre(1));
}

TEST_F(SubjectTest, deliversANestedSendBeforeTheRestOfTheOuterOne) {
  const auto resender = subject->publisher().sink([&](int value) {
    if (value == 1) subject->send(2);
  });
  const auto recorder = record(last);
  EXPECT_TRUE(subject->send(1));
  EXPECT_THAT(last, ElementsAre(2, 1));
}

TEST_F(SubjectTest, publishersAndSubscriptionsOutliveIt) {
  const auto publisher = subject->publisher();
  auto subscription = record(first);
  subject.reset();
  subscription.cancel();
  const auto late = publisher.sink([&](int value) { last.push_back(value); });
  EXPECT_THAT(last, IsEmpty());
}

TEST(AnyCancellable, endsTheFormerSubscriptionOnceAndOnlyAfterTheNewIsInPlace) {
  int cancelled = 0;
  int replacedBy = 0;
  AnyCancellable subscription;
  subscription = AnyCancellable([&] {
    ++cancelled;
    subscription.cancel();  // Reaches the new one already.
  });
  subscription = AnyCancellable([&] { ++replacedBy; });
  EXPECT_EQ(cancelled, 1);
  EXPECT_EQ(replacedBy, 1);
}

TEST(Publisher, mayBeDestroyedByAValueThatArrivesDuringTheSubscription) {
  Subject<int> subject;
  std::vector<int> received;
  auto publisher = std::make_unique<Publisher<int>>(subject.publisher().prepend(1));
  const auto subscription = publisher->sink([&](int value) {
    publisher.reset();
    received.push_back(value);
  });
  subject.send(2);
  EXPECT_THAT(received, ElementsAre(1, 2));
}

TEST(Publisher, removeDuplicatesComparesWithTheLastPassedOfItsOwnSubscription) {
  Subject<int> subject;
  const auto publisher = subject.publisher().removeDuplicates();
  std::vector<int> early;
  std::vector<int> late;
  const auto first = publisher.sink([&](int value) { early.push_back(value); });
  for (const int value : {0, 0, 1}) subject.send(value);
  const auto second = publisher.sink([&](int value) { late.push_back(value); });
  for (const int value : {1, 0}) subject.send(value);
  EXPECT_THAT(early, ElementsAre(0, 1, 0));
  EXPECT_THAT(late, ElementsAre(1, 0));
}

struct Document : ObservableObject {
  Published<int> pages{this, 1};
};

TEST(Published, anObserverMayDestroyTheObject) {
  auto document = std::make_unique<Document>();
  const auto observation = document->objectWillChange().sink([&](const Void&) { document.reset(); });
  document->pages.set(2);
  EXPECT_EQ(document, nullptr);
}

}  // namespace
}  // namespace tarnix
