// A Qt program that copies a text and keeps it until somebody else copies. With --html it copies what a text
// editor would that shows this page.
//
// Usage: qt_copy TEXT | qt_copy --html HTML
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTextDocument>
#include <cstring>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  const bool isHtml = argc == 3 && std::strcmp(argv[1], "--html") == 0;
  if (argc != 2 && !isHtml) return 2;
  QClipboard* clipboard = QGuiApplication::clipboard();
  QObject::connect(clipboard, &QClipboard::dataChanged, [&] {
    if (!clipboard->ownsClipboard()) QGuiApplication::quit();
  });
  auto* const copy = new QMimeData;
  QTextDocument document;
  if (isHtml) {
    document.setHtml(QString::fromUtf8(argv[2]));
    copy->setHtml(document.toHtml());
    copy->setText(document.toPlainText());
  } else {
    copy->setText(QString::fromUtf8(argv[1]));
  }
  clipboard->setMimeData(copy);
  return QGuiApplication::exec();
}
