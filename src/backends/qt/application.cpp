#include "backends/qt/application.h"

#include <QApplication>
#include <QPalette>
#include <optional>

#include "backends/qt/appearance_portal.h"
#include "backends/qt/termination_signals.h"
#include "backends/qt/theme/style.h"
#include "backends/qt/theme/theme.h"

// In a static library the drawings are linked in, and known to the toolkit, only when asked for; outside any
// namespace, as the toolkit's macro wants it.
static void registerResources() { Q_INIT_RESOURCE(resources); }

namespace tarnix::qt {
namespace {

// Before the application object is made, so that no other style is ever loaded.
int& prepared(int& argc) {
  QApplication::setStyle(new Style);
  QCoreApplication::setApplicationName(QStringLiteral("tarnix"));
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Tarnix"));
  QGuiApplication::setDesktopFileName(QStringLiteral("tarnix"));
  return argc;
}

// The desktop's own palette, without what we made of it, and whether its accent is its own choice.
struct DesktopColors {
  QPalette palette;
  bool hasAccent;

  DesktopColors() {
    QApplication::setPalette(QPalette());
    palette = QApplication::palette();
    const auto accent = palette.color(QPalette::Active, QPalette::Highlight);
    hasAccent =
        accent != QApplication::style()->standardPalette().color(QPalette::Active, QPalette::Highlight);
  }

  void chooseAccent(const QColor& accent) {
    palette.setColor(QPalette::Active, QPalette::Highlight, accent);
    hasAccent = true;
  }
};

}  // namespace

// Follows the desktop: each change of its colours gives ours anew.
struct Application::Impl : QObject {
  Impl(int& argc, char** argv)
      : application(prepared(argc), argv), termination([] { QCoreApplication::quit(); }) {
    registerResources();
    // A steady text cursor: a blinking one would wake an idle program up several times a second.
    QApplication::setCursorFlashTime(0);
    applyPalette();
    application.installEventFilter(this);
  }

  void applyPalette() {
    isApplying = true;
    DesktopColors desktop;
    if (const auto accent = portal.accent()) desktop.chooseAccent(*accent);
    const ColorScheme own = portal.colorScheme().value_or(schemeOf(desktop.palette));
    QApplication::setPalette(themePalette(desktop.palette, desktop.hasAccent, forcedScheme.value_or(own)));
    isApplying = false;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    // Sent to the windows once the platform has taken in the desktop's new theme.
    if (event->type() == QEvent::ThemeChange && !isApplying) applyPalette();
    return QObject::eventFilter(watched, event);
  }

  QApplication application;
  TerminationSignals termination;
  AppearancePortal portal{[this] { applyPalette(); }};
  std::optional<ColorScheme> forcedScheme;
  bool isApplying = false;
};

Application::Application(int& argc, char** argv) : impl_(std::make_unique<Impl>(argc, argv)) {}
Application::~Application() = default;

int Application::run() { return QApplication::exec(); }

void Application::quit() { QCoreApplication::quit(); }

bool Application::isListeningForSignals() const { return impl_->termination.isListening(); }

void Application::setColorScheme(ColorScheme scheme) {
  impl_->forcedScheme = scheme;
  impl_->applyPalette();
}

}  // namespace tarnix::qt
