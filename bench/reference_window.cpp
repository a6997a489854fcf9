// The least that a Qt program with a window is: what the start, the memory and the event loop of others are
// compared with.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argumentCount, char** arguments) {
  QApplication application(argumentCount, arguments);
  QMainWindow window;
  auto* label = new QLabel("A window");
  label->setAlignment(Qt::AlignCenter);
  window.setCentralWidget(label);
  window.resize(800, 500);
  window.show();
  return QApplication::exec();
}
