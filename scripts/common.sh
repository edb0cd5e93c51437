# Shared by ./run, ./test and ./bench: installs the required packages and builds the project. Source this file
# with the repository's root as the current folder.

# Debian packages needed to build and install the program.
build_packages=(
  g++ cmake ninja-build pkg-config
  libfox-1.6-dev libxerces-c-dev libcurl4-openssl-dev libicu-dev libxslt1-dev libcpp-httplib-dev
  libsdbus-c++-dev libssl-dev libcli11-dev libpango1.0-dev libgif-dev rapidjson-dev libcsv-dev libzstd-dev
  libsm-dev libice-dev libxml2-dev zlib1g-dev
  librsvg2-bin dpkg-dev file
  cmark-gfm python3
)

# Additional packages for testing and for running without a display.
packages=(
  "${build_packages[@]}"
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-dev llvm clang-format clang-tidy
  desktop-file-utils appstream x11-utils
  strace
  xvfb xauth xdotool openbox imagemagick fonts-dejavu-core xdg-utils dbus dbus-daemon procps
)

say() { printf '%s\n' "$*" >&2; }

# install_packages [PACKAGE...]: installs the missing ones of the named packages, or of all packages, as root
# or with sudo. Fast if none is missing.
install_packages() {
  local missing=() package
  [ $# -gt 0 ] || set -- "${packages[@]}"
  for package; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { say "These packages are missing and there is no sudo: ${missing[*]}"; exit 1; }
    as_root=(sudo)
  fi
  say "Installing from Debian: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET target...: configures build/PRESET once and builds the targets.
build() {
  local preset=$1
  shift
  [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >&2
  cmake --build "build/$preset" --target "$@" >&2
}
