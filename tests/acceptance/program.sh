# What the roads through the complete program have in common: the profile, its start and its end. Source this file behind
# desktop-driver.sh and checks.sh. The sourcing script sets program_dir, and defines clean_up and give_up.

make_profile() {
  scratch=$(mktemp -d)
  trap clean_up EXIT
  export HOME=$scratch XDG_DATA_HOME=$scratch/share LC_ALL=C.UTF-8
  folder=$XDG_DATA_HOME/Brindlecove/Tallymoor
  records=$folder/Data/Portfolios.xml
  settings=$HOME/.foxrc/Brindlecove/Tallymoor
}

# Installs the default documents with the port of this script's service, and as those of an own source: where prices come
# from is not asked then.
write_locators() {
  mkdir -p "$folder/Config"
  local document
  for document in CurrentPrice CodeSearch HistoricalPrices; do
    sed "s/127\.0\.0\.1:8317/127.0.0.1:$port/; s/\"sample\"/\"road\"/" "$program_dir/defaults/Config/${document}Locators.xml" \
      >"$folder/Config/${document}Locators.xml"
  done
}

start() {
  start_program "$program_dir"
}

leave() {
  use_main_window
  press alt+F4
  wait_for_end
  check_text "$1: the program leaves with status 0" 0 "$program_status"
}

no_box_comes() {
  settle 1
  ! has_box
}

# starts_quietly WHAT: checks that the load ends and that no dialog is open a second later.
starts_quietly() {
  start
  wait_for_main_window
  check "$1: no dialog comes up" only_main_window
}

# A dialog with any title would have the focus.
only_main_window() {
  no_box_comes && gets_keys "$main_window"
}

chooses_country() {
  start
  choose_from_list "Country of Residence" 1 # Australia
  ok "first start: the country of residence is asked for"
  declines_wizard
}

# A first start opens the wizard. This script cancels it and makes the portfolio itself.
declines_wizard() {
  wait_for_window "Tallymoor - Getting Started"
  ok "first start: the wizard for a first portfolio comes up"
  press Escape
  wait_for_no_window "Tallymoor - Getting Started"
  wait_for_main_window
}

makes_portfolio() {
  use_main_window
  press ctrl+p
  wait_for_window "New Portfolio"
  type_text "$1"
  press Return
  wait_for_no_window "New Portfolio"
  use_main_window
}
