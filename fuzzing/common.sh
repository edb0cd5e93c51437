# Shared by ./fuzz and fuzzing/counted. To be sourced with the root of the project as the current folder.

# Prints function names in failures, and limits the memory kept after it was freed.
export ASAN_OPTIONS=detect_leaks=1:quarantine_size_mb=32
export UBSAN_OPTIONS=print_stacktrace=1

fuzz_failures=$PWD/build/fuzzing/failures

fuzz_names() {
  local source
  for source in fuzzing/*.cpp; do
    basename "$source" .cpp
  done
}

# Each target has a program and a corpus. Paths are absolute, because a target may change its folder.
fuzz_program() { printf '%s\n' "$PWD/build/fuzzing/fuzzing/fuzz-$1"; }
fuzz_corpus() { printf '%s\n' "$PWD/fuzzing/corpus/$1"; }

# fuzz_options NAME: limits of an input and of a run, one option per line.
fuzz_options() {
  local longest=4096
  case $1 in
    dates-and-numbers) longest=256 ;;
    urls) longest=512 ;;
  esac
  printf '%s\n' "-max_len=$longest" -timeout=10 -rss_limit_mb=1024 -malloc_limit_mb=512 -print_final_stats=1 -reload=0
  [ ! -f "fuzzing/dictionaries/$1" ] || printf '%s\n' "-dict=$PWD/fuzzing/dictionaries/$1"
}

# fuzz_statistic LOG NAME: one of the statistics printed at the end of a run.
fuzz_statistic() { sed -n "s/^stat::$2: *//p" "$1"; }

# with_commas NUMBER: 1234567 as 1,234,567.
with_commas() { printf '%s\n' "$1" | sed ':again; s/\([0-9]\)\([0-9]\{3\}\)\($\|,\)/\1,\2\3/; t again'; }

# fuzz_tell_failure NAME LOG: shows the failure and how to reproduce it.
fuzz_tell_failure() {
  local input
  grep -a -m 4 -E '^NOT SO|ERROR: |runtime error: |terminate called' "$2" || tail -n 20 "$2"
  input=$(sed -n 's/.*Test unit written to //p' "$2" | tail -n 1)
  [ -n "$input" ] || return 0
  printf '%s\n' "The input is $input" "See it again: build/fuzzing/fuzzing/fuzz-$1 $input" \
    "Once it is mended, keep the input in fuzzing/corpus/$1 under a name that says what it is."
}
