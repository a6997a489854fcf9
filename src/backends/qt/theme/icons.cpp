#include "backends/qt/theme/icons.h"

#include <QMimeDatabase>

#include "backends/qt/theme/text.h"

namespace tarnix::qt {

QIcon iconOf(const NSImage& image) {
  // Where programs put their own icons, also if the desktop's theme isn't installed.
  if (QIcon::fallbackThemeName().isEmpty()) QIcon::setFallbackThemeName(QStringLiteral("hicolor"));
  for (const String& each : image.names) {
    const QString name = toQString(each);
    const QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    if (!icon.isNull() && !icon.availableSizes().isEmpty()) return icon;
  }
  const QMimeType kind =
      QMimeDatabase().mimeTypeForFile(toQString(image.path), QMimeDatabase::MatchExtension);
  for (const QString& name : {kind.iconName(), kind.genericIconName()}) {
    const QIcon icon = QIcon::fromTheme(name);
    if (!icon.isNull()) return icon;
  }
  return {};
}

}  // namespace tarnix::qt
