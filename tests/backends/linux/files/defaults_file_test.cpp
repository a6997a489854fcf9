#include "backends/linux/files/defaults_file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <utility>
#include <vector>

#include "backends/linux/files/base_directories.h"
#include "backends/linux/files/property_list_reader.h"
#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Kind = StorageFailure::Kind;

class DefaultsFileTest : public ::testing::Test {
 protected:
  std::unique_ptr<FileDefaultsStorage> open() { return open(file_); }
  std::unique_ptr<FileDefaultsStorage> open(const std::filesystem::path& file) {
    return std::make_unique<FileDefaultsStorage>(
        file, [this](const StorageFailure& failure) { reports_.push_back(failure.kind); });
  }
  // What the next process would find.
  PropertyList::Dictionary stored() { return FileDefaultsStorage(file_).contents(); }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(file_.parent_path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  static mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
  }

  TemporaryDirectory directory_;
  std::filesystem::path file_ = directory_ / "home" / "tarnix" / "settings.plist";
  std::vector<Kind> reports_;
};

TEST_F(DefaultsFileTest, keepsValuesPrivatelyForTheNextProcess) {
  const mode_t former = ::umask(0);
  open()->setObject("watching", {true});
  open()->setObject("count", {std::int64_t{3}});
  open()->removeObject("watching");
  ::umask(former);
  EXPECT_THAT(stored(), UnorderedElementsAre(testing::Pair("count", PropertyList{std::int64_t{3}})));
  EXPECT_EQ(modeOf(file_), 0600U);
  EXPECT_EQ(modeOf(file_.parent_path()), 0700U);
  EXPECT_THAT(names(), UnorderedElementsAre("settings.plist", "settings.plist.lock"));
  EXPECT_THAT(reports_, IsEmpty());
}

TEST_F(DefaultsFileTest, readingLeavesNoTrace) {
  EXPECT_THAT(open()->contents(), IsEmpty());
  EXPECT_FALSE(std::filesystem::exists(directory_ / "home"));
}

TEST_F(DefaultsFileTest, tightensTheModeOfAFileThatOthersCouldRead) {
  open()->setObject("a", {true});
  ASSERT_EQ(::chmod(file_.c_str(), 0644), 0);
  open()->setObject("a", {false});
  EXPECT_EQ(modeOf(file_), 0600U);
}

TEST_F(DefaultsFileTest, mergesWithWhatOthersWroteMeanwhile) {
  const auto first = open(), second = open();
  first->setObject("a", {true});
  second->setObject("b", {true});
  first->setObject("c", {true});
  second->removeObject("a");
  EXPECT_THAT(stored(), UnorderedElementsAre(testing::Key("b"), testing::Key("c")));
  EXPECT_THAT(first->contents(), UnorderedElementsAre(testing::Key("a"), testing::Key("c")));
}

TEST_F(DefaultsFileTest, keepsEveryDamagedFileAndStartsAnew) {
  const std::string damages[] = {"one", "<plist version=\"1.0\"><true/></plist>",
                                 std::string(kPropertyListSizeLimit + 1, ' ')};
  for (const std::string& damage : damages) {
    writeFile(file_, damage);
    const auto storage = open();
    EXPECT_THAT(storage->contents(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(file_)) << "it is set aside at once";
    storage->setObject("key", {true});
    EXPECT_THAT(stored(), UnorderedElementsAre(testing::Key("key")));
  }
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(contentsOf(file_.string() + ".damaged-" + std::to_string(i + 1)), damages[i]);
  }
  EXPECT_THAT(reports_, ElementsAre(Kind::damaged, Kind::damaged, Kind::damaged));
}

TEST_F(DefaultsFileTest, damageWhileRunningCostsNoSettingAndIsReportedEachTime) {
  const auto storage = open();
  storage->setObject("a", {true});
  for (std::size_t damage = 1; damage <= 2; ++damage) {
    writeFile(file_, "damaged");
    storage->setObject("b", {true});  // The second time it was so before.
    EXPECT_THAT(stored(), UnorderedElementsAre(testing::Key("a"), testing::Key("b")));
    EXPECT_THAT(reports_, testing::SizeIs(damage));
  }
}

TEST_F(DefaultsFileTest, aPlaceThatCannotBeMadeIsReportedOnceAndTriedAgain) {
  writeFile(directory_ / "home", "a file where a directory is wanted");
  const auto storage = open();
  reports_.clear();
  storage->setObject("a", {true});
  storage->setObject("b", {true});
  storage->setObject("escape", {String("\x1b")});  // Holds up none of those that wait with it.
  EXPECT_THAT(reports_, ElementsAre(Kind::unreachable));
  EXPECT_EQ(storage->object("a"), PropertyList{true});
  std::filesystem::remove(directory_ / "home");
  storage->setObject("c", {true});
  EXPECT_THAT(stored(), UnorderedElementsAre(testing::Key("a"), testing::Key("b"), testing::Key("c")));
}

TEST_F(DefaultsFileTest, whatIsNoFileOfOursIsLeftAlone) {
  std::filesystem::create_directories(file_);
  const auto first = open();
  first->setObject("a", {true});
  EXPECT_TRUE(std::filesystem::is_directory(file_));
  std::filesystem::remove(file_);
  ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
  const auto second = open();
  second->setObject("a", {true});
  EXPECT_TRUE(std::filesystem::is_fifo(file_));
  EXPECT_THAT(reports_, ElementsAre(Kind::notAFile, Kind::notAFile)) << "once each";
  for (const auto* const storage : {first.get(), second.get()}) {
    EXPECT_EQ(storage->object("a"), PropertyList{true});
  }
}

TEST_F(DefaultsFileTest, aFileOfAnotherUserIsNeitherReadNorReplaced) {
  open()->setObject("a", {true});
  if (::geteuid() == 0) {
    ASSERT_EQ(::chown(file_.c_str(), 12345, 12345), 0);
  } else {
    std::filesystem::remove(file_);
    std::filesystem::create_symlink("/etc/passwd", file_);
  }
  const std::string before = contentsOf(file_);
  const auto storage = open();
  EXPECT_THAT(storage->contents(), IsEmpty());
  storage->setObject("b", {true});
  EXPECT_THAT(reports_, ElementsAre(Kind::foreignOwner));
  EXPECT_EQ(contentsOf(file_), before);
  EXPECT_EQ(storage->object("b"), PropertyList{true});
}

TEST_F(DefaultsFileTest, nothingIsMadeInADirectoryOfAnotherUser) {
  const bool isRoot = ::geteuid() == 0;
  ASSERT_TRUE(!isRoot || ::chown(directory_.path().c_str(), 12345, 12345) == 0);
  const std::filesystem::path file = isRoot ? directory_ / "settings.plist" : "/tarnix-settings.plist";
  const auto storage = open(file);
  storage->setObject("a", {true});
  storage->setObject("b", {true});
  EXPECT_THAT(reports_, ElementsAre(Kind::foreignOwner));
  EXPECT_THAT(storage->contents(), testing::SizeIs(2));
  EXPECT_FALSE(std::filesystem::exists(file) || std::filesystem::exists(file.string() + ".lock"));
}

TEST_F(DefaultsFileTest, aLinkedFileIsReplacedAtItsTarget) {
  const std::filesystem::path target = directory_ / "dotfiles" / "settings.plist";
  std::filesystem::create_directories(file_.parent_path());
  std::filesystem::create_directories(target.parent_path());
  std::filesystem::create_symlink("../../dotfiles/settings.plist", file_);
  for (const char* const key : {"whileTheTargetIsMissing", "whileItIsThere"}) {
    open()->setObject(key, {true});
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
    EXPECT_THAT(FileDefaultsStorage(target).contents(), testing::Contains(testing::Key(key)));
  }
  EXPECT_EQ(modeOf(target), 0600U);
  EXPECT_THAT(names(), ElementsAre("settings.plist"));
}

TEST_F(DefaultsFileTest, linksThatSomebodyPlantedAreNotFollowed) {
  open()->setObject("a", {true});
  writeFile(directory_ / "victim", "precious");
  std::filesystem::create_symlink(directory_ / "victim", file_.string() + ".new");
  open()->setObject("b", {true});
  EXPECT_THAT(stored(), testing::SizeIs(2));
  EXPECT_THAT(reports_, IsEmpty());
  std::filesystem::remove(file_.string() + ".lock");
  std::filesystem::create_symlink(directory_ / "victim", file_.string() + ".lock");
  const auto storage = open();
  storage->setObject("c", {true});
  storage->setObject("d", {true});
  EXPECT_THAT(std::exchange(reports_, {}), ElementsAre(Kind::unwritable));
  EXPECT_EQ(contentsOf(directory_ / "victim"), "precious");
  EXPECT_THAT(stored(), testing::SizeIs(2));
  std::filesystem::remove(file_.string() + ".lock");
  storage->setObject("e", {true});
  EXPECT_EQ(stored(), storage->contents()) << "what waited is there too";

  std::filesystem::remove(file_);
  std::filesystem::create_symlink(file_, file_);
  const auto circular = open();
  circular->setObject("f", {true});
  EXPECT_THAT(reports_, ElementsAre(Kind::unreachable));
  EXPECT_EQ(circular->object("f"), PropertyList{true});
}

TEST_F(DefaultsFileTest, whatTheFormatCannotHoldStaysInMemoryAndHoldsUpNothing) {
  const auto storage = open();
  storage->setObject("a", {true});
  storage->setObject("escape", {String("\x1b")});
  storage->setObject("huge", {String(std::string(kPropertyListSizeLimit, 'x'))});
  storage->setObject("b", {true});
  EXPECT_THAT(reports_, ElementsAre(Kind::unrepresentable, Kind::tooLarge));
  EXPECT_EQ(storage->object("escape"), PropertyList{String("\x1b")});
  EXPECT_THAT(stored(), UnorderedElementsAre(testing::Key("a"), testing::Key("b")));
}

TEST_F(DefaultsFileTest, doesNotWaitForEverForAnotherProcess) {
  open()->setObject("a", {true});
  const FileDescriptor lock(::open((file_.string() + ".lock").c_str(), O_RDWR | O_CLOEXEC));
  ASSERT_EQ(::flock(lock.get(), LOCK_EX), 0);
  auto storage = open();
  storage->setObject("b", {true});
  EXPECT_THAT(reports_, ElementsAre(Kind::busy));
  EXPECT_THAT(stored(), testing::SizeIs(1));
  ASSERT_EQ(::flock(lock.get(), LOCK_UN), 0);
  storage.reset();
  EXPECT_THAT(stored(), testing::SizeIs(2));
}

TEST(BaseDirectories, followTheEnvironmentAndIgnoreRelativePaths) {
  std::map<std::string, const char*> variables;
  const Environment environment = [&](const char* name) { return variables[name]; };
  EXPECT_EQ(defaultSettingsFile(environment), std::nullopt);
  EXPECT_THAT(applicationDirectories(environment),
              ElementsAre("/usr/local/share/applications", "/usr/share/applications"));
  variables = {{"HOME", "/h"}, {"XDG_CONFIG_HOME", "relative"}, {"XDG_DATA_DIRS", "/a:b::/c/"}};
  EXPECT_EQ(defaultSettingsFile(environment), "/h/.config/tarnix/settings.plist");
  EXPECT_THAT(applicationDirectories(environment),
              ElementsAre("/h/.local/share/applications", "/a/applications", "/c/applications"));
  variables["XDG_CONFIG_HOME"] = "/x";
  EXPECT_EQ(defaultSettingsFile(environment), "/x/tarnix/settings.plist");
  EXPECT_EQ(suiteSettingsFile("a.b", environment), "/x/tarnix/suites/a.b.plist");
}

}  // namespace
}  // namespace tarnix::linux_desktop
