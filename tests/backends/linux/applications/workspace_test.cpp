#include "backends/linux/applications/workspace.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ApplicationFinder, readsApplicationIdsOutOfUnitNames) {
  EXPECT_THAT(applicationIdsOfUnit("app-gnome-org.gnome.Terminal-4711.scope"),
              ElementsAre("gnome-org.gnome.Terminal", "org.gnome.Terminal"));
  EXPECT_THAT(applicationIdsOfUnit("app-my\\x2dtool-12.scope"), ElementsAre("my-tool"));
  EXPECT_THAT(applicationIdsOfUnit("app-org.gnome.Terminal.slice"), ElementsAre("org.gnome.Terminal"));
  EXPECT_THAT(applicationIdsOfUnit("app-org.kde.dolphin@9b2f.service"), ElementsAre("org.kde.dolphin"));
  EXPECT_THAT(applicationIdsOfUnit("app-tool-autostart.service"), ElementsAre("tool"));
  EXPECT_THAT(applicationIdsOfUnit("dbus-:1.2-org.gnome.Maps@0.service"),
              ElementsAre(":1.2-org.gnome.Maps", "org.gnome.Maps"));
  EXPECT_THAT(applicationIdsOfUnit("app-cut\\x2-1.scope"), ElementsAre("cut\\x2"));
  for (const char* const other : {"", "session-2.scope", "app-", "app.slice", "app-x", "ssh.service"}) {
    EXPECT_THAT(applicationIdsOfUnit(other), IsEmpty()) << other;
  }
}

TEST(ApplicationFinder, readsSnapsOutOfUnitNames) {
  EXPECT_THAT(applicationIdsOfSnap("snap.code.code-insiders.scope"), ElementsAre("code_code-insiders"));
  EXPECT_THAT(applicationIdsOfSnap("snap.firefox.firefox-0a1b2c3d-0000-1111-2222-0123456789ab.scope"),
              testing::Contains("firefox_firefox"));
  for (const char* const other : {"snap.", "snap.x", "snapd.service"}) {
    EXPECT_THAT(applicationIdsOfSnap(other), IsEmpty()) << other;
  }
}

// A process table with one process, 100, that each test describes.
class WorkspaceTest : public ::testing::Test {
 protected:
  WorkspaceTest() {
    entry("org.example.Terminal", "Name=Terminal\nExec=terminal\n");
    entry("browser",
          "Name=Browser\nExec=/usr/bin/browser %u\nStartupWMClass=Browser-window\nIcon=browser-icon\n");
    entry("writer", "Name=Writer\nExec=office --writer %U\n");
    entry("calc", "Name=Calc\nExec=office --calc %U\n");
    entry("tool", "Name=Tool\nExec=python3 /usr/share/tool/tool.py\n");
    entry("python3", "Name=Python\nExec=python3\nTerminal=true\n");
    entry("firefox_firefox", "Name=Snap\nExec=env BAMF_DESKTOP_FILE_HINT=x /snap/bin/firefox\n");
    stat("100 (name) S");
    file("comm", "name\n");
  }

  void entry(const std::string& id, const std::string& keys) {
    writeFile(directory_ / ("applications/" + id + ".desktop"), "[Desktop Entry]\nType=Application\n" + keys);
  }
  std::string pathOf(const std::string& id) {
    return (directory_ / ("applications/" + id + ".desktop")).string();
  }
  void file(const std::string& name, const std::string& contents) {
    writeFile(directory_ / ("proc/100/" + name), contents);
  }
  // The fields up to the state, then zeros up to the start time.
  void stat(const std::string& beginning) {
    std::string text = beginning;
    for (int field = 4; field < 22; ++field) text += " 0";
    file("stat", text + " 4711 0 0\n");
  }
  void runs(const std::string& executable, const std::vector<std::string>& arguments) {
    std::filesystem::create_directories(directory_ / "proc/100");
    std::filesystem::create_symlink(executable, directory_ / "proc/100/exe");
    std::string text;
    for (const std::string& argument : arguments) text += argument + '\0';
    file("cmdline", text);
  }
  void environment(const std::vector<std::string>& variables) {
    std::string text;
    for (const std::string& variable : variables) text += variable + '\0';
    file("environ", text);
  }
  String identifier() {
    const auto application = workspace_.runningApplication(100);
    if (!application) return "(no process)";
    EXPECT_EQ(application->bundleURL().has_value(), application->bundleIdentifier().has_value());
    return application->bundleIdentifier().value_or("(none)");
  }

  TemporaryDirectory directory_;
  std::vector<WindowClass> windows_;
  std::optional<int> frontmost_;
  Workspace workspace_{
      std::make_shared<DesktopEntries>(std::vector<std::filesystem::path>{directory_ / "applications"},
                                       std::vector<std::string>()),
      [this] { return frontmost_; }, [this](int) { return windows_; }, ProcessTable(directory_ / "proc")};
};

TEST_F(WorkspaceTest, presentsTheEntryOfAProcess) {
  runs("/usr/lib/browser/browser (deleted)", {"browser"});
  EXPECT_EQ(workspace_.frontmostApplication(), nullptr);
  frontmost_ = 100;
  const auto application = workspace_.frontmostApplication();
  ASSERT_TRUE(application);
  EXPECT_EQ(application->localizedName(), "Browser");
  EXPECT_EQ(application->bundleIdentifier(), "browser");
  EXPECT_EQ(application->bundleURL()->path(), String(pathOf("browser")));
  EXPECT_EQ(application->executableURL()->path(), "/usr/lib/browser/browser");
  EXPECT_EQ(application->processIdentifier(), 100);
  EXPECT_EQ(workspace_.URLForApplicationWithBundleIdentifier("browser"), application->bundleURL());
  EXPECT_EQ(workspace_.URLForApplicationWithBundleIdentifier("unknown"), std::nullopt);
  EXPECT_EQ(workspace_.iconForFile(String(pathOf("browser"))).names, std::vector<String>{"browser-icon"});
  EXPECT_EQ(workspace_.localizedName(URL(String(pathOf("browser")))), "Browser");
}

TEST_F(WorkspaceTest, anythingElseHasNoNameAndTheIconOfItsKind) {
  EXPECT_EQ(workspace_.iconForFile("/home/user/a.png"), (NSImage{{}, "/home/user/a.png"}));
  EXPECT_EQ(workspace_.localizedName(URL("/home/user/a.png")), std::nullopt);
}

TEST_F(WorkspaceTest, theFileManagerIsAskedForFilesByTheirURLs) {
  std::vector<String> asked;
  workspace_.setFileManager(
      [&](const std::vector<String>& urls, const std::function<void()>&) { asked = urls; });
  workspace_.activateFileViewerSelectingURLs({URL("/home/user/a b.png"), URL("/c")});
  EXPECT_EQ(asked, (std::vector<String>{"file:///home/user/a%20b.png", "file:///c"}));
}

TEST_F(WorkspaceTest, aProcessWithoutAnEntryIsKnownByItsProgram) {
  stat("100 (a-rather-long-n) S");
  runs("/usr/bin/a-rather-long-name", {"other"});
  const auto application = workspace_.runningApplication(100);
  EXPECT_EQ(application->localizedName(), "a-rather-long-name");
  EXPECT_EQ(identifier(), "exe:/usr/bin/a-rather-long-name");
  EXPECT_EQ(application->bundleURL(), application->executableURL());
  EXPECT_EQ(workspace_.URLForApplicationWithBundleIdentifier(identifier()), std::nullopt) << "is not there";
  EXPECT_EQ(workspace_.URLForApplicationWithBundleIdentifier("exe:/bin/sh")->path(), "/bin/sh");
  EXPECT_EQ(workspace_.URLForApplicationWithBundleIdentifier("exe:/bin"), std::nullopt);
  stat("100 (\xff) S");
  EXPECT_EQ(workspace_.runningApplication(100)->localizedName(), std::nullopt);
}

TEST_F(WorkspaceTest, whatDoesNotRunIsNothing) {
  EXPECT_EQ(workspace_.runningApplication(101), nullptr);
  for (const int none : {0, -1}) EXPECT_EQ(workspace_.runningApplication(none), nullptr);
  stat("100 (name) Z");
  EXPECT_EQ(workspace_.runningApplication(100), nullptr);
  for (const char* const damaged : {"", "100", "100 (name", "100 )name(", "100 (name)", "100 (name) S 1 2"}) {
    file("stat", damaged);
    EXPECT_EQ(workspace_.runningApplication(100), nullptr) << damaged;
  }
  stat("100 (od) d (na) me) S");
  EXPECT_EQ(workspace_.runningApplication(100)->localizedName(), "od) d (na) me");
}

TEST_F(WorkspaceTest, aSandboxDecidesAlone) {
  runs("/usr/bin/browser", {"browser"});
  file("root/.flatpak-info", "[Instance]\nname=no\n[Application]\nname=org.example.Terminal\n");
  windows_ = {{"browser", "Browser-window"}};
  EXPECT_EQ(identifier(), "org.example.Terminal");
  file("root/.flatpak-info", "[Application]\nname=org.example.NotInstalled\n");
  EXPECT_EQ(identifier(), "org.example.NotInstalled");
  EXPECT_EQ(workspace_.identityOf(100)(false), "org.example.NotInstalled");
  std::filesystem::remove(directory_ / "proc/100/root/.flatpak-info");
  writeFile(directory_ / "planted", "[Application]\nname=org.example.Terminal\n");
  std::filesystem::create_symlink(directory_ / "planted", directory_ / "proc/100/root/.flatpak-info");
  EXPECT_EQ(identifier(), "browser");
}

TEST_F(WorkspaceTest, aSnapIsKnownByItsControlGroup) {
  runs("/snap/firefox/1/usr/lib/firefox/firefox", {"firefox"});
  windows_ = {{"browser", "Browser-window"}};
  for (const char* const line :
       {"0::/user.slice/snap.firefox.firefox.0a1b.scope\n",
        "5:freezer:/snap.firefox\n1:name=systemd:/x/snap.firefox.firefox.0a1b.scope\n"}) {
    file("cgroup", line);
    EXPECT_EQ(identifier(), "firefox_firefox") << line;
  }
  file("cgroup", "3:cpu:/snap.firefox.firefox.0a1b.scope\nnonsense\n:\n");
  EXPECT_EQ(identifier(), "browser");
}

TEST_F(WorkspaceTest, aWindowClassOutranksTheScopeThatWasInherited) {
  runs("/usr/bin/browser", {"browser"});
  file("cgroup", "0::/user.slice/app-org.example.Terminal-77.scope/nested\n");
  EXPECT_EQ(identifier(), "org.example.Terminal");
  windows_ = {{"unknown", "Unknown"}, {"x", "Browser-window"}};
  EXPECT_EQ(identifier(), "browser");
  windows_ = {{"Org.Example.Terminal", "Browser-window"}};
  EXPECT_EQ(identifier(), "browser");
  windows_ = {{"BROWSER", ""}};
  EXPECT_EQ(identifier(), "browser");
  entry("my-tool", "Name=My Tool\n");
  windows_ = {{"", "My Tool"}};
  EXPECT_EQ(identifier(), "my-tool");
}

TEST_F(WorkspaceTest, theInnermostKnownUnitCounts) {
  file("cgroup", "0::/app-org.example.Terminal.slice/app-browser-1.scope\n");
  EXPECT_EQ(identifier(), "browser");
  file("cgroup", "0::/app-org.example.Terminal.slice/app-unknown-1.scope\n");
  EXPECT_EQ(identifier(), "org.example.Terminal");
}

TEST_F(WorkspaceTest, aLaunchersNoteCountsForTheProcessItNames) {
  runs("/usr/bin/browser", {"browser"});
  environment({"A=b", "GIO_LAUNCHED_DESKTOP_FILE=" + pathOf("writer"), "GIO_LAUNCHED_DESKTOP_FILE_PID=100"});
  EXPECT_EQ(identifier(), "writer");
  environment({"GIO_LAUNCHED_DESKTOP_FILE=" + pathOf("writer"), "GIO_LAUNCHED_DESKTOP_FILE_PID=99"});
  EXPECT_EQ(identifier(), "browser");
  writeFile(directory_ / "forged.desktop", "[Desktop Entry]\nType=Application\nName=Forged\n");
  environment({"GIO_LAUNCHED_DESKTOP_FILE=" + (directory_ / "forged.desktop").string(),
               "GIO_LAUNCHED_DESKTOP_FILE_PID=100"});
  EXPECT_EQ(identifier(), "browser");
}

TEST_F(WorkspaceTest, aHintThatAnyDescendantInheritsComesLast) {
  environment({"BAMF_DESKTOP_FILE_HINT=" + pathOf("writer")});
  EXPECT_EQ(identifier(), "writer");
  runs("/usr/bin/browser", {"browser"});
  EXPECT_EQ(identifier(), "browser");
}

TEST_F(WorkspaceTest, anInterpreterIsNoIdentity) {
  runs("/usr/bin/python3.11", {"/usr/bin/python3", "-u", "/usr/share/tool/tool.py"});
  EXPECT_EQ(identifier(), "tool");
  stat("100 (python3) S");
  std::filesystem::create_symlink(directory_.path(), directory_ / "proc/100/cwd");
  writeFile(directory_ / "own.py", "");
  file("cmdline", std::string("python3\0-u\0./own.py\0", 20));
  EXPECT_EQ(identifier(), String("exe:" + (directory_ / "own.py").string()));
  EXPECT_EQ(workspace_.runningApplication(100)->localizedName(), "own.py");
  EXPECT_EQ(workspace_.runningApplication(100)->executableURL()->path(), "/usr/bin/python3.11");
  for (const std::string other : {"python3\0/home/me/gone.py", "python3\0-c\0./own.py", ""}) {
    file("cmdline", other);
    EXPECT_EQ(identifier(), "exe:/usr/bin/python3.11") << other;
  }
}

TEST_F(WorkspaceTest, aProcessIsAnApplicationByAnEntryOfItsOwnOrAWindow) {
  file("cgroup", "0::/user.slice/app-org.example.Terminal-77.scope\n");
  EXPECT_EQ(workspace_.identityOf(100)(false), std::nullopt) << "runs in a terminal";
  runs("/usr/bin/browser", {"browser"});
  EXPECT_EQ(workspace_.identityOf(100)(false), "browser");
  std::filesystem::remove(directory_ / "proc/100/exe");
  runs("/usr/bin/unknown", {"unknown"});
  const auto identity = workspace_.identityOf(100);
  std::filesystem::remove_all(directory_ / "proc/100");
  EXPECT_EQ(identity(false), std::nullopt);
  windows_ = {{"x", "Browser-window"}};
  EXPECT_EQ(identity(true), "browser") << "even once it has ended";
  EXPECT_EQ(workspace_.identityOf(100)(true), std::nullopt);
}

TEST_F(WorkspaceTest, optionsTellEntriesOfOneProgramApart) {
  runs("/opt/office", {"office", "--writer", "file"});
  EXPECT_EQ(identifier(), "writer");
  file("cmdline", std::string("office\0--calc\0", 14));
  EXPECT_EQ(identifier(), "calc");
}

TEST_F(WorkspaceTest, aProcessThatHidesIsKnownByItsShortName) {
  stat("100 (browser) S");
  EXPECT_EQ(identifier(), "browser");
  stat("100 (python3) S");
  EXPECT_EQ(identifier(), "(none)");
}

// One process after another takes the identifier 100, each with its start time as its only argument.
TEST(ProcessTable, neverMixesProcessesThatFollowEachOtherUnderOneIdentifier) {
  const TemporaryDirectory directory;
  const auto start = [&](int time) {
    const std::string startTime = std::to_string(time), name = "started-" + startTime;
    std::string stat = "100 (name) S";
    for (int field = 4; field < 22; ++field) stat += " 0";
    writeFile(directory / (name + "/stat"), stat + " " + startTime);
    writeFile(directory / (name + "/cmdline"), startTime);
    std::filesystem::create_directory_symlink(name, directory / "next");
    std::filesystem::rename(directory / "next", directory / "100");
  };
  start(1);
  const ProcessTable processes(directory.path());
  std::atomic<bool> isOver = false;
  std::thread others([&] {
    for (int time = 2; time < 120; ++time) start(time);
    isOver = true;
  });
  int seen = 0;
  while (!isOver) {
    const std::optional<ProcessInfo> info = processes.process(100);
    if (!info) continue;
    ++seen;
    EXPECT_THAT(info->arguments, ElementsAre(std::to_string(info->startTime)));
  }
  others.join();
  EXPECT_GT(seen, 0);
  EXPECT_EQ(processes.process(100)->startTime, 119U);
}

TEST(ProcessTable, readsThisVeryProcess) {
  const std::optional<ProcessInfo> info = ProcessTable().process(::getpid());
  ASSERT_TRUE(info);
  EXPECT_EQ(info->executable, std::filesystem::read_symlink("/proc/self/exe").string());
  EXPECT_GT(info->startTime, 0U);
  EXPECT_FALSE(info->arguments.empty());
  EXPECT_EQ(info->sandboxApplication, "");
}

}  // namespace
}  // namespace tarnix::linux_desktop
