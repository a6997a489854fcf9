#!/usr/bin/env bash
# Shows the program at work where nobody has a screen: opens it on a virtual one, lets other programs copy, prints what
# the window shows and saves a picture of it. Fails when the window does not show what was copied. The session
# it makes is its own (display, message bus, home), so nothing of the user's is read or changed.
#
# Usage: tour.sh PROGRAM PICTURE [ARGUMENTS of the program]
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# Starts this script once more in a session of its own.
if [[ ${TARNIX_TOUR_HOME:-} == "" ]]; then
  program=$(realpath "$1")
  picture=$(realpath -m "$2")
  shift 2
  home=$(mktemp -d)
  trap 'rm -rf "$home"' EXIT
  mkdir -m 700 "$home/runtime"
  env -i PATH="$PATH" LANG=C.UTF-8 HOME="$home" XDG_RUNTIME_DIR="$home/runtime" TARNIX_TOUR_HOME="$home" \
    dbus-run-session -- bash "${BASH_SOURCE[0]}" "$program" "$picture" "$@" 3>&1 4>&2 >"$home/log" 2>&1
  exit
fi
exec >&3 2>&4 3>&- 4>&- # What the message bus says stays in the log.

program=$1
picture=$2
shift 2
# Started by us, ended by us: the last one first, the display at the very end.
started=()
end_all() {
  local position
  for ((position = ${#started[@]} - 1; position >= 0; --position)); do
    kill "${started[position]}" 2>/dev/null || true
    wait "${started[position]}" 2>/dev/null || true
  done
}
trap end_all EXIT

start() {
  "$@" >>"$HOME/log" 2>&1 &
  started+=($!)
}

give_up() {
  echo "$1" >&2
  tail -n 20 "$HOME/log" >&2
  exit 1
}

open_screen() {
  mkfifo "$HOME/display"
  start Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3<>"$HOME/display"
  read -r -t 20 number <"$HOME/display" || give_up "The virtual screen did not start."
  export DISPLAY=:$number QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
  start openbox
}

window_text() {
  /usr/bin/python3 "$here/window_text.py" --application "$(basename "$program")" "$@"
}

# Waits for the window to show a text: expect WHO TEXT.
copied=()
expect() {
  window_text --quiet --timeout 5 --until "$2" >/dev/null || give_up "The window does not show what $1 copied: $2"
  copied+=("$2")
  echo "  $1 copied: $2"
}

copy_with_xclip() {
  xclip -selection clipboard <<<"A line from xclip" >>"$HOME/log" 2>&1
  expect xclip "A line from xclip"
}

copy_with_xsel() {
  printf 'Grüße from xsel' | xsel --clipboard --input >>"$HOME/log" 2>&1
  expect xsel "Grüße from xsel"
}

# Drags the pointer over the line that the terminal shows.
copy_with_xterm() {
  local window
  start xterm -title "Tour terminal" -geometry 40x5-0-0 -xrm 'XTerm*selectToClipboard: true' \
    -e sh -c 'echo A line selected in xterm; exec sleep 600'
  window=$(xdotool search --sync --onlyvisible --name "Tour terminal" | head -n 1)
  xdotool windowfocus --sync "$window"
  sleep 0.5 # The terminal draws its line.
  xdotool mousemove --window "$window" 2 8 mousedown 1 mousemove --window "$window" 235 8 mouseup 1
  expect xterm "A line selected in xterm"
}

copy_with_zenity() {
  local window
  start zenity --entry --title "Tour entry" --text "Copy this:" --entry-text "A line typed into zenity"
  window=$(xdotool search --sync --onlyvisible --name "Tour entry" | head -n 1)
  xdotool windowfocus --sync "$window" key ctrl+a key ctrl+c
  expect zenity "A line typed into zenity"
}

copy_with_gtk() {
  start /usr/bin/python3 "$here/gtk_copy.py" --text "Three words, GTK"
  expect "a GTK program" "Three words, GTK"
}

open_screen
start "$program" "$@"
program_id=$!
window_text --quiet --timeout 20 --until Active --until "Clear list" >/dev/null || give_up "The window did not open."
echo "Programs copy, and the window shows:"
copy_with_xclip
copy_with_xsel
copy_with_xterm
copy_with_zenity
copy_with_gtk

echo "The whole window:"
until_arguments=()
for text in "${copied[@]}"; do until_arguments+=(--until "$text"); done
window_text "${until_arguments[@]}"
window=$(xdotool search --onlyvisible --pid "$program_id" | tail -n 1)
xdotool windowactivate --sync "$window" 2>>"$HOME/log"
sleep 0.3 # The last frame is drawn.
import -window "$window" "$picture"
echo "Picture: $picture"
