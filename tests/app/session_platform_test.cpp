#include "app/session_platform.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "backends/linux/files/defaults_file.h"
#include "backends/linux/poll_driver.h"
#include "backends/x11/clipboard/pasteboard.h"
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
    for (const std::string name : {"Writer", "Painter"}) {
      std::ofstream(std::filesystem::path(folder_) / ("applications/org.example." + name + ".desktop"))
          << "[Desktop Entry]\nType=Application\nName=" << name << "\nExec=" << name
          << "\nStartupWMClass=Example" << name << "\n";
    }
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
    start(arguments);
    if (!driver_.runUntil([&] { return view_->clipboard->size() > before; }, 20s)) return std::nullopt;
    return view_->clipboard->back();
  }

  void start(const std::vector<std::string>& command) {
    programs_.emplace_back(command, test::Process::Options{.environment = {{"DISPLAY", server_.display()}}});
  }
  // Puts the rearmost window in front and gives it the keyboard.
  void swapWindows() {
    xcb_connection_t* const xcb = session_->connection().xcb();
    const xcb_window_t root = session_->connection().screen().root;
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    const x11::Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, root), nullptr));
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
      const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
      const x11::Owned<xcb_get_window_attributes_reply_t> attributes(
          xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, window), nullptr));
      if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) continue;
      xcb_configure_window(xcb, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
      xcb_set_input_focus(xcb, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
      break;
    }
    xcb_flush(xcb);
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

TEST_F(SessionPlatformTest, aCopyIsOfItsOwnerAndElseOfTheWindowInFront) {
  ASSERT_TRUE(copy({"--text", "written", "--window", "ExampleWriter"}));
  swapWindows();
  const auto tool = copy({"--text", "by a program without a window"});
  ASSERT_TRUE(tool.has_value());
  EXPECT_EQ(tool->sourceAppId, std::nullopt) << "the window in front went with its program";
  const auto unknown = copy({"--text", "by a program without an entry", "--window", "Unknown"});
  ASSERT_TRUE(unknown.has_value());
  const auto program = std::filesystem::canonical(TARNIX_SCRIPTED_OWNER).string();
  EXPECT_EQ(unknown->sourceAppId, String("exe:" + program));
  ASSERT_TRUE(unknown->sourceAppURL.has_value());
  EXPECT_EQ(unknown->sourceAppURL->path(), String(program));
}

TEST_F(SessionPlatformTest, noFocusThatMovesOnMakesAnotherProgramTheSource) {
  for (const std::string name : {"Writer", "Painter"}) {
    start({TARNIX_SCRIPTED_OWNER, "flood", "100", "--interval", "70", "--text", name, "--window",
           "Example" + name, "--stay", "yes"});
    driver_.runUntil([] { return false; }, 35ms);
  }
  const auto jumps = loop_->scheduleTimer(20ms, {}, [this] { swapWindows(); });
  driver_.runUntil([] { return false; }, 7s);
  // The first may have come while a window was not there yet.
  ASSERT_GT(view_->clipboard->size(), 5U);
  for (std::size_t i = 1; i < view_->clipboard->size(); ++i) {
    const ClipboardItem& clip = (*view_->clipboard)[i];
    const std::string name = clip.title.hasPrefix("Writer") ? "Writer" : "Painter";
    EXPECT_EQ(clip.sourceAppId, String("org.example." + name)) << clip.title.str();
  }
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
