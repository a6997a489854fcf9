#include "backends/qt/previews/preview_texts.h"

#include "backends/qt/theme/text.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <limits>

namespace tarnix::qt::texts {
namespace {

QString number(std::uint64_t value) { return QLocale().toString(static_cast<qulonglong>(value)); }

QString moment(std::int64_t seconds) {
  return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat);
}

}  // namespace

QString loading() { return localized("Loading…"); }

QString reasonOf(const previewing::Refusal& refusal) {
  using previewing::Reason;
  switch (refusal.reason) {
    case Reason::missing:
      return localized("The file does not exist any more");
    case Reason::noPermission:
      return localized("You may not read this file");
    case Reason::notAFile:
      return localized("This is neither a file nor a folder");
    case Reason::linkLoop:
      return localized("The link leads back to itself");
    case Reason::nameTooLong:
      return localized("The name is too long");
    case Reason::unreadable:
      return localized("The file can't be read");
    case Reason::tooLarge:
      return localized("The picture is too large: %1 by %2")
          .arg(number(refusal.width), number(refusal.height));
    case Reason::tooMuchMemory:
      return localized("The file takes too much memory");
    case Reason::damaged:
      return localized("The file is damaged");
    case Reason::encrypted:
      return localized("The document is encrypted");
  }
  return {};
}

QString tookTooLong() { return localized("The file takes too long to read"); }
QString previewerMissing() { return localized("The previewer can't be started"); }
QString previewerDied() { return localized("The file can't be understood"); }
QString previewerConfused() { return localized("The previewer failed"); }

QString noPreview(const QString& reason) { return localized("No preview: %1").arg(reason); }

QString pictureName(QSize size) { return localized("Image, %1 by %2").arg(size.width()).arg(size.height()); }

QString documentName(std::size_t pages) {
  return pages == 1 ? localized("PDF, 1 page") : localized("PDF, %1 pages").arg(number(pages));
}

QString textName() { return localized("Text"); }

QString folderName(const previewing::Folder& folder) {
  if (folder.hasMore) return localized("Folder, %1 items and more").arg(number(folder.entries));
  return folder.entries == 1 ? localized("Folder, 1 item")
                             : localized("Folder, %1 items").arg(number(folder.entries));
}

QString informationName(const previewing::Information& information) {
  QString kind = QString::fromStdString(information.kind);
  if (!kind.isEmpty()) kind[0] = kind[0].toUpper();
  return QStringLiteral("%1, %2").arg(kind, byteCount(information.bytes));
}

QString partShown(std::uint64_t shownBytes, std::uint64_t fileBytes) {
  return localized("The first %1 of %2").arg(byteCount(shownBytes), byteCount(fileBytes));
}

// Of 1,000 bytes a kB, and without decimals that say nothing.
QString byteCount(std::uint64_t bytes) {
  if (bytes == 1) return localized("1 byte");
  const auto size = static_cast<qint64>(std::min<std::uint64_t>(bytes, std::numeric_limits<qint64>::max()));
  const int decimals = size < 10'000'000 ? 0 : 1;
  return QLocale().formattedDataSize(size, decimals, QLocale::DataSizeSIFormat);
}

QString modified(std::int64_t seconds) { return localized("Modified %1").arg(moment(seconds)); }
QString created(std::int64_t seconds) { return localized("Created %1").arg(moment(seconds)); }

}  // namespace tarnix::qt::texts
