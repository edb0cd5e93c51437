#!/usr/bin/env bash
# Drives Tallymoor on an X display as a user would, with keys and the mouse. To be sourced; needs xdotool, openbox and
# ImageMagick's import. What waits asks again and again, up to a limit, so that a slow machine only takes longer.
#
# A script that sources this defines give_up MESSAGE, which must not return: it is called when something that has to come
# does not come.

driver_limit=${TALLYMOOR_DRIVER_LIMIT:-60} # seconds that anything may take
driver_poll=0.1

# The display is not that of the desktop around it, whose panel would take the icon, and with it a minimised window.
export DBUS_SESSION_BUS_ADDRESS=disabled:
unset SESSION_MANAGER

# wait_until WHAT command...: until the command succeeds. WHAT tells, in the failure, what never came.
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

# Ends a process that this script started, if it still runs; one that asks the user something first is killed. Nothing
# happens for an empty number.
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

# Starts the window manager and waits until it manages windows. Sets window_manager.
start_window_manager() {
  openbox --sm-disable >/dev/null 2>&1 &
  window_manager=$!
  wait_until "The window manager" window_manager_works
}

window_manager_works() { xdotool get_desktop >/dev/null 2>&1; }

# start_program FOLDER: starts FOLDER/Tallymoor.exe with that as the current folder. Sets program.
start_program() {
  (cd "$1" && exec ./Tallymoor.exe) &
  program=$!
}

# Waits until the program has ended by itself. Sets program_status.
wait_for_end() {
  wait_until "The end of the program" is_not process_runs "$program"
  program_status=0
  wait "$program" || program_status=$?
}

# ---- Windows ----

# visible_windows PATTERN: the numbers of the visible windows whose title matches. A window that vanishes under the search
# makes it fail half way; it is then made again, so that nothing is taken for gone that is there.
visible_windows() {
  local answer
  while :; do
    answer=$(xdotool search --onlyvisible --name "$1" 2>&1) || true
    [[ $answer == *"X Error"* ]] || break
  done
  printf '%s\n' "$answer" | grep -x '[0-9]*[0-9]' || true
}

# windows_titled TITLE: those with exactly this title.
windows_titled() {
  # shellcheck disable=SC2016 # a pattern
  visible_windows "^$(printf '%s' "$1" | sed 's/[][\.*^$()+?{|]/\\&/g')\$"
}

# Sets window, unless there is none of this title.
find_window() {
  local numbers
  numbers=$(windows_titled "$1")
  [ -n "$numbers" ] && window=${numbers##*$'\n'}
}

has_window() { [ -n "$(windows_titled "$1")" ]; }

# wait_for_window TITLE: sets window to the window's number and waits until it takes the keys.
wait_for_window() {
  wait_until "The window \"$1\"" find_window "$1"
  wait_for_keys
}

wait_for_no_window() { wait_until "The end of the window \"$1\"" is_not has_window "$@"; }

# The window takes the keys, and has drawn itself: until then what is typed is lost.
wait_for_keys() {
  wait_until "The keys for the window $window" gets_keys "$window"
  settle
}

gets_keys() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$1" ]; }

# Message boxes have the main window's title: a box is a window of that title that is not the main one.
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

# Waits until a window that has been answered is gone.
wait_for_closing() { wait_until "The closing of the window $1" is_not is_open "$1"; }

# Short, for drawing and for what the toolkit does after an event; nothing depends on it alone.
settle() { sleep "${1:-0.3}"; }

# ---- Keys and mouse ----

press() { xdotool key --clearmodifiers --delay 40 "$@"; }

type_text() { xdotool type --clearmodifiers --delay 25 -- "$1"; }

# Types over what the field holds.
replace_text() {
  press ctrl+a
  type_text "$1"
}

# click X Y [BUTTON]: at a place inside the window.
click() {
  xdotool mousemove --sync --window "$window" "$1" "$2"
  xdotool click "${3:-1}"
  settle
}

# Away from everything that shows a tip.
park_pointer() { xdotool mousemove 1279 1023; }

# ---- Pictures ----

# screenshot FILE: of the window, as it is on the screen.
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

# Waits for the end of the load. Sets main_window.
wait_for_main_window() {
  main_window=
  wait_until "The main window" find_window Tallymoor
  main_window=$window
  wait_for_no_window "Tallymoor startup"
  use_main_window
}

# The tree of portfolios: its nodes stand below each other, each of the same height. Nodes are counted from 1, as they
# are seen; the place is on the text of every depth.
node_place() { printf '80 %d' $((104 + ($1 - 1) * 19)); }

# select_node N: a click shows the node's page and unfolds the node.
select_node() {
  use_main_window
  # shellcheck disable=SC2046 # two numbers
  click $(node_place "$1")
  settle 1
}

# choose_first_in_popup_of_node N: the popup opens at the pointer, its first entry right below.
choose_first_in_popup_of_node() {
  use_main_window
  # shellcheck disable=SC2046 # two numbers
  click $(node_place "$1") 3
  settle
  xdotool mousemove_relative --sync 30 12
  settle
  xdotool click 1
}

# The button at the right of the tool bar that shows whether the program is online.
press_online_button() {
  use_main_window
  eval "$(xdotool getwindowgeometry --shell "$window" | grep '^WIDTH=')"
  click $((WIDTH - 60)) 44
}

# OK stands in the lower right corner of every form.
press_ok() {
  eval "$(xdotool getwindowgeometry --shell "$window" | grep -E '^(WIDTH|HEIGHT)=')"
  click $((WIDTH - 68)) $((HEIGHT - 40))
}

# answer_box KEY: the keys of a message box are alt+y, alt+n and Return.
answer_box() {
  wait_for_box
  press "$1"
  wait_for_closing "$window"
}

# choose_from_list TITLE N: checks the Nth entry of the list and accepts.
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

# ---- The form for a purchase: its fields in the order of the Tab key are code, search, number, price, brokerage, date,
# calendar and comment ----

# find_stock TEXT: types the text as the code, searches and takes what the search proposes.
find_stock() {
  wait_for_window "Buy Shares"
  replace_text "$1"
  press Tab space
  wait_for_window "Stock Search"
  press_ok
  wait_for_no_window "Stock Search"
  wait_for_window "Buy Shares"
}

# fill_in_amounts NUMBER BROKERAGE: from the search button on; ends in the brokerage.
fill_in_amounts() {
  press Tab
  replace_text "$1"
  press Tab Tab
  replace_text "$2"
}

# From the brokerage on.
fill_in_comment() {
  press Tab Tab Tab
  type_text "$1"
}
