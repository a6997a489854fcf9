# shellcheck shell=bash
# The Debian packages that this project is built, run and tested with, by purpose, and the function that sees to
# them. Sourced by ./run and ./test.

declare -A tarnix_packages=(
  [build]="g++ cmake ninja-build ccache pkg-config
           qt6-base-dev qt6-svg-dev qt6-pdf-dev libgl-dev
           libxcb1-dev libxcb-xfixes0-dev libxcb-res0-dev libxcb-randr0-dev libexpat1-dev nlohmann-json3-dev libicu-dev libgumbo-dev"
  [run]="qt6-qpa-plugins libqt6svg6 libqt6pdf6 qt6-image-formats-plugins shared-mime-info hicolor-icon-theme fonts-dejavu-core"
  # A virtual screen, and programs of other makers that copy and paste on it.
  [desktop]="xvfb openbox xclip xsel xdotool wmctrl xterm zenity x11-utils imagemagick
             dbus dbus-x11 at-spi2-core python3-gi gir1.2-gtk-3.0 gir1.2-atspi-2.0"
  [test]="clang-16 libgtest-dev libgmock-dev libatspi2.0-dev clang-format-14 python3 desktop-file-utils appstream"
  [bench]="libbenchmark-dev"
  [tidy]="clang-tidy-14"
  [fuzz]="clang-16 libclang-rt-16-dev"
  [package]="dpkg-dev file"
)

# Of the packages given, those that are not installed, one a line.
tarnix_missing_packages() {
  comm -23 <(printf '%s\n' "$@" | sort -u) \
    <(dpkg-query --show --showformat='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
      sed -n 's/^installed //p' | sort -u)
}

# Installs what is missing of the purposes given; where that takes rights that we lack, says what to install and
# fails. TARNIX_SKIP_PACKAGES=1 leaves it all to the caller, for systems that name their packages otherwise.
tarnix_ensure_packages() {
  local purpose
  local -a names wanted=() missing as_root=()
  if [[ ${TARNIX_SKIP_PACKAGES:-0} == 1 ]]; then return 0; fi
  for purpose in "$@"; do
    read -r -d '' -a names <<<"${tarnix_packages[$purpose]}" || true
    wanted+=("${names[@]}")
  done
  if ! command -v dpkg-query >/dev/null; then
    echo "This script knows Debian's packages only. Install what these stand for: ${wanted[*]}" >&2
    echo "Then run it again with TARNIX_SKIP_PACKAGES=1." >&2
    return 1
  fi
  mapfile -t missing < <(tarnix_missing_packages "${wanted[@]}")
  if ((${#missing[@]} == 0)); then return 0; fi

  if ((EUID != 0)); then as_root=(sudo -n); fi
  if ((EUID != 0)) && ! sudo -n true 2>/dev/null; then
    echo "These packages are missing. Install them and run this again:" >&2
    echo "  sudo apt-get install ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends -o DPkg::Lock::Timeout=600 "${missing[@]}" >/dev/null
}
