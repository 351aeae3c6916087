# Shared by the scripts here: finds the project and installs what a build needs. Sourced, not run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '==> %s\n' "$*"; }

fail() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# Prints the comment that the calling script begins with.
usage() { sed -n '/^#!/d; /^#/!q; s/^# \{0,1\}//p' "$0"; }

# Ends the calling script unless its arguments are none or one of the options that it has, and prints
# its use for --help.
#   accept "$*" [OPTION]
accept() {
  case "$1" in
    "" | "${2:-}") ;;
    --help)
      usage
      exit
      ;;
    *)
      fail "unknown arguments: $1 (see scripts/$(basename "$0") --help)"
      ;;
  esac
}

as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    fail "'$*' needs root: run this script as root or install sudo"
  fi
}

# Installs those of the named Debian packages that are missing.
need() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      missing+=("$package")
  done
  [ ${#missing[@]} = 0 ] && return
  command -v apt-get >/dev/null ||
    fail "cannot install ${missing[*]}: this is not a Debian system; install them by hand"
  say "Installing ${missing[*]}"
  local quiet=(-qq -o Dpkg::Use-Pty=0)
  as_root apt-get update "${quiet[@]}" || fail "apt-get cannot read the package lists"
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${quiet[@]}" \
    "${missing[@]}" >/dev/null || fail "apt-get cannot install ${missing[*]}"
}

need_compiler() { need g++ cmake libpugixml-dev libuchardet-dev ninja-build pkgconf "$@"; }

# Configures and builds one of the presets.
#   build PRESET [--target TARGET]
build() {
  say "Building ($1)"
  (cd "$root" && cmake --preset "$1" >/dev/null && cmake --build --preset "$@")
}
