# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# What the commands of the project share: the packages and the build. Sourced from the root of the
# project by bash.

# shellcheck disable=SC2034 # The lists are for those who source this.
build_packages=(g++ cmake ninja-build pkg-config libgtk2.0-dev libmount-dev libgtest-dev libxtst-dev)
# What scripts/with-display needs, a font for the texts of the windows, and a look at their icon.
display_packages=(xvfb openbox fonts-wqy-microhei x11-utils)
# What scripts/operators-day and tests/journey need besides.
day_packages=(xdotool imagemagick)
journey_packages=(sudo iproute2 passwd)
# What trials/kill-and-fill needs besides.
trial_packages=(libseccomp-dev stow systemd)
# What ./package needs besides.
package_packages=(dpkg-dev file lintian desktop-file-utils appstream mandoc)

# install_missing PACKAGE...: installs those that are not there, or says what to install.
install_missing() {
  local missing=() package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
      missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  local rights=()
  [ "$(id -u)" = 0 ] || rights=(sudo)
  echo "Missing packages: ${missing[*]}"
  if command -v apt-get >/dev/null && { [ "$(id -u)" = 0 ] || command -v sudo >/dev/null; } &&
    "${rights[@]}" apt-get update -q &&
    "${rights[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -q -y --no-install-recommends "${missing[@]}"; then
    return 0
  fi
  echo "These Debian packages are needed and could not be installed from here. As root, run:" >&2
  echo "    apt-get install ${missing[*]}" >&2
  return 1
}

# build PRESET FOLDER [TARGET...]: configures once and builds; all targets when none is named.
build() {
  local preset=$1 folder=$2
  shift 2
  [ -f "$folder/build.ninja" ] || cmake --preset "$preset" || return
  cmake --build --preset "$preset" ${1+--target "$@"}
}
