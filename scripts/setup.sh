# Shared by the scripts of this project; to be sourced by bash.

say() {
  printf '\n== %s\n' "$*"
}

# What it takes to build the programs.
build_packages=(cmake make g++ libcli11-dev nlohmann-json3-dev libjs-chart.js)

is_installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'install ok installed'
}

# install_packages NAME...: installs the Debian packages that are missing, as root or through sudo.
# Otherwise says what to install and ends the script.
install_packages() {
  local package missing=() as_root=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
  fi
  if ! command -v apt-get >/dev/null || ! command -v "${as_root[0]:-true}" >/dev/null; then
    echo "Please install these packages, then start this again:" >&2
    echo "  ${missing[*]}" >&2
    exit 1
  fi
  say "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# build_preset PRESET [CMAKE OPTION]...
build_preset() {
  local preset=$1
  shift
  say "Building build/$preset"
  cmake --preset "$preset" "$@"
  cmake --build --preset "$preset" -j "$(nproc)"
}
