#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>

#include "backends/linux/shared_file.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/user_defaults.h"

namespace tarnix::linux_desktop {

// Keeps settings in an XML property list file that other processes may write as well. Used on one thread.
//
// Values are answered from memory: the file as it was at construction, with this object's changes. Each
// change is merged into what the file holds by then and written before the call returns, so that processes
// which change different keys lose nothing. What another process wrote is seen by the next object.
//
// A change that cannot be written stays in memory and is tried again with the next change and at the end; the
// file keeps what it had. A value that the format cannot hold (`xmlPropertyList`) stays in memory only. A
// damaged file is kept under another name, and the settings start anew.
class FileDefaultsStorage final : public DefaultsStorage {
 public:
  // Called during construction, changes and destruction. A failure that lasts is reported once.
  using Report = std::function<void(const StorageFailure&)>;

  explicit FileDefaultsStorage(std::filesystem::path file, Report report = {});
  FileDefaultsStorage(const FileDefaultsStorage&) = delete;
  FileDefaultsStorage& operator=(const FileDefaultsStorage&) = delete;
  ~FileDefaultsStorage() override;

  std::optional<PropertyList> object(const String& key) const override;
  void setObject(const String& key, PropertyList object) override;
  void removeObject(const String& key) override;
  PropertyList::Dictionary contents() const override { return contents_; }

 private:
  using Changes = std::map<String, std::optional<PropertyList>>;  // Absent: the key is removed.

  void load();
  void save();
  std::optional<PropertyList::Dictionary> takeStored(const SharedFileTurn& turn);
  void apply(PropertyList::Dictionary& stored);
  void report(const StorageFailure& failure);
  void reportOnce(const StorageFailure& failure);

  std::filesystem::path file_;
  Report report_;
  PropertyList::Dictionary contents_;
  Changes unsaved_;
  std::optional<StorageFailure> lasting_;  // The last failure reported, until a save succeeds.
};

}  // namespace tarnix::linux_desktop
