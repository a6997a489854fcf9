// The least that a Qt program costs which looks at something five times a second: a bare window and a plain
// timer.

#include <QApplication>
#include <QLabel>
#include <QTimer>

int main(int argumentCount, char** arguments) {
  QApplication application(argumentCount, arguments);
  QLabel window("A timer");
  QTimer timer;
  int ticks = 0;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&ticks] { ++ticks; });
  timer.start(200);
  window.show();
  return QApplication::exec();
}
