#!/usr/bin/env bash
# Drives Tallymoor on an X display with keys and the mouse. Source this file; it needs xdotool, openbox and
# ImageMagick's import. Waiting functions poll up to a time limit, so a slow machine only takes longer.
#
# The sourcing script must define give_up MESSAGE, which must not return. It is called when a wait times out.

driver_limit=${TALLYMOOR_DRIVER_LIMIT:-60}  # Time limit of a wait in seconds.
driver_poll=0.1

# Disconnects the program from the surrounding desktop, whose panel would show its icon and hide its minimised
# window.
export DBUS_SESSION_BUS_ADDRESS=disabled:
unset SESSION_MANAGER

# wait_until WHAT command...: repeats the command until it succeeds. WHAT describes it in the error message.
wait_until() {
  local what=$1 end=$((SECONDS + driver_limit))
  shift
  until "$@"; do
    [ "$SECONDS" -lt "$end" ] || give_up "$what did not come within $driver_limit seconds"
    sleep "$driver_poll"
  done
}

is_not() { ! "$@"; }

# ---- Programs ----

process_runs() { kill -0 "$1" 2>/dev/null; }

# Ends a process started by this script; kills it if it asks the user first. Ignores an empty process number.
end_process() {
  local tries=20
  [ -n "$1" ] || return 0
  kill "$1" 2>/dev/null || return 0
  while process_runs "$1" && [ "$tries" -gt 0 ]; do
    tries=$((tries - 1))
    sleep "$driver_poll"
  done
  kill -KILL "$1" 2>/dev/null || true
  wait "$1" 2>/dev/null || true
}

# Starts the window manager and waits until it is ready. Sets window_manager.
start_window_manager() {
  openbox --sm-disable >/dev/null 2>&1 &
  window_manager=$!
  wait_until "The window manager" window_manager_works
}

window_manager_works() { xdotool get_desktop >/dev/null 2>&1; }

# start_program FOLDER: starts FOLDER/Tallymoor.exe in that folder. Sets program.
start_program() {
  (cd "$1" && exec ./Tallymoor.exe) &
  program=$!
}

# Waits until the program has ended. Sets program_status.
wait_for_end() {
  wait_until "The end of the program" is_not process_runs "$program"
  program_status=0
  wait "$program" || program_status=$?
}

# ---- Windows ----

# visible_windows PATTERN: numbers of the visible windows whose title matches. The search fails if a window
# disappears meanwhile; it is then repeated, so that no existing window is missed.
visible_windows() {
  local answer
  while :; do
    answer=$(xdotool search --onlyvisible --name "$1" 2>&1) || true
    [[ $answer == *"X Error"* ]] || break
  done
  printf '%s\n' "$answer" | grep -x '[0-9]*[0-9]' || true
}

# windows_titled TITLE: the windows with exactly this title.
windows_titled() {
  # shellcheck disable=SC2016 # a pattern
  visible_windows "^$(printf '%s' "$1" | sed 's/[][\.*^$()+?{|]/\\&/g')\$"
}

# Sets window if a window has this title.
find_window() {
  local numbers
  numbers=$(windows_titled "$1")
  [ -n "$numbers" ] && window=${numbers##*$'\n'}
}

has_window() { [ -n "$(windows_titled "$1")" ]; }

# wait_for_window TITLE: sets window to the window's number and waits until it has the focus.
wait_for_window() {
  wait_until "The window \"$1\"" find_window "$1"
  wait_for_keys
}

wait_for_no_window() { wait_until "The end of the window \"$1\"" is_not has_window "$@"; }

# Waits until the window has the focus and is drawn; earlier keys would be lost.
wait_for_keys() {
  local end=$((SECONDS + driver_limit / 4))
  until gets_keys "$window"; do
    # On a slow machine the window manager may give them to the window behind; the user would click.
    [ "$SECONDS" -lt "$end" ] || {
      xdotool windowactivate "$window" 2>/dev/null || true
      wait_until "The keys for the window $window" gets_keys "$window"
    }
    sleep "$driver_poll"
  done
  settle
}

gets_keys() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$1" ]; }

# A message box has the same title as the main window, so a box is a window of this title other than the main
# one.
boxes() { windows_titled Tallymoor | grep -vx "${main_window:-0}" || true; }

has_box() { [ -n "$(boxes)" ]; }

find_box() {
  local numbers
  numbers=$(boxes)
  [ -n "$numbers" ] && window=${numbers##*$'\n'}
}

# Sets window to the message box.
wait_for_box() {
  wait_until "A message box" find_box
  wait_for_keys
}

is_open() { visible_windows '.*' | grep -qx "$1"; }

# Waits until an answered window is closed.
wait_for_closing() { wait_until "The closing of the window $1" is_not is_open "$1"; }

# A short pause for drawing. Nothing depends on it alone.
settle() { sleep "${1:-0.3}"; }

# ---- Keys and mouse ----

press() { xdotool key --clearmodifiers --delay 40 "$@"; }

type_text() { xdotool type --clearmodifiers --delay 25 -- "$1"; }

# Replaces the field's content by typing.
replace_text() {
  press ctrl+a
  type_text "$1"
}

# click X Y [BUTTON]: clicks a position in the window.
click() {
  xdotool mousemove --sync --window "$window" "$1" "$2"
  xdotool click "${3:-1}"
  settle
}

# Moves the pointer away from everything with a tip.
park_pointer() { xdotool mousemove 1279 1023; }

# ---- Pictures ----

# screenshot FILE: takes a picture of the window as shown on the screen.
screenshot() {
  park_pointer
  settle 0.6
  import -silent -window "$window" "$1"
}

# ---- The program's own windows ----

use_main_window() {
  window=$main_window
  wait_for_keys
}

# Waits until loading has ended. Sets main_window.
wait_for_main_window() {
  main_window=
  wait_until "The main window" find_window Tallymoor
  main_window=$window
  wait_for_no_window "Tallymoor startup"
  use_main_window
}

# The tree of portfolios has nodes of equal height. node_place N: position of the text of the Nth visible
# node, counted from 1.
node_place() { printf '80 %d' $((104 + ($1 - 1) * 19)); }

# select_node N: clicks the node, which shows its page and expands it.
select_node() {
  use_main_window
  # shellcheck disable=SC2046 # two numbers
  click $(node_place "$1")
  settle 1
}

# choose_first_in_popup_of_node N: the popup opens at the pointer with its first entry below it.
choose_first_in_popup_of_node() {
  use_main_window
  # shellcheck disable=SC2046 # two numbers
  click $(node_place "$1") 3
  settle
  xdotool mousemove_relative --sync 30 12
  settle
  xdotool click 1
}

# Presses the online button at the right end of the tool bar.
press_online_button() {
  use_main_window
  eval "$(xdotool getwindowgeometry --shell "$window" | grep '^WIDTH=')"
  click $((WIDTH - 60)) 44
}

# OK is in the lower right corner of every form.
press_ok() {
  eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
  click $((WIDTH - 68)) $((HEIGHT - 40))
}

# answer_box KEY: answers a message box by alt+y, alt+n or Return.
answer_box() {
  wait_for_box
  press "$1"
  wait_for_closing "$window"
}

# choose_from_list TITLE N: checks the Nth entry of the list and presses OK.
choose_from_list() {
  local entry
  wait_for_window "$1"
  for ((entry = 0; entry < $2; ++entry)); do
    press Tab
  done
  press space
  press_ok
  wait_for_no_window "$1"
}

# Answers the question of a first start where prices come from.
use_sample_market() {
  wait_for_window "Where do your prices come from?"
  press alt+s
  press_ok
  wait_for_no_window "Where do your prices come from?"
}

# ---- The purchase form: the Tab order is code, search, number, price, brokerage, date, calendar, comment
# ----

# find_stock TEXT: types the text as the code, searches and accepts the first match.
find_stock() {
  wait_for_window "Buy Shares"
  replace_text "$1"
  press Tab space
  wait_for_window "Stock Search"
  press_ok
  wait_for_no_window "Stock Search"
  wait_for_window "Buy Shares"
}

# fill_in_amounts NUMBER BROKERAGE: starts at the search button and ends in the brokerage field.
fill_in_amounts() {
  press Tab
  replace_text "$1"
  press Tab Tab
  replace_text "$2"
}

# Starts at the brokerage field.
fill_in_comment() {
  press Tab Tab Tab
  type_text "$1"
}
