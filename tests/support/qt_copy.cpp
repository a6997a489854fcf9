// A Qt program that copies a text and keeps it until somebody else copies.
#include <QClipboard>
#include <QGuiApplication>

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  if (argc != 2) return 2;
  QClipboard* clipboard = QGuiApplication::clipboard();
  QObject::connect(clipboard, &QClipboard::dataChanged, [&] {
    if (!clipboard->ownsClipboard()) QGuiApplication::quit();
  });
  clipboard->setText(QString::fromUtf8(argv[1]));
  return QGuiApplication::exec();
}
