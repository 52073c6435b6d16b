# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# What the commands of the project share: the packages and the build. It is sourced by bash from the
# root of the project.

# shellcheck disable=SC2034 # The scripts that source this file use the lists.
build_packages=(g++ cmake ninja-build pkg-config gettext libgtk2.0-dev libmount-dev nlohmann-json3-dev
  libgtest-dev libxtst-dev)
# The packages for scripts/with-display, a font for the texts of the windows, and tools to look at
# their icon.
display_packages=(xvfb openbox fonts-wqy-microhei x11-utils)
# The additional packages for scripts/operators-day and tests/journey.
day_packages=(xdotool imagemagick)
journey_packages=(sudo iproute2 passwd gnome-themes-extra)
# The additional packages for the test that kills the link builder, and for trials/kill-and-fill.
kill_packages=(libseccomp-dev python3)
trial_packages=(stow systemd)
# The additional packages for ./package.
package_packages=(dpkg-dev debhelper git lintian desktop-file-utils appstream mandoc)

# install_missing PACKAGE... installs the packages that are missing, or says what to install.
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

# build PRESET FOLDER [TARGET...] configures once and builds the targets, or all when none is named.
build() {
  local preset=$1 folder=$2
  shift 2
  [ -f "$folder/build.ninja" ] || cmake --preset "$preset" || return
  cmake --build --preset "$preset" ${1+--target "$@"}
}
