#include "backends/qt/appearance_portal.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMap>
#include <QStringList>
#include <tuple>
#include <utility>

#include "backends/qt/theme/theme.h"

namespace tarnix::qt {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kGroup = QStringLiteral("org.freedesktop.appearance");

// As the portal numbers them; 0 and what it doesn't know are no preference.
std::optional<ColorScheme> schemeFrom(const QVariant& value) {
  switch (value.toUInt()) {
    case 1:
      return ColorScheme::dark;
    case 2:
      return ColorScheme::light;
    default:
      return std::nullopt;
  }
}

// Red, green and blue from 0 to 1; anything beyond means that there is none.
std::optional<QColor> accentFrom(const QVariant& value) {
  const auto argument = value.value<QDBusArgument>();
  if (argument.currentSignature() != QLatin1String("(ddd)")) return std::nullopt;
  double red = 0;
  double green = 0;
  double blue = 0;
  argument.beginStructure();
  argument >> red >> green >> blue;
  argument.endStructure();
  const auto isShare = [](double channel) { return channel >= 0 && channel <= 1; };
  if (!isShare(red) || !isShare(green) || !isShare(blue)) return std::nullopt;
  return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue));
}

}  // namespace

AppearancePortal::AppearancePortal(std::function<void()> changed) : changed_(std::move(changed)) {
  QDBusConnection::sessionBus().connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                                        SLOT(takeChange(QString, QString, QDBusVariant)));
  askForAll();
}

void AppearancePortal::askForAll() {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("ReadAll"));
  call << QStringList(kGroup);
  auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
    finished->deleteLater();
    const QDBusMessage reply = finished->reply();
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}")) return;
    take(qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst()).value(kGroup));
  });
}

void AppearancePortal::takeChange(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == kGroup) take({{key, value.variant()}});
}

void AppearancePortal::take(const QVariantMap& settings) {
  const auto former = std::tuple(colorScheme_, accent_);
  const auto scheme = settings.constFind(QStringLiteral("color-scheme"));
  if (scheme != settings.constEnd()) colorScheme_ = schemeFrom(*scheme);
  const auto accent = settings.constFind(QStringLiteral("accent-color"));
  if (accent != settings.constEnd()) accent_ = accentFrom(*accent);
  if (former != std::tuple(colorScheme_, accent_)) changed_();
}

}  // namespace tarnix::qt
