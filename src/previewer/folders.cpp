#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCollator>
#include <QString>
#include <algorithm>
#include <string_view>
#include <vector>

#include "previewer/answers.h"

namespace tarnix::previewer {
namespace {

constexpr std::size_t kEntriesInMessage = 500;

struct Listed {
  Entry entry;
  QCollatorSortKey key;
};

Entry::Kind kindOf(mode_t mode) {
  if (S_ISDIR(mode)) return Entry::Kind::folder;
  if (S_ISLNK(mode)) return Entry::Kind::link;
  return S_ISREG(mode) ? Entry::Kind::file : Entry::Kind::other;
}

// Nothing behind a link is asked for.
Entry entryOf(int folder, const char* name) {
  Entry entry{Entry::Kind::other, *name == '.', 0, QString::fromLocal8Bit(name).toStdString()};
  struct stat status {};
  if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) != 0) return entry;
  entry.kind = kindOf(status.st_mode);
  if (entry.kind == Entry::Kind::file) entry.bytes = static_cast<std::uint64_t>(status.st_size);
  return entry;
}

// Folders first, what is hidden last in each, by name in the order of the language.
bool comesBefore(const Listed& a, const Listed& b) {
  const auto rank = [](const Entry& each) {
    return (each.kind != Entry::Kind::folder ? 2 : 0) + (each.isHidden ? 1 : 0);
  };
  if (rank(a.entry) != rank(b.entry)) return rank(a.entry) < rank(b.entry);
  return a.key < b.key;
}

std::vector<Listed> listed(DIR* stream, bool& hasMore) {
  QCollator collator;
  collator.setNumericMode(true);
  std::vector<Listed> entries;
  while (const dirent* const each = readdir(stream)) {
    const std::string_view name = each->d_name;
    if (name == "." || name == "..") continue;
    hasMore = entries.size() == kMostEntries;
    if (hasMore) break;
    Entry entry = entryOf(dirfd(stream), each->d_name);
    auto key = collator.sortKey(QString::fromStdString(entry.name));
    entries.push_back({std::move(entry), std::move(key)});
  }
  std::sort(entries.begin(), entries.end(), comesBefore);
  return entries;
}

}  // namespace

void answerFolder(const Channel& channel, const OpenedFile& file) {
  DIR* const stream = fdopendir(fcntl(file.descriptor(), F_DUPFD_CLOEXEC, 0));
  if (stream == nullptr) return channel.refuse(Reason::unreadable);
  Folder folder;
  std::vector<Listed> entries = listed(stream, folder.hasMore);
  closedir(stream);
  folder.entries = static_cast<std::uint32_t>(entries.size());
  channel.send(MessageKind::folder, payloadOf(folder));
  for (std::size_t first = 0; first < entries.size(); first += kEntriesInMessage) {
    const std::size_t last = std::min(entries.size(), first + kEntriesInMessage);
    std::vector<Entry> batch;
    for (std::size_t i = first; i < last; ++i) batch.push_back(std::move(entries[i].entry));
    channel.send(MessageKind::entries, payloadOf(batch));
  }
}

}  // namespace tarnix::previewer
