#!/usr/bin/env bash
# Shows the program at work where nobody has a screen: opens it on a virtual one, lets other programs copy, prints what
# the window shows and saves a picture of it. Fails when the window does not show what was copied. The session
# it makes is its own (display, message bus, home), so nothing of the user's is read or changed.
#
# Usage: tour.sh PROGRAM OWNER PICTURE [ARGUMENTS of PROGRAM]; OWNER is the scripted clipboard owner.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

# Starts this script once more in a session of its own.
if [[ ${TARNIX_TOUR_HOME:-} == "" ]]; then
  program=$(realpath "$1")
  owner=$(realpath "$2")
  picture=$(realpath -m "$3")
  shift 3
  home=$(mktemp -d)
  trap 'rm -rf "$home"' EXIT
  mkdir -m 700 "$home/runtime"
  env -i PATH="$PATH" LANG=C.UTF-8 HOME="$home" XDG_RUNTIME_DIR="$home/runtime" TARNIX_TOUR_HOME="$home" \
    dbus-run-session -- bash "${BASH_SOURCE[0]}" "$program" "$owner" "$picture" "$@" 3>&1 4>&2 >"$home/log" 2>&1
  exit
fi
exec >&3 2>&4 3>&- 4>&- # What the message bus says stays in the log.

program=$1
owner=$2
picture=$3
shift 3
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

# Waits until the window shows a text: expect WHO TEXT.
expect() {
  window_text --quiet --timeout 5 --until "$2" >/dev/null || give_up "The window does not show what $1 copied: $2"
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

copy_files_with_gtk() {
  local name
  mkdir "$HOME/papers"
  for name in one two three; do echo "$name" >"$HOME/papers/$name.txt"; done
  start /usr/bin/python3 "$here/gtk_copy.py" "$HOME"/papers/{one,two,three}.txt
  expect "a GTK program" "$HOME/papers/one.txt"
}

# An owner that never finishes its answer keeps nobody from copying after it.
copy_after_stall() {
  start "$owner" incr-stall --text "A text that never arrives"
  sleep 0.3 # The transfer has begun.
  start "$owner" good --text "A copy made while another hangs"
  expect "the scripted owner" "A copy made while another hangs"
}

copy_secret() {
  start "$owner" secret --text "A password"
  sleep 0.6 # Twice as long as any copy takes to show.
  ! window_text | grep -q "A password" || give_up "The window shows what was marked as secret."
  ! grep -q '^leaked' "$HOME/log" || give_up "What was marked as secret was read."
  echo "  a password manager copied a secret, which was neither read nor shown"
}

# As a browser offers it: HTML and plain text.
copy_formatted() {
  start "$owner" good --text "A heading, bold words and a list" --html \
    "<h2>A heading</h2><p>Some <b>bold</b> and some <span style='color:#c0392b'>red</span> words, and <a
    href='https://example.org/'>a link</a>.</p><ul><li>one</li><li>two</li></ul><table border=1><tr><th>Item<th>Count</tr>
    <tr><td>Rope<td align=right>40</tr></table>"
  expect "a program with formatted text" "A heading, bold words and a list"
  window_text --quiet --timeout 5 --until "Rich Text" --until "a link" >/dev/null ||
    give_up "The formatted text is not shown with its look."
}

open_screen
start "$program" "$@"
program_id=$!
window_text --quiet --timeout 20 --until Active --until "Clear list" >/dev/null || give_up "The window did not open."
echo "Programs copy, and the window shows it:"
copy_with_xclip
copy_with_xsel
copy_with_xterm
copy_with_zenity
copy_files_with_gtk
copy_after_stall
copy_secret
copy_with_gtk
copy_formatted

echo "The whole window:"
window_text --until "A line from xclip" --until "Grüße from xsel" --until "A line selected in xterm" \
  --until "A line typed into zenity" --until "A copy made while another hangs" --until "Three words, GTK"
window=$(xdotool search --onlyvisible --pid "$program_id" | tail -n 1)
xdotool windowactivate --sync "$window" 2>>"$HOME/log"
sleep 0.3 # The last frame is drawn.
import -window "$window" "$picture"
echo "Picture: $picture"
