#include "backends/qt/file_manager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QObject>

#include "backends/qt/theme/text.h"

namespace tarnix::qt {
namespace {

// As long as a file manager may take to start.
constexpr int kPatience = 10'000;  // Milliseconds.

}  // namespace

void askFileManager(const std::vector<String>& urls, std::function<void()> failed) {
  const QString name = QStringLiteral("org.freedesktop.FileManager1");
  QDBusMessage request = QDBusMessage::createMethodCall(name, QStringLiteral("/org/freedesktop/FileManager1"),
                                                        name, QStringLiteral("ShowItems"));
  QStringList files;
  for (const String& url : urls) files.append(toQString(url));
  request.setArguments({files, QString()});
  auto* const watcher =
      new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(request, kPatience));
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                   [watcher, failed = std::move(failed)] {
                     watcher->deleteLater();
                     if (watcher->isError()) failed();
                   });
}

}  // namespace tarnix::qt
