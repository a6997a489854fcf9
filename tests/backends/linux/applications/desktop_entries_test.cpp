#include "backends/linux/applications/desktop_entries.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "backends/linux/applications/program_name.h"
#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::string entryText(const std::string& keys) { return "[Desktop Entry]\nType=Application\n" + keys; }

std::optional<DesktopEntry> parsed(const std::string& keys, std::string_view locale = "") {
  return parseDesktopEntry(entryText(keys), localeNames(locale));
}

TEST(DesktopEntry, namesOfALocaleComeBestFirst) {
  EXPECT_THAT(localeNames("sr_RS.UTF-8@latin"), ElementsAre("sr_RS@latin", "sr_RS", "sr@latin", "sr"));
  EXPECT_THAT(localeNames("de_DE.UTF-8"), ElementsAre("de_DE", "de"));
  EXPECT_THAT(localeNames("eo"), ElementsAre("eo"));
  for (const char* const none : {"", "C", "C.UTF-8", "POSIX"})
    EXPECT_THAT(localeNames(none), IsEmpty()) << none;
}

TEST(DesktopEntry, languagesComeByTheirOwnListBeforeTheLocale) {
  using Variables = std::map<std::string, std::string>;
  const auto languages = [](const Variables& variables) {
    return messageLanguages([&](const char* name) -> const char* {
      const auto found = variables.find(name);
      return found == variables.end() ? nullptr : found->second.c_str();
    });
  };
  EXPECT_THAT(languages({{"LANG", "de_DE.UTF-8"}}), ElementsAre("de_DE.UTF-8"));
  EXPECT_THAT(languages({{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "fr:de"}}),
              ElementsAre("fr", "de", "en_US.UTF-8"));
  EXPECT_THAT(languages({{"LC_ALL", "C.UTF-8"}, {"LANG", "de_DE"}, {"LANGUAGE", "de"}}), IsEmpty());
  EXPECT_THAT(languages({}), IsEmpty());
}

TEST(DesktopEntry, takesTheNameInTheBestLanguage) {
  const std::string names =
      "Name[sr]=sr\nName[sr@latin]=sr latin\nName=plain\nName[sr_RS]=sr RS\nName[de]=de\n";
  EXPECT_EQ(parsed(names, "sr_RS.UTF-8@latin")->name, "sr RS");
  EXPECT_EQ(parsed(names, "sr_BA@latin")->name, "sr latin");
  EXPECT_EQ(parsed(names, "de_AT")->name, "de");
  EXPECT_EQ(parsed(names, "fr_FR")->name, "plain");
  EXPECT_EQ(parsed("Name[de]=\nName=plain\n", "de")->name, "plain");
  EXPECT_EQ(parsed("Name[de]=\xff\nName=plain\n", "de")->name, "plain");
  EXPECT_FALSE(parsed("Name[fr]=nur andere\n", "de"));
}

TEST(DesktopEntry, readsOnlyItsOwnGroup) {
  const auto entry = parseDesktopEntry(
      "# comment\n\n[Other]\nName=no\n[Desktop Entry]\r\n Name = yes \r\nType=Application\nnonsense\n=x\n"
      "Icon=first\nIcon=second\n[Desktop Action new]\nName=no\nIcon=no\n",
      {});
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->name, "yes");
  EXPECT_EQ(entry->icon, "first");
}

TEST(DesktopEntry, resolvesEscapesOnceForTextsAndTwiceForCommands) {
  EXPECT_EQ(parsed("Name=a\\sb\\\\n\\q\n")->name, "a b\\n\\q");
  const auto command = [](const std::string& exec) { return parsed("Name=n\nExec=" + exec + "\n")->command; };
  EXPECT_THAT(command("foo  --bar\t%U"), ElementsAre("foo", "--bar", "%U"));
  EXPECT_THAT(command(R"("/opt/my app/x" "" pre"fix")"), ElementsAre("/opt/my app/x", "", "prefix"));
  EXPECT_THAT(command(R"("a\\\\b\\"c\\$d")"), ElementsAre("a\\b\"c$d"));
  EXPECT_THAT(command("\"never closed"), IsEmpty());
}

TEST(DesktopEntry, showsNamesInOneLineOfBoundedLength) {
  EXPECT_EQ(parsed("Name=two\\nlines\\tand\x7f\n")->name, "two lines and ");
  std::string name;
  for (int i = 0; i < 200; ++i) name += "\u00e4";
  EXPECT_EQ(parsed("Name=" + name + "\n")->name, String(name.substr(0, 256)));
  EXPECT_EQ(parsed("Name=x" + name + "\n")->name, String("x" + name.substr(0, 254)));
}

TEST(DesktopEntry, refusesWhatIsNoApplication) {
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nName=n\n", {}));
  EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nName=n\n", {}));
  EXPECT_FALSE(parseDesktopEntry("Type=Application\nName=n\n", {}));
  EXPECT_FALSE(parsed(std::string("Name=n\nIcon=a\0b\n", 16)));
  EXPECT_FALSE(parsed("Name=n\n#" + std::string(kDesktopEntrySizeLimit, 'x')));
  EXPECT_TRUE(parseDesktopEntry("[Desktop Entry]\nHidden=true\n", {})->isHidden);
}

TEST(DesktopEntry, survivesDamageAtEveryByte) {
  const std::string text = entryText("Name[de]=a\\sb\nName=n\nExec=\"x \\\\\" y\" %U\nStartupWMClass=c\n");
  for (std::size_t size = 0; size < text.size(); ++size) {
    parseDesktopEntry(std::string_view(text).substr(0, size), {"de"});
    std::string damaged = text;
    for (const char replacement : {'\xff', '[', '\\', '"', '\n', '='}) {
      damaged[size] = replacement;
      parseDesktopEntry(damaged, {"de"});
    }
  }
  EXPECT_EQ(parseDesktopEntry(text, {"de"})->name, "a b");
}

TEST(ProgramName, looksThroughInterpretersAndVariables) {
  using Command = std::vector<std::string>;
  const std::pair<Command, std::string> cases[] = {
      {{"/usr/bin/gedit", "%U"}, "gedit"},
      {{"env", "-i", "A=b", "C=d", "/snap/bin/firefox"}, "firefox"},
      {{"python3.11", "-u", "/usr/share/tool/tool.py", "x"}, "tool.py"},
      {{"/usr/bin/python3", "-m", "tool"}, "tool"},
      {{"java", "-jar", "/opt/app.jar"}, "app.jar"},
      {{"sh", "-c", "rm -rf"}, ""},
      {{"flatpak", "run", "org.example.App"}, ""},
      {{"bash"}, ""},
      {{"env"}, ""},
      {{}, ""}};
  for (const auto& [command, name] : cases)
    EXPECT_EQ(programName(command), name) << ::testing::PrintToString(command);
}

class DesktopEntriesTest : public ::testing::Test {
 protected:
  void write(const std::string& file, const std::string& keys) {
    writeFile(directory_ / file, entryText(keys));
  }
  String nameOf(const DesktopEntries::Entry& entry) { return entry ? entry->name : String("(none)"); }
  String nameOf(std::string_view identifier) { return nameOf(entries_.withIdentifier(identifier)); }

  TemporaryDirectory directory_;
  DesktopEntries entries_{{directory_ / "own", directory_ / "system"}, {}};
};

TEST_F(DesktopEntriesTest, findsIdentifiersAlsoInFoldersAndWithTheSuffix) {
  write("system/a.desktop", "Name=A\n");
  write("system/kde/sub/b.desktop", "Name=B\n");
  write("system/org.example.desktop.desktop", "Name=Desktop\n");
  EXPECT_EQ(nameOf("a"), "A");
  EXPECT_EQ(nameOf("a.desktop"), "A");
  EXPECT_EQ(nameOf("kde-sub-b"), "B");
  EXPECT_EQ(nameOf("org.example.desktop"), "Desktop");
  EXPECT_EQ(nameOf("kde/sub/b"), "(none)");
  EXPECT_EQ(nameOf(""), "(none)");
  const auto entry = entries_.withIdentifier("kde-sub-b");
  EXPECT_EQ(entry->id, "kde-sub-b");
  EXPECT_EQ(entries_.withFile(directory_.path() / "system/./kde/sub/b.desktop"), entry);
  EXPECT_EQ(entries_.withFile("/elsewhere/a.desktop"), nullptr);
}

TEST_F(DesktopEntriesTest, theEarlierDirectoryCountsAndMayHide) {
  write("own/a.desktop", "Name=Own\n");
  write("system/a.desktop", "Name=System\nStartupWMClass=C\n");
  write("own/b.desktop", "Hidden=true\n");
  write("system/b.desktop", "Name=B\nExec=b\n");
  EXPECT_EQ(nameOf("a"), "Own");
  EXPECT_EQ(entries_.withFile(directory_.path() / "system/a.desktop"), nullptr);
  EXPECT_EQ(nameOf(entries_.withWindowClass("C")), "(none)");
  EXPECT_EQ(nameOf("b"), "(none)");
  EXPECT_THAT(entries_.withProgram("b"), IsEmpty());
}

TEST_F(DesktopEntriesTest, looksUpClassesAndProgramsWithThoseInTheMenusFirst) {
  write("own/a.desktop", "Name=Hidden helper\nNoDisplay=true\nStartupWMClass=C\nExec=/opt/app %U\n");
  write("own/b.desktop", "Name=Shown\nStartupWMClass=C\nTryExec=/opt/app\nExec=env A=b starter\n");
  nameOf("a");
  EXPECT_EQ(nameOf(entries_.withWindowClass("C")), "Shown");
  const auto programs = entries_.withProgram("app");
  ASSERT_THAT(programs, ::testing::SizeIs(2));
  EXPECT_EQ(programs[0]->id, "b");
  EXPECT_EQ(programs[1]->id, "a");
  EXPECT_THAT(entries_.withProgram("starter"), ::testing::SizeIs(1));
}

TEST_F(DesktopEntriesTest, noticesEveryKindOfChange) {
  EXPECT_EQ(nameOf("a"), "(none)");
  write("own/a.desktop", "Name=New directory\n");
  EXPECT_EQ(nameOf("a"), "New directory");
  const auto former = entries_.withIdentifier("a");
  write("own/a.desktop", "Name=Written in place\n");
  EXPECT_EQ(nameOf("a"), "Written in place");
  EXPECT_EQ(former->name, "New directory");
  write("own/x.tmp", "Name=Renamed over\n");
  std::filesystem::rename(directory_ / "own/x.tmp", directory_ / "own/a.desktop");
  EXPECT_EQ(nameOf("a"), "Renamed over");
  write("own/deep/b.desktop", "Name=B\nStartupWMClass=B\n");
  EXPECT_EQ(nameOf(entries_.withWindowClass("B")), "B");
  write("own/deep/b.desktop", "Name=B2\nStartupWMClass=B\n");
  EXPECT_EQ(nameOf(entries_.withWindowClass("B")), "B2");
  std::filesystem::remove(directory_ / "own/a.desktop");
  EXPECT_EQ(nameOf("a"), "(none)");
}

TEST_F(DesktopEntriesTest, readsAheadInPieces) {
  for (int i = 0; i < 5; ++i) write("own/" + std::to_string(i) + ".desktop", "Name=n\nExec=p\n");
  EXPECT_FALSE(entries_.readAhead(2));
  nameOf("4");
  EXPECT_FALSE(entries_.readAhead(2));
  EXPECT_TRUE(entries_.readAhead(2));
  EXPECT_THAT(entries_.withProgram("p"), ::testing::SizeIs(5));
}

TEST_F(DesktopEntriesTest, aChangeElsewhereLeavesOldEntriesAsTheyAre) {
  for (const char* const id : {"a", "b"}) {
    write("own/" + std::string(id) + ".desktop", "Name=A\nExec=p\nStartupWMClass=C\n");
    std::filesystem::last_write_time(directory_ / ("own/" + std::string(id) + ".desktop"),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }
  const auto entry = entries_.withWindowClass("C");
  write("own/b.desktop", "Name=B\nExec=p\n");
  EXPECT_EQ(entries_.withWindowClass("C"), entry);
  EXPECT_THAT(entries_.withProgram("p"), ::testing::SizeIs(2));
  EXPECT_EQ(nameOf("b"), "B");
}

TEST(DesktopEntriesTurns, readAllAheadWithoutHoldingThem) {
  const TemporaryDirectory directory;
  for (int i = 0; i < 20; ++i) {
    writeFile(directory / (std::to_string(i) + ".desktop"), entryText("Name=n\nExec=p\n"));
  }
  RunLoop::Instant now{0};
  RunLoop loop([&] { return now; });
  auto entries = std::make_shared<DesktopEntries>(std::vector{directory.path()}, std::vector<std::string>());
  readAheadInTurns(loop, entries);
  int turns = 0;
  for (; loop.nextDue(); ++turns, loop.runDue()) now = *loop.nextDue();
  EXPECT_GT(turns, 1);
  EXPECT_TRUE(entries->readAhead(0));
  readAheadInTurns(loop, entries);
  entries.reset();
  now = loop.nextDue().value_or(now);
  loop.runDue();
  EXPECT_EQ(loop.nextDue(), std::nullopt);
}

TEST_F(DesktopEntriesTest, strangeFilesNeitherHangNorLoop) {
  write("own/good.desktop", "Name=Good\n");
  std::filesystem::create_directory_symlink(".", directory_ / "own/circle");
  std::filesystem::create_directory(directory_ / "own/folder.desktop");
  std::filesystem::create_symlink("nowhere", directory_ / "own/dangling.desktop");
  ASSERT_EQ(::mkfifo((directory_ / "own/pipe.desktop").c_str(), 0600), 0);
  std::filesystem::create_symlink("/dev/zero", directory_ / "own/endless.desktop");
  EXPECT_TRUE(entries_.readAhead(1000));
  for (const char* const id : {"folder", "dangling", "pipe", "endless"})
    EXPECT_EQ(nameOf(id), "(none)") << id;
  EXPECT_EQ(nameOf("good"), "Good");
}

}  // namespace
}  // namespace tarnix::linux_desktop
