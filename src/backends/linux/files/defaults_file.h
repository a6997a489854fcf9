#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backends/linux/files/shared_file.h"
#include "platform/foundation/defaults/user_defaults.h"
#include "platform/foundation/property_list.h"
#include "platform/foundation/run_loop.h"

namespace tarnix::linux_desktop {

// Keeps settings in an XML property list file that other processes may write as well. Made, used and
// destroyed on any thread, by one at a time.
//
// Values are answered from memory: the file as it was at construction, with this object's changes and those
// of other processes that were taken in. Each change is merged into what the file holds by then and written
// before the call returns, so that processes which change different keys lose nothing.
//
// A change that cannot be written stays in memory and is tried again with the next change and at the end; the
// file keeps what it had. A value that the format cannot hold (`xmlPropertyList`) stays in memory only. A
// damaged file is kept under another name: at construction, when the settings start anew, else with the next
// change, which writes all that is in memory.
//
// Of what another process changed, keys with an unwritten value here are passed over. A file that was removed
// has no values any more. One that is damaged, unreadable or somebody else's changes nothing in memory.
class FileDefaultsStorage final : public DefaultsStorage {
 public:
  // Called from within any of the calls below. A failure that lasts is reported once.
  using Report = std::function<void(const StorageFailure&)>;

  // Calls the handler of foreign changes on `loop`, whatever thread this object is used on: once after it was
  // set, and then whenever the file may have changed (`FileWatch`). Never calls it without a loop. Where the
  // system refuses the watch, the next taking of foreign changes reports it.
  explicit FileDefaultsStorage(std::filesystem::path file, Report report = {}, RunLoop* loop = nullptr);
  FileDefaultsStorage(const FileDefaultsStorage&) = delete;
  FileDefaultsStorage& operator=(const FileDefaultsStorage&) = delete;
  ~FileDefaultsStorage() override;

  std::optional<PropertyList> object(const String& key) const override;
  void setObject(const String& key, const PropertyList& object) override;
  void removeObject(const String& key) override;
  PropertyList::Dictionary contents() const override { return contents_; }
  // Waits for a call of the former handler that is under way on another thread.
  void setForeignChangeHandler(std::function<void()> handler) override;
  std::vector<String> takeForeignChanges() override;

 private:
  using Changes = std::map<String, std::optional<PropertyList>>;  // Absent: the key is removed.
  class Follower;

  void load();
  void save();
  void change(const String& key, std::optional<PropertyList> object);
  bool understand(std::optional<std::string> xml);
  bool takeStored(const SharedFileTurn& turn);
  void setUnfitChangesApart();
  void report(const StorageFailure& failure);
  void reportOnce(const StorageFailure& failure);

  std::filesystem::path file_;
  Report report_;
  PropertyList::Dictionary contents_;
  // What the file held at the last look, and as what it reads. Absent: there was no file.
  std::optional<std::string> storedText_;
  PropertyList::Dictionary stored_;
  bool hasNews_ = false;  // Some of `stored_` is of another process and not yet in `contents_`.
  Changes unsaved_;
  Changes unfit_;                        // Those that the file cannot hold.
  std::vector<StorageFailure> lasting_;  // Reported, until file and memory are in step again.
  bool isDeafnessReported_ = false;
  std::shared_ptr<RunLoop::Inbox> inbox_;  // Null without a loop, as the follower.
  std::shared_ptr<Follower> follower_;
};

}  // namespace tarnix::linux_desktop
