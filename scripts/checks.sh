# Output of the scripts that test the whole program: a line per check and a count at the end. Source this
# file.
checks=0
failures=0

ok() {
  checks=$((checks + 1))
  printf 'ok %d %s\n' "$checks" "$1"
}

failed() {
  checks=$((checks + 1))
  failures=$((failures + 1))
  printf 'FAILED %d %s\n' "$checks" "$1"
}

# check WHAT command...: passes if the command succeeds.
check() {
  local what=$1
  shift
  if "$@"; then ok "$what"; else failed "$what"; fi
}

check_text() { check "$1" same_text "$2" "$3"; }

same_text() {
  [ "$1" = "$2" ] && return 0
  printf '    expected: %s\n    found:    %s\n' "$1" "$2"
  return 1
}

finish() {
  printf '%d checks, %d failed\n' "$checks" "$failures"
  [ "$failures" -eq 0 ]
  exit
}
