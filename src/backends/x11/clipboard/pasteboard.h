#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "backends/x11/clipboard/background_work.h"
#include "backends/x11/clipboard/ownership.h"
#include "backends/x11/clipboard/pasteboard_items.h"
#include "backends/x11/clipboard/requestor.h"
#include "backends/x11/clipboard/selection_owner.h"
#include "backends/x11/clipboard/snapshot.h"
#include "backends/x11/clipboard/type_mapping.h"
#include "backends/x11/connection/atom_names.h"
#include "backends/x11/connection/connection.h"
#include "platform/appkit/pasteboard.h"

namespace tarnix::x11 {

// The CLIPBOARD selection of an X display. When another program takes it, everything that is read of its
// content is fetched first, without anything waiting for that; the change count moves, and the loop is told,
// when the fetch has come to its end, whatever the end. Until then the former content is answered. Changes
// that follow each other faster than the clipboard is looked at are passed over but for the last. The same
// content from a program that keeps it for another one, or from an owner that asserts itself, is no change.
class Pasteboard : public NSPasteboard {
 public:
  // Looks at what else belongs to the moment of a copy, such as the windows, and calls `done` when it knows.
  using Survey = std::function<void(std::function<void()> done)>;

  // `survey`, which may be empty, goes on beside each fetch; the change count waits for both.
  explicit Pasteboard(std::shared_ptr<Connection> connection, Survey survey = {},
                      const FetchLimits& limits = {});
  Pasteboard(const Pasteboard&) = delete;
  Pasteboard& operator=(const Pasteboard&) = delete;

  // From here on, the source of content that carries none itself is the application that owns it.
  void setIdentify(Identify identify) { identify_ = std::move(identify); }

  // What lay on the clipboard before this object was made is its first content: it moves no count, and has no
  // source, however late its owner hands it over. Waits for it; false when it takes longer than `limit`.
  bool awaitFirstSnapshot(RunLoop::Duration limit);
  // Called once, in a turn of the loop, when the first content came after that.
  void setFirstContentCame(std::function<void()> came) { firstContentCame_ = std::move(came); }
  // Gives this program's content to the clipboard manager, if there is one and the content is ours, so that
  // it outlives the program. Waits, at most 0.6 s, and serves requests meanwhile. False when nothing was
  // handed over.
  bool handOver();

  int changeCount() const override { return changeCount_; }
  std::optional<std::vector<std::shared_ptr<NSPasteboardItem>>> pasteboardItems() const override;
  std::optional<String> stringForType(const PasteboardType& type) const override;
  AnyCancellable whenSettled(std::function<void()> settled) const override;
  // Other programs see the new owner in a later turn, and so with all that `setString` adds in this one.
  int clearContents() override;
  bool setString(const String& text, const PasteboardType& type) override;

 private:
  void observe();
  // Has the changes of a selection's owner sent, and asks for the present one.
  [[nodiscard]] Connection::Subscription watch(std::string_view selection,
                                               std::function<void(xcb_window_t)> takeFirst);
  void ownerChanged(const xcb_xfixes_selection_notify_event_t& change);
  void ownerLost(const xcb_xfixes_selection_notify_event_t& change);
  bool isKept(const Content& content, const PasteboardItems& items) const;
  bool isByKeeper() const;
  bool isEcho() const;
  void fetchSoon(xcb_timestamp_t time);
  void fetch(bool isFirst = false);
  void finishRound();
  void makeRtf(Content content);
  void takeContent(Content content);
  void abandonRound();
  void takeFirst(PasteboardItems items);
  std::optional<String> sourceOfRound() const;
  bool isSettled() const { return !round_ && !nextFetch_ && !emptied_; }
  void noteSettled();
  void publish(PasteboardItems items, bool isOwn);
  void publishOwn();

  // One look at the clipboard.
  struct Round {
    bool isFirst = false;
    std::optional<Content> content;
    bool isSurveyed = false;
  };

  std::shared_ptr<Connection> connection_;
  Survey survey_;
  FetchLimits limits_;
  SelectionOwner owner_;
  Requestor requestor_;
  AtomNames names_;
  TypeMapping mapping_;
  int changeCount_ = 0;
  PasteboardItems items_;
  std::shared_ptr<OwnItem> written_;  // What this program wrote last.
  bool isOwn_ = false;                // The content is what this program wrote.
  bool isSecret_ = false;
  bool isFirstKnown_ = false;
  std::function<void()> firstContentCame_;
  Subject<Void> settled_;
  Identify identify_;
  std::optional<String> source_;        // The application that owns the content.
  std::shared_ptr<Ownership> known_;    // Whose content is known.
  std::shared_ptr<Ownership> present_;  // The last owner, whose content may still be on its way.
  std::shared_ptr<Ownership> unread_;   // The one before, if it went before its content was known.
  std::shared_ptr<Ownership> lost_;     // There is no owner, or was none just before the last.
  RunLoop::Subscription emptied_;       // Until then somebody may still take over what was lost.
  std::optional<RunLoop::Instant> lastFetch_;
  std::unique_ptr<Snapshot> snapshot_;
  BackgroundWork conversion_;
  std::shared_ptr<Round> round_;  // Present from the start of a fetch until its content is published.
  RunLoop::Subscription nextFetch_;
  xcb_timestamp_t nextFetchTime_ = XCB_CURRENT_TIME;
  xcb_window_t manager_ = XCB_WINDOW_NONE;  // Of the program that offers to keep what others leave behind.
  Connection::Subscription ownerChanges_;
  Connection::Subscription firstOwner_;
  Connection::Subscription firstManager_;
};

}  // namespace tarnix::x11
