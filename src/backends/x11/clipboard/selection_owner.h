#pragma once

#include <xcb/xproto.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "backends/x11/clipboard/background_work.h"
#include "backends/x11/clipboard/outgoing_transfer.h"
#include "backends/x11/connection/connection.h"
#include "backends/x11/connection/hidden_window.h"
#include "platform/appkit/pasteboard.h"
#include "platform/appkit/rich_text/conversions.h"

namespace tarnix::x11 {

// Owns the CLIPBOARD selection for this program and answers who asks for it (ICCCM, section 2.2). Plain text
// goes out under its common names, RTF under its two.
class SelectionOwner {
 public:
  explicit SelectionOwner(std::shared_ptr<Connection> connection);
  SelectionOwner(const SelectionOwner&) = delete;
  SelectionOwner& operator=(const SelectionOwner&) = delete;

  // Takes the selection, in a later turn, with a time from the server. The item may be filled until it is
  // asked for, and is kept until another program takes the selection.
  void claim(std::shared_ptr<NSPasteboardItem> item);
  const std::shared_ptr<NSPasteboardItem>& item() const { return item_; }
  xcb_window_t window() const { return window_.id(); }

  // Asks the clipboard manager to take the content over, and serves it until it has, at most for `limit`.
  bool handOver(RunLoop::Duration limit);

 private:
  template <typename Event>
  void listen(int type, void (SelectionOwner::*handler)(const Event&));
  void noteTime(const xcb_property_notify_event_t& change);
  void noteClear(const xcb_selection_clear_event_t& clear);
  void noteAnswer(const xcb_selection_notify_event_t& answer);
  void notePropertyChange(const xcb_property_notify_event_t& change);
  void noteDestruction(const xcb_destroy_notify_event_t& destruction);

  void answer(const xcb_selection_request_event_t& request);
  void answerNow(const xcb_selection_request_event_t& request);
  bool mayAnswer(const xcb_selection_request_event_t& request) const;
  bool convert(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  void convertMultiple(const xcb_selection_request_event_t& request);
  void answerMultiple(const xcb_selection_request_event_t& request, const xcb_get_property_reply_t* reply);
  void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
  std::vector<xcb_atom_t> targets() const;
  bool isRtfAlone() const;
  bool waitsForForms(xcb_atom_t target) const;
  void awaitForms(const xcb_selection_request_event_t& request);
  void takeForms(std::optional<RichTextForms> forms);
  std::optional<String> plainText() const;
  std::optional<Payload> payloadFor(xcb_atom_t target) const;
  bool isTextLatin1(const String& text) const;
  bool send(xcb_window_t requestor, xcb_atom_t property, Payload payload);
  void drop(const OutgoingTransfer& transfer);
  void write(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const std::vector<std::uint32_t>& values);
  xcb_atom_t atom(std::string_view name) const { return connection_->atoms()[name]; }

  std::shared_ptr<Connection> connection_;
  HiddenWindow window_;
  std::shared_ptr<NSPasteboardItem> item_;
  // What RTF that stands alone is in other forms, once one of them was asked for; empty for what is no RTF.
  std::optional<RichTextForms> forms_;
  std::vector<xcb_selection_request_event_t> waiting_;  // For the forms.
  BackgroundWork work_;
  bool isClaiming_ = false;
  bool isOwner_ = false;
  xcb_timestamp_t acquired_ = XCB_CURRENT_TIME;
  mutable String checkedText_;  // The text that `isCheckedLatin1_` is known of.
  mutable bool isCheckedLatin1_ = true;
  enum class HandOver { none, asked, done, refused } handOver_ = HandOver::none;
  std::vector<std::unique_ptr<OutgoingTransfer>> transfers_;
  std::map<std::uint32_t, Connection::Subscription> multiples_;  // Being read.
  std::vector<Connection::Subscription> events_;
};

}  // namespace tarnix::x11
