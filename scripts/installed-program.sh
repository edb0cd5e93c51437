# Uses an installed program on an X display like a new user. Source this file after samples/desktop-driver.sh
# and checks.sh, with HOME set to the user's home.

# In the past, and identical in every date format.
purchase_date=5/5/2024
records_of_user() { printf '%s' "${XDG_DATA_HOME:-$HOME/.local/share}/Brindlecove/Tallymoor/Data/Portfolios.xml"; }
settings_of_user() { printf '%s' "$HOME/.foxrc/Brindlecove/Tallymoor"; }

# start_launcher COMMAND: starts it from an unrelated folder. Sets program.
start_launcher() {
  (cd / && exec "$1") &
  program=$!
}

# The window that asks for the country must have the window class named in the desktop file, by which desktops
# group windows.
first_start() {
  start_launcher "$1"
  wait_for_window "Country of Residence"
  ok "the program starts and asks for the country of residence"
  check "its windows bear the class that the menu's entry names" has_class "$window" "$2"
  check "it runs in its own folder" runs_in_its_folder
  choose_from_list "Country of Residence" 1
  use_sample_market
  wait_for_window "Tallymoor - Getting Started"
  press Escape
  wait_for_no_window "Tallymoor - Getting Started"
  wait_for_main_window
}

# has_class WINDOW DESKTOP_FILE
has_class() {
  local class
  class=$(sed -n 's/^StartupWMClass=//p' "$2")
  [ -n "$class" ] && xprop -id "$1" WM_CLASS | grep -qF "\"$class\""
}

runs_in_its_folder() {
  [ "$(readlink "/proc/$program/cwd")" = "$(dirname "$(readlink "/proc/$program/exe")")" ]
}

# The user is offline without a price source and types the values.
makes_purchase() {
  press_online_button
  use_main_window
  press ctrl+p
  wait_for_window "New Portfolio"
  type_text Trading
  press Return
  wait_for_no_window "New Portfolio"
  use_main_window
  press ctrl+b
  choose_from_list "Choose Portfolio" 1
  wait_for_window "Buy Shares"
  replace_text WTL.AX
  press Tab Tab  # Skips the search.
  replace_text 200
  press Tab
  replace_text 12.34
  press Tab
  replace_text 29.95
  press Tab
  replace_text "$purchase_date"
  press_ok
  answer_box alt+y  # The code was not searched for.
  answer_box alt+y  # Sets the default brokerage.
  wait_for_no_window "Buy Shares"
  use_main_window
}

leaves() {
  use_main_window
  press alt+F4
  wait_for_end
  check_text "$1: the program leaves with status 0" 0 "$program_status"
  program=
}

records_hold_purchase() {
  local parcel debit
  parcel="<BuyEvent><Date>$purchase_date</Date><Constant>200.00</Constant><Constant>12.3400</Constant><Constant>29.95</Constant>"
  debit="<CashEvent><Date>$purchase_date</Date><Constant>2497.95</Constant><Constant>2</Constant>"
  debit+="<String>BUY 200.00 of WTL.AX @ 12.3400</String></CashEvent>"
  grep -qF "<HeldShare><String>WTL.AX</String>$parcel" "$(records_of_user)" && grep -qF "$debit" "$(records_of_user)"
}

# The main window is shown before loading, whose questions have the same title; the widest window is the main
# one.
find_widest_window() {
  local number width=0
  for number in $(windows_titled Tallymoor); do
    eval "$(xdotool getwindowgeometry --shell "$number" 2>/dev/null | grep '^WIDTH=')"
    if [ "$WIDTH" -gt "$width" ]; then
      width=$WIDTH
      main_window=$number
    fi
  done
  [ "$width" -gt 0 ]
}

# Loading requests the prices since the purchase. If no source answers: don't retry, go offline.
waits_for_load_without_prices() {
  local answers=(alt+n alt+y Return) next=0
  wait_until "The main window" find_widest_window
  while has_window "Tallymoor startup" || has_box; do
    wait_until "The end of the load, or a question" loaded_or_asked
    ! has_box || answer_box "${answers[next]}"
    [ "$next" -eq 2 ] || next=$((next + 1))
  done
  use_main_window
}

loaded_or_asked() { has_box || ! has_window "Tallymoor startup"; }

# A second start must not change the records.
second_start() {
  local before
  before=$(cksum <"$(records_of_user)")
  start_launcher "$1"
  waits_for_load_without_prices
  ok "a later start opens the window"
  leaves "later start"
  check_text "the records are as they were" "$before" "$(cksum <"$(records_of_user)")"
}

# ---- Installation for one user below $HOME/.local ----
#
# The sourcing script defines install_program and uninstall_program.

lies_at() { find "$1" -mindepth 1 -printf '%P %y\n' | LC_ALL=C sort; }
digests_of() { (cd "$1" && find . -type f -exec cksum {} + | LC_ALL=C sort); }

# A home with other content: a file of another program, and an empty folder.
make_home() {
  HOME=$1
  mkdir -p "$HOME/.local/share/applications" "$HOME/.local/share/icons/hicolor"
  echo "[Desktop Entry]" >"$HOME/.local/share/applications/other.desktop"
  prefix=$HOME/.local
  folder=$prefix/lib/tallymoor
  menu_entry=$prefix/share/applications/tallymoor.desktop
}

# Sets laid_down (number of files) and installing_took (seconds).
installs_for_user() {
  local start=$SECONDS
  before=$(lies_at "$HOME")
  check "the program is installed for one user" install_program
  installing_took=$((SECONDS - start))
  laid_down=$(grep -c '^file ' "$folder/installed-files")
  check_text "its record tells of every file" "$(lies_at "$HOME" | grep -c ' [fl]$')" \
    "$((laid_down + 2 + $(grep -c ' [fl]$' <<<"$before")))"  # Everything in the record, plus the record and the uninstaller themselves.
}

# runs_for_user: makes a purchase through the launcher, started by a link as users put it into their PATH.
runs_for_user() {
  local before_start
  ln -s "$prefix/bin/tallymoor" "$HOME/shares"
  before_start=$(digests_of "$folder")
  first_start "$HOME/shares" "$menu_entry"
  check "it is not removed while it runs" refuses_to_uninstall
  makes_purchase
  leaves "first start"
  check "the purchase is in the records" records_hold_purchase
  second_start "$prefix/bin/tallymoor"
  check_text "nothing of the user's came into the program's folder" "$before_start" "$(digests_of "$folder")"
  rm "$HOME/shares"
}

refuses_to_uninstall() {
  local all
  all=$(lies_at "$prefix/bin" && lies_at "$folder")
  ! uninstall_program 2>/dev/null && [ "$all" = "$(lies_at "$prefix/bin" && lies_at "$folder")" ]
}

# Simulates the files left by an update: a renamed library, a download, and the start markers.
make_it_updated() {
  mv "$folder"/FOXDLL-*.dll "$folder/FOXDLL-99.0.0.dll"
  ln -sfn ../FOXDLL-99.0.0.dll "$folder"/lib/libFOX-*
  mkdir -p "$folder/updates/refused"
  touch "$folder/updates/refused/FxEx-99.0.0.dll" "$folder/override.start.tallymoor" "$folder/update.failure.tallymoor"
}

# Sets left_behind: number of new files and folders, not counting the user's.
uninstalls_for_user() {
  local data left
  data=$(digests_of "$(dirname "$(records_of_user)")"; cksum <"$(settings_of_user)")
  check "the program is removed" uninstall_program
  check_text "the user's records and settings are as they were" "$data" \
    "$(digests_of "$(dirname "$(records_of_user)")"; cksum <"$(settings_of_user)")"
  left=$(comm -13 <(printf '%s\n' "$before") <(lies_at "$HOME" | grep -vE '^(\.local/share/Brindlecove|\.foxrc)(/| )'))
  left_behind=$(grep -c . <<<"$left" || true)
  check_text "nothing else is left behind" "" "$left"
  check_text "what others use is still there" "" "$(comm -23 <(printf '%s\n' "$before") <(lies_at "$HOME"))"
}
