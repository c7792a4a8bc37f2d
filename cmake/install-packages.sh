#!/bin/sh
# Installs the Debian packages named that are missing; does nothing when none is. Asks nothing: it acts as root or
# through a sudo that needs no password, and otherwise says what to install and fails.
set -u

if ! command -v dpkg-query >/dev/null 2>&1; then
  echo "No Debian packages here: going on with the tools that are installed." >&2
  exit 0
fi

# A tool counts when it is on the path, wherever it came from; anything else when its package is installed.
present() {
  case $1 in
    cmake | g++ | clang | clang-format | clang-tidy | git) command -v "$1" >/dev/null 2>&1 && return ;;
    ninja-build) command -v ninja >/dev/null 2>&1 && return ;;
  esac
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing=
for package; do
  present "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

if [ "$(id -u)" -eq 0 ]; then
  as_root=
elif command -v sudo >/dev/null 2>&1 && sudo -n true </dev/null 2>/dev/null; then
  as_root="sudo -n"
else
  echo "These packages are missing:$missing" >&2
  echo "Install them as root (apt-get install$missing), or run this as root, and try again." >&2
  exit 1
fi

install() {
  # shellcheck disable=SC2086  # both are lists of words
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $missing </dev/null
}

echo "Installing$missing"
# The lists of packages are fetched only when the ones at hand do not do.
install || { $as_root apt-get update -q </dev/null && install; } || {
  echo "Could not install:$missing" >&2
  exit 1
}
