#include "backends/qt/text/rich/rich_text_editor.h"

#include <gmock/gmock.h>

#include <QtTest>

#include "backends/qt/stage.h"
#include "platform/appkit/rich_text/html/html_reader.h"

namespace tarnix::qt {
namespace {

const TextColors kColors{Qt::black, Qt::white, Qt::blue, Qt::gray, true};

// The text with the looks of its runs, as "[bold]", and of its paragraphs.
std::string described(const NSAttributedString& text) {
  std::string all;
  std::size_t begin = 0;
  for (const auto& run : text.runs()) {
    const TextAttributes& look = text.attributesOf(run);
    all += (look.font.isBold ? "[bold]" : "[plain]") + text.string().str().substr(begin, run.end - begin);
    begin = run.end;
  }
  return all;
}

class RichTextEditorTest : public ::testing::Test {
 protected:
  RichTextEditorTest() {
    editor.resize(400, 300);
    editor.show();
    editor.setEdited([this](const NSAttributedString& text) { edited = text; });
  }
  void show(const char* html) {
    shown = attributedStringFromHtml(html);
    editor.setAttributedText(shown, kColors);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&editor, key, modifiers);
  }

  PlatformScope platform{testPlatform()};
  RichTextEditor editor;
  NSAttributedString shown;
  NSAttributedString edited;
};

TEST_F(RichTextEditorTest, givesBackWhatItWasGivenWhereNothingIsWritten) {
  for (const char* html :
       {"plain", "<h1>a</h1><p>b <b>c</b> <a href='https://a.b/'>d</a></p><ul><li>e<li>f<ul><li>g</ul></ul>",
        "<table><tr><td>1<td><b>2</b><p>3</p><tr><td colspan=2>4</table>5",
        "<p style='text-align:center'>x<br>y</p><p><br></p><p dir=rtl>שלום</p>a<img src=p>", "<p></p>"}) {
    show(html);
    key(Qt::Key_End, Qt::ControlModifier);
    QTest::keyClicks(&editor, "x");
    key(Qt::Key_Backspace);
    EXPECT_EQ(edited, shown) << editor.toPlainText().toStdString() << html << "\n"
                             << described(edited) << "\n"
                             << described(shown);
  }
}

TEST_F(RichTextEditorTest, whatIsWrittenLooksAsWhatStandsBefore) {
  show("<b>bold</b> thin<p>last</p>");
  for (int i = 0; i < 4; ++i) key(Qt::Key_Right);
  QTest::keyClicks(&editor, "er");
  EXPECT_EQ(described(edited), "[bold]bolder[plain] thin\nlast");
  key(Qt::Key_Return);
  EXPECT_EQ(described(edited), "[bold]bolder[plain]\n thin\nlast");
  key(Qt::Key_End, Qt::ControlModifier);
  pasteboard().write({{{NSPasteboardTypeString.rawValue, " word"}}});
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(described(edited), "[bold]bolder[plain]\n thin\nlast word");
  key(Qt::Key_A, Qt::ControlModifier);
  key(Qt::Key_Delete);
  EXPECT_EQ(edited.string(), String());
}

TEST_F(RichTextEditorTest, keepsItsPlaceAndWhatIsUndoneWhenTheTextIsTheSame) {
  editor.setUndoRedoEnabled(true);
  show("<b>bold</b> thin");
  key(Qt::Key_End, Qt::ControlModifier);
  QTest::keyClicks(&editor, "x");
  editor.setAttributedText(edited, kColors);
  EXPECT_EQ(editor.textCursor().position(), 10);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(edited, shown);
  key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(editor.toPlainText(), "bold thin") << "its filling is not undone";
}

}  // namespace
}  // namespace tarnix::qt
