#include "app/session_platform.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "backends/linux/defaults_file.h"
#include "backends/linux/poll_driver.h"
#include "backends/x11/pasteboard.h"
#include "backends/x11/x_server.h"
#include "history/content_view.h"
#include "platform/swiftui/view_graph.h"
#include "support/process.h"

namespace tarnix {
namespace {

using namespace std::chrono_literals;
using ::testing::EndsWith;

// The whole program but its widgets, in a session with one installed application.
class SessionPlatformTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    std::filesystem::create_directories(std::filesystem::path(folder_) / "applications");
    std::ofstream(std::filesystem::path(folder_) / "applications/org.example.Writer.desktop")
        << "[Desktop Entry]\nType=Application\nName=Writer\nExec=writer\nStartupWMClass=ExampleWriter\n";
    for (const char* name : {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME"}) {
      ASSERT_EQ(setenv(name, folder_.c_str(), 1), 0);
    }
    auto opened = x11::Session::open(server_.display(), *loop_);
    ASSERT_TRUE(opened) << opened.error().detail;
    session_ = std::move(*opened);
    platform_.emplace(sessionPlatform(*session_, loop_));
    view_.emplace();
    graph_ = std::make_unique<ViewGraph>(View(*view_), *loop_);
  }

  void TearDown() override {
    graph_.reset();
    view_.reset();
    platform_.reset();
    std::filesystem::remove_all(folder_);
  }

  // The clip of what a scripted owner copies.
  std::optional<ClipboardItem> copy(std::vector<std::string> arguments) {
    const std::size_t before = view_->clipboard->size();
    arguments.insert(arguments.begin(), {TARNIX_SCRIPTED_OWNER, "good"});
    programs_.emplace_back(arguments,
                           test::Process::Options{.environment = {{"DISPLAY", server_.display()}}});
    if (!driver_.runUntil([&] { return view_->clipboard->size() > before; }, 20s)) return std::nullopt;
    return view_->clipboard->back();
  }

  std::string folder_ = (std::filesystem::temp_directory_path() / "tarnix-session-XXXXXX").string();
  x11::testing::XServer server_;
  std::shared_ptr<RunLoop> loop_ = std::make_shared<RunLoop>(linux_desktop::steadyClock());
  linux_desktop::PollDriver driver_{*loop_};
  std::unique_ptr<x11::Session> session_;
  std::optional<PlatformScope> platform_;
  std::optional<ContentView> view_;
  std::unique_ptr<ViewGraph> graph_;
  std::vector<test::Process> programs_;
};

TEST_F(SessionPlatformTest, aCopyCarriesTheApplicationOfTheWindowInFront) {
  const auto clip = copy({"--text", "written", "--window", "ExampleWriter"});
  ASSERT_TRUE(clip.has_value());
  EXPECT_EQ(clip->possibleText, String("written"));
  EXPECT_EQ(clip->sourceAppId, String("org.example.Writer"));
  ASSERT_TRUE(clip->sourceAppURL.has_value());
  EXPECT_THAT(clip->sourceAppURL->path().str(), EndsWith("applications/org.example.Writer.desktop"));
  EXPECT_TRUE(clip->date.has_value());
}

TEST_F(SessionPlatformTest, aMarkerNamesTheApplicationWhateverIsInFront) {
  const auto clip = copy({"--text", "marked", "--source", "org.example.Writer", "--window", "Another"});
  ASSERT_TRUE(clip.has_value());
  EXPECT_EQ(clip->sourceAppId, String("org.example.Writer"));
  EXPECT_TRUE(clip->sourceAppURL.has_value());
  const auto foreign = copy({"--text", "marked", "--source", "org.example.Unknown"});
  ASSERT_TRUE(foreign.has_value());
  EXPECT_EQ(foreign->sourceAppId, String("org.example.Unknown"));
  EXPECT_FALSE(foreign->sourceAppURL.has_value());
}

TEST_F(SessionPlatformTest, aCopyOfAnUnknownProgramHasNoSource) {
  const auto clip = copy({"--text", "from nowhere"});
  ASSERT_TRUE(clip.has_value());
  EXPECT_FALSE(clip->sourceAppId.has_value());
  EXPECT_TRUE(clip->date.has_value());
}

class Told final : public NSObject {
 public:
  void observeValueForKeyPath(const String&, const std::shared_ptr<NSObject>&,
                              const NSKeyValueChangeDictionary*, void*) override {
    ++times;
  }
  int times = 0;
};

TEST_F(SessionPlatformTest, settingsAndSuitesAreFilesThatOtherProcessesMayWrite) {
  const auto settings = std::filesystem::path(folder_) / "tarnix";
  const std::pair<std::shared_ptr<NSUserDefaults>, std::filesystem::path> suites[] = {
      {NSUserDefaults::standardUserDefaults(), settings / "settings.plist"},
      {NSUserDefaults::initWithSuiteName("org.example.suite"), settings / "suites/org.example.suite.plist"}};
  for (const auto& [defaults, file] : suites) {
    const auto observer = std::make_shared<Told>();
    defaults->addObserver(observer, "theirs", 0, nullptr);
    linux_desktop::FileDefaultsStorage(file).setObject("theirs", {true});
    EXPECT_TRUE(driver_.runUntil([&] { return observer->times > 0; }, 20s)) << file;
    EXPECT_EQ(defaults->objectForKey("theirs"), PropertyList{true});
    defaults->setObject(PropertyList{String("text")}, "ours");
    EXPECT_EQ(linux_desktop::FileDefaultsStorage(file).object("ours"), PropertyList{String("text")});
  }
}

}  // namespace
}  // namespace tarnix
