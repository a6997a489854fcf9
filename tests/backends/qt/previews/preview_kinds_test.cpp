#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QLabel>
#include <QtTest>

#include "backends/qt/previews/folder_preview.h"
#include "backends/qt/previews/information_preview.h"
#include "backends/qt/previews/page_preview.h"
#include "backends/qt/previews/picture_preview.h"
#include "backends/qt/previews/preview_stage.h"
#include "backends/qt/previews/text_preview.h"

namespace tarnix::qt {
namespace {

namespace fs = std::filesystem;

// Far more than the loop is ever busy for without sanitizers.
constexpr std::chrono::milliseconds kLongestTurn{500};
constexpr std::size_t kMemoryBeyondBase = 64 * 1024 * 1024;

struct KindOfFile {
  const char* file;
  std::string contents;
  std::string name;
  QAccessible::Role role;
};

TEST(PreviewKinds, filesAreToldByWhatTheyHoldWhateverTheirNames) {
  PreviewStage stage;
  const std::string utf16("\xff\xfeg\0r\0\xfc\0n\0", 10);
  const std::string wide("g\0r\0e\0e\0n\0 \0a\0n\0d\0 \0b\0l\0u\0e\0", 28);
  const KindOfFile files[] = {
      {"picture.png", pngFile({80, 60}), "Image, 80 by 60", QAccessible::Graphic},
      {"picture.txt", pngFile({80, 60}), "Image, 80 by 60", QAccessible::Graphic},
      {"photo", pictureFile({300, 200}, "jpeg"), "Image, 300 by 200", QAccessible::Graphic},
      {"a.bmp", pictureFile({30, 20}, "bmp"), "Image, 30 by 20", QAccessible::Graphic},
      {"a.webp", pictureFile({30, 20}, "webp"), "Image, 30 by 20", QAccessible::Graphic},
      {"a.tiff", pictureFile({30, 20}, "tiff"), "Image, 30 by 20", QAccessible::Graphic},
      {"a.ico", pictureFile({32, 32}, "ico"), "Image, 32 by 32", QAccessible::Graphic},
      {"a.ppm", pictureFile({30, 20}, "ppm"), "Image, 30 by 20", QAccessible::Graphic},
      {"drawing.svg", "<?xml version='1.0'?><svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'/>",
       "Image, 40 by 30", QAccessible::Graphic},
      {"letter.pdf", pdfFile(1), "PDF, 1 page", QAccessible::Document},
      {"book", pdfFile(3), "PDF, 3 pages", QAccessible::Document},
      {"note.txt", "grün\n", "Text", QAccessible::EditableText},
      {"latin.txt", "gr\xfcn", "Text", QAccessible::EditableText},
      {"utf16.bin", utf16, "Text", QAccessible::EditableText},
      {"no mark", wide, "Text", QAccessible::EditableText},
      {"page.html", "<html><img src='file:///etc/passwd'></html>", "Text", QAccessible::EditableText},
      {"a.zip", std::string("PK\3\4\x14\0\0\0\0\0", 10) + std::string(90, '\1'), "Zip archive, 100 bytes",
       QAccessible::Grouping},
      {"binary.txt", std::string("\1\2\3\0\5\6", 6), "Unknown, 6 bytes", QAccessible::Grouping},
      {"empty", "", "Empty document, 0 bytes", QAccessible::Grouping},
      {"folder/one/inside", "", {}, {}},
  };
  for (const KindOfFile& each : files) {
    const std::string path = stage.file(each.file, each.contents);
    if (each.name.empty()) continue;
    EXPECT_EQ(stage.nameOfPreview(path), each.name) << each.file;
    EXPECT_EQ(stage.shownRole(), each.role) << each.file;
  }
  EXPECT_EQ(stage.nameOfPreview((stage.folder / "folder").string()), "Folder, 1 item");
  EXPECT_LT(stage.longestTurn, kLongestTurn);
}

TEST(PreviewKinds, whatIsNoFileOrCannotBeReadSaysWhy) {
  PreviewStage stage;
  const auto path = [&](const char* name) { return (stage.folder / name).string(); };
  mkfifo(path("fifo").c_str(), 0600);
  fs::create_symlink("loop", path("loop"));
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  const std::string notAFile = "No preview: This is neither a file nor a folder";
  const std::pair<std::string, std::string> files[] = {
      {path("fifo"), notAFile},
      {path("socket"), notAFile},
      {"/dev/zero", notAFile},
      {"/dev/tty", notAFile},
      {path("loop"), "No preview: The link leads back to itself"},
      {path("missing"), "No preview: The file does not exist any more"},
      {path("fifo") + "/below", "No preview: The file does not exist any more"},
      {"/" + std::string(300, 'n'), "No preview: The name is too long"},
      {"/" + std::string(200'000, 'n'), "No preview: The name is too long"},
      {stage.file("truncated.png", pngFile({80, 60}).substr(0, 20)), "No preview: The file is damaged"},
      {stage.file("broken.pdf", "%PDF-1.7\nnothing"), "No preview: The file is damaged"},
      {stage.file("locked.pdf", pdfFile(1, true)), "No preview: The document is encrypted"},
      {stage.file("broken.svg", "<svg xmlns='http://www.w3.org/2000/svg'><g>"),
       "No preview: The file is damaged"},
  };
  for (const auto& [file, name] : files) {
    EXPECT_EQ(stage.nameOfPreview(file), name) << file.substr(0, 100);
    EXPECT_EQ(stage.shownRole(), QAccessible::StaticText);
  }
  close(server);
  if (geteuid() == 0) return;  // Who may read everything.
  chmod(stage.file("secret", "secret").c_str(), 0);
  EXPECT_EQ(stage.nameOfPreview(path("secret")), "No preview: You may not read this file");
}

TEST(PreviewKinds, hostilePicturesTakeBoundedMemoryAndEndInAPlaceholderOrAPicture) {
  PreviewStage stage;
  stage.nameOfPreview(stage.file("document.pdf", pdfFile(1)));
  QTest::qWait(50);
  const std::size_t base = stage.peakMemory;
  ASSERT_GT(base, 0U);
  EXPECT_EQ(stage.nameOfPreview(stage.file("huge.png", pngFile({30'000, 30'000}, false))),
            "No preview: The picture is too large: 30,000 by 30,000");
  EXPECT_THAT(stage.nameOfPreview(stage.file("bomb.png", pngFile({12'000, 12'000}))),
              testing::AnyOf("Image, 12000 by 12000", "No preview: The file takes too long to read"))
      << "as fast as the machine is";
  std::string gif = "GIF89a" + std::string("\x10\0\x10\0\x80\0\0\0\0\0\xff\xff\xff", 13);
  const std::string frame("\x2c\0\0\0\0\x10\0\x10\0\0\x02\x02\x44\x01\0", 15);
  for (int i = 0; i < 10'000; ++i) gif += frame;
  EXPECT_EQ(stage.nameOfPreview(stage.file("frames.gif", gif + ";")), "Image, 16 by 16");
  const std::string jpeg = pictureFile({3000, 2000}, "jpeg");
  EXPECT_EQ(stage.nameOfPreview(stage.file("cut.jpg", jpeg.substr(0, jpeg.size() / 2))),
            "Image, 3000 by 2000");
  EXPECT_EQ(stage.nameOfPreview(stage.file("scans.jpg", pictureFile({8000, 6000}, "jpeg", true))),
            "No preview: The file takes too much memory");
  EXPECT_THAT(stage.nameOfPreview(stage.file("large.tiff", pictureFile({7000, 7000}, "tiff"))),
              testing::StartsWith("No preview: "));
  EXPECT_LT(stage.peakMemory, base + kMemoryBeyondBase);
  EXPECT_LT(stage.longestTurn, kLongestTurn);
}

// A decoder that followed a reference would open the fifo for reading, which lets a writer in.
TEST(PreviewKinds, drawingsOpenNothingBesideThemselves) {
  PreviewStage stage;
  const std::string fifo = (stage.folder / "outside.png").string();
  mkfifo(fifo.c_str(), 0600);
  const std::string head =
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='40' "
      "height='30'>";
  std::string uses = "<g id='u0'><rect width='1' height='1'/></g>";
  for (int i = 1; i < 40; ++i) {
    const std::string use = "<use xlink:href='#u" + std::to_string(i - 1) + "'/>";
    uses += "<g id='u" + std::to_string(i) + "'>" + use + use + "</g>";
  }
  const std::pair<std::string, std::string> drawings[] = {
      {head + "<image width='9' height='9' xlink:href='" + fifo + "'/></svg>", "Image, 40 by 30"},
      {head + "<image width='9' height='9' href='file://" + fifo + "'/></svg>", "Image, 40 by 30"},
      {head + "<style>@import url(" + fifo + "); rect { fill: url(" + fifo + "#a) }</style></svg>",
       "Image, 40 by 30"},
      {"<!DOCTYPE svg [<!ENTITY x SYSTEM 'file://" + fifo + "'>]>" + head + "<text>&x;</text></svg>",
       "Image, 40 by 30"},
  };
  for (const auto& [svg, name] : drawings) {
    EXPECT_EQ(stage.nameOfPreview(stage.file("drawing.svg", svg)), name) << svg;
    EXPECT_EQ(open(fifo.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC), -1) << "somebody reads " << svg;
  }
  const std::string bomb = stage.nameOfPreview(stage.file("uses.svg", head + uses + "</svg>"));
  EXPECT_TRUE(bomb == "Image, 40 by 30" || bomb.starts_with("No preview: ")) << bomb;
  EXPECT_LT(stage.longestTurn, kLongestTurn);
}

TEST(PreviewKinds, aPictureIsFittedCentredAndNeverEnlarged) {
  PreviewStage stage;
  stage.nameOfPreview(stage.file("small.png", pictureFile({100, 50}, "png")));
  auto* picture = stage.part<PicturePreview>();
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->pictureRect(), QRectF(250, 225, 100, 50));
  const QImage drawn = stage.widget.grab().toImage();
  EXPECT_EQ(drawn.pixelColor(300, 250), QColor(200, 100, 50));
  EXPECT_EQ(drawn.pixelColor(240, 250), stage.widget.palette().color(QPalette::Window));
  stage.nameOfPreview(stage.file("wide.png", pictureFile({4000, 400}, "png")));
  picture = stage.part<PicturePreview>();
  EXPECT_NEAR(picture->pictureRect().width() / picture->pictureRect().height(), 10, 0.1);
  EXPECT_TRUE(QRectF(picture->rect()).contains(picture->pictureRect()));
  const std::string pixels = pictureFile({10, 10}, "png");
  EXPECT_EQ(stage.nameOfPreview(previewOfBytes(pixels), {}), "Image, 10 by 10")
      << "bytes that the window holds";
  EXPECT_EQ(stage.nameOfPreview(previewOfBytes("only a text"), {}), "Text");
}

TEST(PreviewKinds, aLongTextIsShownInPart) {
  PreviewStage stage;
  const std::string path = stage.file("long.txt", std::string(5'000'000, 'x'));
  fs::resize_file(path, 1'200'000'000);
  EXPECT_EQ(stage.nameOfPreview(path), "Text");
  const auto* const text = stage.shownPart()->findChild<PlainTextView*>();
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->text().size(), previewing::kMostTextBytes);
  EXPECT_EQ(stage.shownPart()->findChild<QLabel*>()->text(), "The first 4 MB of 1.2 GB");
  stage.nameOfPreview(stage.file("latin", "f\xfcr G\xe4ste"));
  EXPECT_EQ(stage.shownPart()->findChild<PlainTextView*>()->text(), "für Gäste");
  EXPECT_FALSE(stage.shownPart()->findChild<QLabel*>()->isVisible());
}

TEST(PreviewKinds, aLongDocumentIsDrawnWhereItIsInSightAndScrolledByKeys) {
  PreviewStage stage;
  ASSERT_EQ(stage.nameOfPreview(stage.file("book.pdf", pdfFile(1000))), "PDF, 1,000 pages");
  auto* const pages = stage.part<PagePreview>();
  ASSERT_NE(pages, nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pages->isDrawn(0); }));
  const QImage drawn = stage.widget.grab().toImage();
  EXPECT_EQ(drawn.pixelColor(300, 480), QColor(255, 0, 0)) << "what the page holds";
  EXPECT_EQ(drawn.pixelColor(60, 60), QColor(Qt::white)) << "the paper";
  QTest::keyClick(pages, Qt::Key_End);
  EXPECT_EQ(pages->visiblePages().second, 1000U);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pages->isDrawn(999); }));
  for (int i = 0; i < 30; ++i) {
    QTest::keyClick(pages, Qt::Key_PageUp);
    QTest::qWait(10);
  }
  EXPECT_LE(pages->keptPages(), 6U);
  EXPECT_EQ(pages->focusPolicy(), Qt::StrongFocus);
}

TEST(PreviewKinds, aLargeFolderIsListedInOrderWithoutPushingAnythingAside) {
  PreviewStage stage;
  for (int i = 0; i < 10'000; ++i) stage.file("many/file " + std::to_string(10'000 + i) + ".txt", "x");
  stage.file("many/.hidden", "");
  stage.file("many/zebra/inside", "");
  fs::create_symlink("nowhere", stage.folder / "many/dangling");
  ASSERT_EQ(stage.nameOfPreview((stage.folder / "many").string()), "Folder, 10,003 items");
  auto* const listing = stage.part<FolderPreview>();
  ASSERT_NE(listing, nullptr);
  EXPECT_TRUE(QTest::qWaitFor([&] { return listing->model()->rowCount() == 10'003; }));
  const auto told = [&](int row, int column = 0) {
    return listing->model()->index(row, column).data().toString().toStdString();
  };
  EXPECT_EQ(told(0), "zebra") << "folders come first";
  EXPECT_EQ(told(1), "dangling");
  EXPECT_EQ(told(2), "file 10000.txt");
  EXPECT_EQ(told(2, 1), "1 byte");
  EXPECT_EQ(told(10'002), ".hidden");
  EXPECT_EQ(stage.widget.size(), QSize(600, 512));
  EXPECT_LT(stage.widget.minimumSizeHint().height(), 10);
  EXPECT_EQ(stage.widget.client().processId(), 0) << "the previewer has done its part";
  EXPECT_LT(stage.longestTurn, kLongestTurn);
}

}  // namespace
}  // namespace tarnix::qt
