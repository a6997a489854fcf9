#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

#include "backends/linux/files/defaults_file.h"
#include "backends/linux/files/file_size_limit.h"
#include "backends/linux/files/property_list_writer.h"
#include "backends/linux/poll_driver.h"
#include "backends/linux/temporary_directory.h"
#include "support/descriptor_limit.h"

namespace tarnix::linux_desktop {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using Kind = StorageFailure::Kind;

PropertyList number(std::int64_t value) { return {value}; }

// One process that follows the file; others are objects of their own on the same file.
class DefaultsFollowingTest : public ::testing::Test {
 protected:
  void follow() {
    storage_.emplace(
        file_, [this](const StorageFailure& failure) { reports_.push_back(failure.kind); }, &loop_);
    storage_->setForeignChangeHandler([this] {
      ++looks_;
      for (const String& key : storage_->takeForeignChanges()) changed_.push_back(key.str());
    });
    awaitLook();
  }
  void awaitLook() {
    looks_ = 0;
    EXPECT_TRUE(driver_.runUntil([&] { return looks_ > 0; }, 5s));
  }
  // The keys that are found changed, beside the one that another process changes now.
  std::vector<std::string> changedBefore(const char* mark) {
    elsewhere()->setObject(mark, {++marks_});
    EXPECT_TRUE(driver_.runUntil([&] { return std::ranges::count(changed_, mark) == 1; }, 5s));
    std::erase(changed_, mark);
    return std::exchange(changed_, {});
  }
  std::unique_ptr<FileDefaultsStorage> elsewhere() { return std::make_unique<FileDefaultsStorage>(file_); }
  // As a program does that keeps to no lock.
  void replace(const std::string& contents) {
    const std::filesystem::path other = directory_ / "replacement";
    writeFile(other, contents);
    std::filesystem::create_directories(file_.parent_path());
    std::filesystem::rename(other, file_);
  }
  void replace(const PropertyList::Dictionary& dictionary) { replace(*xmlPropertyList({dictionary})); }

  RunLoop loop_{steadyClock()};
  PollDriver driver_{loop_};
  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "tarnix" / "settings.plist";
  std::vector<Kind> reports_;
  std::optional<FileDefaultsStorage> storage_;
  std::vector<std::string> changed_;
  int looks_ = 0;
  std::int64_t marks_ = 0;
};

TEST_F(DefaultsFollowingTest, takesInWhatOthersWrite) {
  replace({{"kept", number(1)}, {"removed", number(1)}, {"changed", number(1)}});
  follow();
  EXPECT_THAT(changed_, IsEmpty());
  const PropertyList::Dictionary after = {{"kept", number(1)}, {"changed", number(2)}, {"added", number(2)}};
  replace(after);
  awaitLook();
  EXPECT_THAT(changed_, ElementsAre("added", "changed", "removed"));
  EXPECT_EQ(storage_->contents(), after);
  writeFile(file_, *xmlPropertyList({PropertyList::Dictionary{{"inPlace", {true}}}}));
  awaitLook();
  EXPECT_EQ(storage_->object("inPlace"), PropertyList{true});
  EXPECT_THAT(reports_, IsEmpty());
}

TEST_F(DefaultsFollowingTest, noticesAFileThatComesGoesAndComesAgain) {
  follow();
  EXPECT_THAT(changedBefore("mark"), IsEmpty());
  for (int round = 0; round < 2; ++round) {
    std::filesystem::remove_all(file_.parent_path());
    EXPECT_TRUE(driver_.runUntil([&] { return storage_->contents().empty(); }, 5s));
    EXPECT_THAT(std::exchange(changed_, {}), ElementsAre("mark"));
    EXPECT_THAT(changedBefore("mark"), IsEmpty());
  }
  EXPECT_THAT(reports_, IsEmpty());
}

TEST_F(DefaultsFollowingTest, ownChangesAreNotForeign) {
  follow();
  storage_->setObject("own", number(1));
  storage_->setObject("date", {Date{Date::Interval(0.75)}});  // The file keeps whole seconds only,
  storage_->setObject("none", {NAN});                         // and this equals nothing.
  EXPECT_THAT(changedBefore("mark"), IsEmpty());
  elsewhere()->setObject("theirs", number(1));
  storage_->setObject("own", number(2));  // Finds and merges theirs.
  EXPECT_THAT(changedBefore("mark"), ElementsAre("theirs"));
  EXPECT_EQ(storage_->object("theirs"), number(1));
  EXPECT_EQ(storage_->object("own"), number(2));
  EXPECT_EQ(storage_->object("date"), (PropertyList{Date{Date::Interval(0.75)}}));
}

TEST_F(DefaultsFollowingTest, valuesThatWaitToBeWrittenStandInFrontOfForeignOnes) {
  follow();
  storage_->setObject("escape", {String("\x1b")});
  {
    const FileSizeLimit limit(0);
    storage_->setObject("unwritten", number(1));
  }
  elsewhere()->setObject("escape", {String("theirs")});
  elsewhere()->setObject("unwritten", {String("theirs")});
  EXPECT_THAT(changedBefore("mark"), IsEmpty());
  EXPECT_EQ(storage_->object("escape"), PropertyList{String("\x1b")});
  EXPECT_EQ(storage_->object("unwritten"), number(1));
  storage_->setObject("own", number(1));
  EXPECT_EQ(elsewhere()->object("unwritten"), number(1));
  EXPECT_EQ(elsewhere()->object("escape"), PropertyList{String("theirs")});
  EXPECT_THAT(reports_, ElementsAre(Kind::unrepresentable, Kind::noSpace));
}

TEST_F(DefaultsFollowingTest, aDamagedFileChangesNothingAndIsReportedOnce) {
  follow();
  storage_->setObject("own", number(1));
  for (const char* const damage : {"<plist>", "damaged in another way"}) {
    replace(std::string(damage));
    awaitLook();
  }
  EXPECT_EQ(storage_->object("own"), number(1));
  EXPECT_THAT(reports_, ElementsAre(Kind::damaged));
  EXPECT_EQ(contentsOf(file_), "damaged in another way");

  replace({{"repaired", number(1)}});
  awaitLook();
  EXPECT_THAT(std::exchange(changed_, {}), ElementsAre("own", "repaired"));
  replace("damaged again");
  awaitLook();
  storage_->setObject("new", number(1));
  EXPECT_THAT(reports_, ElementsAre(Kind::damaged, Kind::damaged));
  EXPECT_EQ(contentsOf(file_.string() + ".damaged-1"), "damaged again");
  EXPECT_THAT(elsewhere()->contents(), ElementsAre(Pair("new", number(1)), Pair("repaired", number(1))));
  EXPECT_THAT(changedBefore("mark"), IsEmpty());
}

TEST_F(DefaultsFollowingTest, whatIsNoFileOfOursChangesNothingAndIsReportedOnce) {
  follow();
  storage_->setObject("own", number(1));
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(file_.c_str(), 12345, 12345), 0);
  } else {
    std::filesystem::remove(file_);
    std::filesystem::create_symlink("/etc/passwd", file_);
  }
  awaitLook();
  std::filesystem::remove(file_);
  std::filesystem::create_directory(file_);
  awaitLook();
  storage_->setObject("own", number(2));
  EXPECT_THAT(storage_->contents(), ElementsAre(Pair("own", number(2))));
  EXPECT_THAT(reports_, ElementsAre(Kind::foreignOwner, Kind::notAFile));
  EXPECT_THAT(changed_, IsEmpty());
}

TEST_F(DefaultsFollowingTest, aRefusedWatchIsReportedOnce) {
  storage_.emplace(
      file_, [this](const StorageFailure& failure) { reports_.push_back(failure.kind); }, &loop_);
  int looks = 0;
  storage_->setForeignChangeHandler([&looks] { ++looks; });
  {
    RunLoop& loop = loop_;
    const test::DescriptorLimit limit;
    loop.runDue();
  }
  EXPECT_EQ(looks, 1);
  for (int taking = 0; taking < 2; ++taking) {
    storage_->takeForeignChanges();
    storage_->setObject("own", number(taking));
    EXPECT_THAT(reports_, ElementsAre(Kind::unwatched));
  }
}

TEST_F(DefaultsFollowingTest, looksByHandWithoutALoop) {
  FileDefaultsStorage alone(file_);
  elsewhere()->setObject("theirs", number(1));
  EXPECT_THAT(alone.takeForeignChanges(), ElementsAre("theirs"));
  EXPECT_THAT(alone.takeForeignChanges(), IsEmpty());
}

// What an observer of settings is told, on the thread of the loop.
class Observer final : public NSObject {
 public:
  void observeValueForKeyPath(const String&, const std::shared_ptr<NSObject>&,
                              const NSKeyValueChangeDictionary* change, void*) override {
    thread = std::this_thread::get_id();
    told.push_back(std::get<PropertyList>(*change->newValue));
    if (then) then();
  }

  std::thread::id thread;
  std::vector<PropertyList> told;
  std::function<void()> then;
};

constexpr auto kNewValue = static_cast<unsigned>(NSKeyValueObservingOptions::newValue);

TEST_F(DefaultsFollowingTest, observersHearOfOtherProcessesAndMayEndTheirOwnSettings) {
  auto defaults = NSUserDefaults::make(
      std::make_unique<FileDefaultsStorage>(file_, FileDefaultsStorage::Report(), &loop_));
  const auto observer = std::make_shared<Observer>();
  defaults->addObserver(observer, "key", kNewValue, nullptr);
  elsewhere()->setObject("key", number(1));
  EXPECT_TRUE(driver_.runUntil([&] { return observer->told.size() == 1; }, 5s));
  EXPECT_EQ(defaults->objectForKey("key"), number(1));
  observer->then = [&] {
    defaults.reset();
    loop_.runDue();  // As a dialog does.
  };
  elsewhere()->setObject("key", number(2));
  EXPECT_TRUE(driver_.runUntil([&] { return observer->told.size() == 2; }, 5s));
  EXPECT_THAT(observer->told, ElementsAre(number(1), number(2)));
  driver_.runUntil([&] { return loop_.watchedDescriptors().empty(); }, 5s);
  EXPECT_THAT(loop_.watchedDescriptors(), IsEmpty());
}

// Suites come and go on a thread of their own, while the loop runs on this one.
TEST_F(DefaultsFollowingTest, mayBeMadeUsedAndEndedOnAnotherThread) {
  std::atomic<bool> isDone = false;
  const auto observer = std::make_shared<Observer>();
  std::thread other([&] {
    for (int round = 0; round < 5; ++round) {
      const auto defaults = NSUserDefaults::make(
          std::make_unique<FileDefaultsStorage>(file_, FileDefaultsStorage::Report(), &loop_));
      defaults->addObserver(observer, "theirs", kNewValue, nullptr);
      for (int i = 0; i < 4; ++i) {
        defaults->setObject(number(i), "ours");
        elsewhere()->setObject("theirs", number(round * 10 + i));
      }
    }
    isDone = true;
    loop_.inbox()->perform([] {});
  });
  EXPECT_TRUE(driver_.runUntil([&] { return isDone && loop_.watchedDescriptors().empty(); }, 20s));
  other.join();
  EXPECT_EQ(elsewhere()->object("ours"), number(3));
  EXPECT_TRUE(observer->told.empty() || observer->thread == std::this_thread::get_id());
}

TEST_F(DefaultsFollowingTest, outlivesTheLoopThatItFollowsOn) {
  {
    RunLoop loop{steadyClock()};
    storage_.emplace(file_, FileDefaultsStorage::Report(), &loop);
    storage_->setForeignChangeHandler([] {});
    loop.runDue();
    EXPECT_THAT(loop.watchedDescriptors(), ::testing::SizeIs(1));
  }
  storage_->setObject("own", number(1));
  storage_.reset();
  EXPECT_EQ(elsewhere()->object("own"), number(1));
}

}  // namespace
}  // namespace tarnix::linux_desktop
