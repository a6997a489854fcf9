#pragma once

#include <QString>
#include <optional>

#include "backends/qt/previews/preview_answer.h"

// What people read and hear of previews.
namespace tarnix::qt::texts {

QString loading();
// Why there is no preview, in one line.
QString reasonOf(const previewing::Refusal& refusal);
QString tookTooLong();
QString previewerMissing();
QString previewerDied();
QString previewerConfused();

// What assistive tools call each kind of preview.
QString noPreview(const QString& reason);
QString pictureName(QSize size);
QString documentName(std::size_t pages);
QString textName();
QString folderName(const previewing::Folder& folder);
QString informationName(const previewing::Information& information);

QString partShown(std::uint64_t shownBytes, std::uint64_t fileBytes);
QString byteCount(std::uint64_t bytes);
QString modified(std::int64_t moment);
QString created(std::int64_t moment);

}  // namespace tarnix::qt::texts
