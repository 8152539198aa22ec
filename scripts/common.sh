# Shared by ./run and ./test: what must be installed, and a folder to run the build tree from.

build_packages=(
  g++ cmake ninja-build python3 libmotif-dev libsm-dev libmrm4 uil libsqlite3-dev libsodium-dev
  librsvg2-bin netpbm libcli11-dev nlohmann-json3-dev
)
run_packages=(mwm xvfb xauth x11-utils xfonts-base fonts-dejavu-core imagemagick xdotool
  man-db)
package_packages=(dpkg-dev lintian desktop-file-utils appstream systemd)
test_packages=(
  libgtest-dev libboost-dev libxtst-dev groff clang libclang-rt-14-dev clang-format clang-tidy locales
)

say() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }

die() {
  say "$*"
  exit 1
}

# Installs those of the named packages that are missing.
need_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "installing ${missing[*]}"
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  command -v "${as_root[0]:-apt-get}" >/dev/null || die "root rights or sudo are needed to install packages"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
    --no-install-recommends "${missing[@]}" >/dev/null
}

# configure_and_build PRESET [target...]
configure_and_build() {
  local preset=$1
  shift
  if ! cmake --preset "$preset" >"/tmp/quiladmin-cmake.$$" 2>&1; then
    cat "/tmp/quiladmin-cmake.$$" >&2
    rm -f "/tmp/quiladmin-cmake.$$"
    die "the build could not be configured"
  fi
  rm -f "/tmp/quiladmin-cmake.$$"
  cmake --build --preset "$preset" -- --quiet "$@"
}
