#include <gtest/gtest.h>

#include <string>

#include "desktop/desktop_fixture.h"

namespace tarnix::test {
namespace {

class SettingsFileTest : public DesktopTest {
 protected:
  // Another program sets "Active", replacing the file as such programs do.
  bool setElsewhere(bool isActive) {
    const std::string script =
        "import os, pathlib, plistlib, sys\n"
        "folder = pathlib.Path(sys.argv[1])\n"
        "folder.mkdir(parents=True, exist_ok=True)\n"
        "(folder / 'new').write_bytes(plistlib.dumps({'watching': sys.argv[2] == 'true'}))\n"
        "os.replace(folder / 'new', folder / 'settings.plist')\n";
    return run({"python3", "-c", script, (home() / ".config/tarnix").string(), isActive ? "true" : "false"})
               .exitCode == 0;
  }
};

TEST_F(SettingsFileTest, theSwitchFollowsWhatAnotherProgramWrites) {
  const WindowReader window = openProgram();
  ASSERT_EQ(window.isOn("Active"), true);
  ASSERT_TRUE(setElsewhere(false));  // The directory was not there when the program started.
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == false; })) << window.tree();
  ASSERT_TRUE(copyWithXclip("missed"));
  ASSERT_TRUE(setElsewhere(true));
  ASSERT_TRUE(eventually([&] { return window.isOn("Active") == true; })) << window.tree();
  ASSERT_TRUE(copyWithXclip("taken"));
  ASSERT_TRUE(eventually([&] { return window.detailText() == "taken"; })) << window.tree();
  EXPECT_EQ(window.titles(), std::vector<std::string>{"taken"});
}

TEST_F(SettingsFileTest, twoWindowsShowOneSetting) {
  const WindowReader window = openProgram();
  const WindowReader other(start({programUnderTest()}).id());
  ASSERT_TRUE(eventually([&] { return other.isOn("Active") == true; })) << other.tree();
  ASSERT_TRUE(window.flip("Active"));
  EXPECT_TRUE(eventually([&] { return other.isOn("Active") == false; })) << other.tree();
  ASSERT_TRUE(other.flip("Active"));
  EXPECT_TRUE(eventually([&] { return window.isOn("Active") == true; })) << window.tree();
}

}  // namespace
}  // namespace tarnix::test
