#pragma once

#include <QColor>
#include <QDBusVariant>
#include <QObject>
#include <QVariantMap>
#include <functional>
#include <optional>

namespace tarnix::qt {

enum class ColorScheme;

// What the desktop portal tells of the user's choice of colours, which not every desktop has in its palette.
// Followed for as long as the object lives; without a bus or a portal nothing is ever told. Never waits.
class AppearancePortal : public QObject {
  Q_OBJECT

 public:
  // `changed` is called whenever one of the two below has become another one.
  explicit AppearancePortal(std::function<void()> changed);

  // Absent while the user prefers none, or nothing is known.
  std::optional<ColorScheme> colorScheme() const { return colorScheme_; }
  std::optional<QColor> accent() const { return accent_; }

 private Q_SLOTS:
  void takeChange(const QString& group, const QString& key, const QDBusVariant& value);

 private:
  void askForAll();
  void take(const QVariantMap& settings);

  std::function<void()> changed_;
  std::optional<ColorScheme> colorScheme_;
  std::optional<QColor> accent_;
};

}  // namespace tarnix::qt
