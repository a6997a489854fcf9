#include "backends/x11/connection/atoms.h"

#include <array>

namespace tarnix::x11 {
namespace {

using namespace std::string_view_literals;

constexpr std::array kNames{
    // Selections and the meta targets of ICCCM, section 2.6.2.
    "CLIPBOARD"sv,
    "CLIPBOARD_MANAGER"sv,
    "SAVE_TARGETS"sv,
    "TARGETS"sv,
    "MULTIPLE"sv,
    "TIMESTAMP"sv,
    "ATOM"sv,
    "ATOM_PAIR"sv,
    "INTEGER"sv,
    "INCR"sv,
    "NULL"sv,
    // Representations.
    "UTF8_STRING"sv,
    "STRING"sv,
    "TEXT"sv,
    "COMPOUND_TEXT"sv,
    "text/plain"sv,
    "text/plain;charset=utf-8"sv,
    "text/plain;charset=UTF-8"sv,
    "text/plain;charset=utf-16"sv,
    "text/html"sv,
    "text/rtf"sv,
    "application/rtf"sv,
    "text/richtext"sv,
    "text/uri-list"sv,
    "x-special/gnome-copied-files"sv,
    "org.nspasteboard.source"sv,
    "x-kde-passwordManagerHint"sv,
    // Windows and the desktop, from the extended window manager hints.
    "WM_STATE"sv,
    "_NET_SUPPORTED"sv,
    "_NET_SUPPORTING_WM_CHECK"sv,
    "_NET_CLIENT_LIST_STACKING"sv,
    "_NET_ACTIVE_WINDOW"sv,
    "_NET_CURRENT_DESKTOP"sv,
    "_NET_FRAME_EXTENTS"sv,
    "_GTK_FRAME_EXTENTS"sv,
    "WM_NAME"sv,
    "WM_CLASS"sv,
    "WM_CLIENT_MACHINE"sv,
    "_NET_WM_NAME"sv,
    "_NET_WM_PID"sv,
    "_NET_WM_DESKTOP"sv,
    "_NET_WM_STATE"sv,
    "_NET_WM_STATE_ABOVE"sv,
    "_NET_WM_STATE_HIDDEN"sv,
    "_NET_WM_WINDOW_OPACITY"sv,
    "_NET_WM_WINDOW_TYPE"sv,
    "_NET_WM_WINDOW_TYPE_DESKTOP"sv,
    "_NET_WM_WINDOW_TYPE_DIALOG"sv,
    "_NET_WM_WINDOW_TYPE_DND"sv,
    "_NET_WM_WINDOW_TYPE_DOCK"sv,
    "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"sv,
    "_NET_WM_WINDOW_TYPE_COMBO"sv,
    "_NET_WM_WINDOW_TYPE_MENU"sv,
    "_NET_WM_WINDOW_TYPE_NORMAL"sv,
    "_NET_WM_WINDOW_TYPE_NOTIFICATION"sv,
    "_NET_WM_WINDOW_TYPE_POPUP_MENU"sv,
    "_NET_WM_WINDOW_TYPE_SPLASH"sv,
    "_NET_WM_WINDOW_TYPE_TOOLBAR"sv,
    "_NET_WM_WINDOW_TYPE_TOOLTIP"sv,
    "_NET_WM_WINDOW_TYPE_UTILITY"sv,
    // This program's own: where answers are put, one for each request under way, and the clock.
    "TARNIX_ANSWER_0"sv,
    "TARNIX_ANSWER_1"sv,
    "TARNIX_ANSWER_2"sv,
    "TARNIX_ANSWER_3"sv,
    "TARNIX_ANSWER_4"sv,
    "TARNIX_ANSWER_5"sv,
    "TARNIX_ANSWER_6"sv,
    "TARNIX_ANSWER_7"sv,
    "TARNIX_ANSWER_8"sv,
    "TARNIX_ANSWER_9"sv,
    "TARNIX_ANSWER_10"sv,
    "TARNIX_ANSWER_11"sv,
    "TARNIX_ANSWER_12"sv,
    "TARNIX_ANSWER_13"sv,
    "TARNIX_ANSWER_14"sv,
    "TARNIX_ANSWER_15"sv,
    "TARNIX_TIME"sv,
};

}  // namespace

std::span<const std::string_view> atomNames() { return kNames; }

void Atoms::add(std::string_view name, xcb_atom_t atom) {
  atoms_.emplace(name, atom);
  names_.emplace(atom, name);
}

xcb_atom_t Atoms::operator[](std::string_view name) const {
  const auto found = atoms_.find(name);
  return found == atoms_.end() ? xcb_atom_t{XCB_ATOM_NONE} : found->second;
}

std::string_view Atoms::nameOf(xcb_atom_t atom) const {
  const auto found = names_.find(atom);
  return found == names_.end() ? std::string_view() : found->second;
}

}  // namespace tarnix::x11
