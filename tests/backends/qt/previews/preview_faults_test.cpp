#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <QElapsedTimer>
#include <QtTest>
#include <csignal>

#include "backends/qt/previews/information_preview.h"
#include "backends/qt/previews/preview_stage.h"
#include "platform/quicklook/preview_view.h"
#include "platform/swiftui/elements.h"

namespace tarnix::qt {
namespace {

bool isGone(pid_t process) { return kill(process, 0) != 0; }

TEST(PreviewFaults, aPreviewerThatIsMissingHangsDiesOrTalksNonsenseIsAPlaceholder) {
  PreviewStage stage;
  const std::string path = stage.file("note.txt", "note");
  PreviewerProcess::setProgram((stage.folder / "nowhere").string());
  EXPECT_EQ(stage.nameOfPreview(path), "No preview: The previewer can't be started");
  stage.useScript("exit 3\n");
  EXPECT_EQ(stage.nameOfPreview(path), "No preview: The file can't be understood");
  stage.useScript("kill -SEGV $$\n");
  EXPECT_EQ(stage.nameOfPreview(path), "No preview: The file can't be understood");
  for (const char* nonsense : {
           R"(printf '\077\000\000\000\001\000\000\000x' >&3; sleep 5)",  // No such kind.
           R"(printf '\003\000\000\000\377\377\377\177' >&3; sleep 5)",   // Endless.
           R"(printf '\003\000\000\000\014\000\000\000\377\000\000\000AAAABBBB' >&3; sleep 5)",  // No such
                                                                                                 // reason.
           R"(printf '\004\000\000\000\024\000\000\000AAAABBBBCCCCDDDDEEEE' >&3; sleep 5)",      // Too few
                                                                                                 // pixels.
           R"(printf '\010\000\000\000\004\000\000\000AAAA' >&3; sleep 5)",  // A page, unasked.
           R"(printf '\012\000\000\000\004\000\000\000AAAA' >&3; sleep 5)",  // No entries.
       }) {
    stage.useScript(nonsense);
    EXPECT_EQ(stage.nameOfPreview(path), "No preview: The previewer failed") << nonsense;
  }
  stage.useScript(R"(printf '\011\000\000\000\010\000\000\000\002\000\000\000\000\000\000\000' >&3; exit)");
  EXPECT_EQ(stage.nameOfPreview(path), "Folder, 2 items");
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return stage.shownName() == "No preview: The file can't be understood"; }));
}

TEST(PreviewFaults, aHangingPreviewerIsGivenUpKilledAndBuriedWithoutAnyWait) {
  PreviewStage stage;
  stage.useScript("exec sleep 100\n");
  QElapsedTimer waited;
  waited.start();
  stage.widget.setSource(previewOfPath("/any"), {});
  ASSERT_TRUE(QTest::qWaitFor([&] { return stage.widget.client().processId() != 0; }));
  const pid_t process = stage.widget.client().processId();
  EXPECT_TRUE(QTest::qWaitFor([&] { return stage.shownName() == "Loading…"; })) << "after a moment";
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return stage.shownName() == "No preview: The file takes too long to read"; }, 10'000));
  EXPECT_GE(waited.elapsed(), 1900);
  EXPECT_TRUE(QTest::qWaitFor([&] { return isGone(process); }));
  EXPECT_TRUE(QTest::qWaitFor([] { return PreviewerProcess::dying() == 0; }));
}

TEST(PreviewFaults, manySourcesInQuickSuccessionLeaveOnePreviewer) {
  PreviewStage stage;
  stage.useScript("echo x >> " + (stage.folder / "starts").string() + "\nexec sleep 100\n");
  for (int i = 0; i < 200; ++i) {
    stage.widget.setSource(previewOfPath("/any" + std::to_string(i)), {});
    QTest::qWait(5);
    EXPECT_LE(PreviewerProcess::dying(), 3);
  }
  ASSERT_TRUE(QTest::qWaitFor([&] { return stage.widget.client().processId() != 0; }));
  const pid_t process = stage.widget.client().processId();
  EXPECT_LE(linux_desktop::contentsOf(stage.folder / "starts").size(), 20U);
  stage.widget.clear();
  EXPECT_TRUE(QTest::qWaitFor([&] { return isGone(process) && PreviewerProcess::dying() == 0; }));
}

TEST(PreviewFaults, theFormerPreviewStaysUntilTheNextIsThereButNotForLong) {
  PreviewStage stage;
  ASSERT_EQ(stage.nameOfPreview(stage.file("note.txt", "note")), "Text");
  stage.useScript("exec sleep 100\n");
  stage.widget.setSource(previewOfPath("/any"), {});
  EXPECT_EQ(stage.shownName(), "Text");
  EXPECT_TRUE(QTest::qWaitFor([&] { return stage.shownName() == "Loading…"; }, 1000));
  stage.widget.clear();
  EXPECT_EQ(stage.shownName(), "");
}

TEST(PreviewFaults, aPreviewerGetsNothingButItsChannelAndEndsWithIt) {
  PreviewStage stage;
  const int other = open("/dev/null", O_RDONLY);  // Without the flag that closes it.
  stage.useScript("ls /proc/$$/fd > " + (stage.folder / "descriptors").string() + "\n");
  EXPECT_EQ(stage.nameOfPreview("/any"), "No preview: The file can't be understood");
  // The shell keeps its script open, above all others.
  EXPECT_THAT(linux_desktop::contentsOf(stage.folder / "descriptors"), testing::StartsWith("0\n1\n"));
  EXPECT_THAT(linux_desktop::contentsOf(stage.folder / "descriptors"),
              testing::Not(testing::HasSubstr("\n" + std::to_string(other) + "\n")));
  close(other);
}

TEST(PreviewFaults, aFileThatGoesWhileItIsShownStays) {
  PreviewStage stage;
  const std::string path = stage.file("note.txt", "note");
  ASSERT_EQ(stage.nameOfPreview(path), "Text");
  std::filesystem::remove(path);
  QTest::qWait(20);
  EXPECT_EQ(stage.shownName(), "Text");
  EXPECT_EQ(stage.nameOfPreview(path), "No preview: The file does not exist any more");
}

// A preview view of the toolkit, shown by the presenter.
struct HostedPreview {
  std::shared_ptr<QLPreviewView> view;
  std::shared_ptr<QLPreviewView> makeNSView(const NSViewRepresentableContext<HostedPreview>&) const {
    return view;
  }
  void updateNSView(QLPreviewView&, const NSViewRepresentableContext<HostedPreview>&) const {}
};

TEST(PreviewHost, mirrorsTheItemOfItsViewAndAsksOnceForEachURL) {
  PreviewStage files;
  files.useScript("echo x >> " + (files.folder / "starts").string() + "\nexec " TARNIX_PREVIEWER "\n");
  const std::string path = files.file("note.txt", "note");
  Stage stage;
  const auto view = std::make_shared<QLPreviewView>();
  view->setPreviewItem(std::make_shared<NSURL>(URL(path)));
  const View shown = VStack({HostedPreview{view}, Spacer(), Text("below")}, 0);
  stage.show(shown);
  EXPECT_TRUE(QTest::qWaitFor([&] { return stage.has(QAccessible::EditableText, "Text"); }, 20'000));
  for (int i = 0; i < 3; ++i) {
    view->setPreviewItem(std::make_shared<NSURL>(URL(path)));
    stage.show(shown);
  }
  QTest::qWait(300);
  EXPECT_EQ(linux_desktop::contentsOf(files.folder / "starts"), "x\n");
  const PreviewWidget* widget = nullptr;
  for (const QWidget* each : stage.window().findChildren<QWidget*>()) {
    if (const auto* const found = dynamic_cast<const PreviewWidget*>(each)) widget = found;
  }
  ASSERT_NE(widget, nullptr);
  auto* const label = stage.widget(QAccessible::StaticText, "below");
  EXPECT_GT(widget->height(), stage.window().height() - 3 * label->height());
  EXPECT_TRUE(stage.window().rect().contains(label->geometry()));
  view->setPreviewItem(std::make_shared<NSURL>(URL(files.folder.path().string())));
  EXPECT_TRUE(QTest::qWaitFor([&] { return stage.has(QAccessible::Tree, "Folder, 3 items"); }, 20'000));
  view->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !stage.has(QAccessible::Tree, "Folder, 3 items"); }));
}

}  // namespace
}  // namespace tarnix::qt
