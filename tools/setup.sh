# Installs what a command needs and the machine has not: packages of Debian 12, by group.

declare -A packages=(
  [build]="g++ cmake ninja-build ccache"
  [test]="libgtest-dev libgmock-dev googletest"
  [lint]="clang clang-format clang-tidy libclang-rt-14-dev"
  [bench]="libbenchmark-dev libpugixml-dev"
  [windows]="g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
             libwine-dev wine64 fonts-wine googletest"
)

# Prints those of the groups' packages that are not installed.
missing_packages() {
  local group wanted="" installed
  for group in "$@"; do wanted+=" ${packages[$group]}"; done
  # shellcheck disable=SC2086
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' $wanted 2>/dev/null)
  # shellcheck disable=SC2086
  printf '%s\n' $wanted | sort -u | grep -vxF -f <(sed -n 's/^installed //p' <<<"$installed") | xargs
}

install_packages() {
  export DEBIAN_FRONTEND=noninteractive
  echo "Installing $*"
  apt-get update -q && apt-get install -q -y --no-install-recommends "$@"
}

# setup GROUP...: makes sure that the groups' packages are there. Elsewhere than on Debian the
# build itself says what it misses.
setup() {
  local missing
  command -v dpkg-query >/dev/null || return 0
  missing=$(missing_packages "$@")
  if [[ -z $missing ]]; then return 0; fi
  if [[ $EUID -ne 0 ]]; then
    echo "dev: missing packages; as root: apt-get install --no-install-recommends $missing" >&2
    return 1
  fi
  # shellcheck disable=SC2086
  if ! install_packages $missing >build/logs/setup.log 2>&1; then
    tail -n 5 build/logs/setup.log >&2
    echo "dev: could not install: $missing" >&2
    return 1
  fi
}

# require PATTERN MESSAGE: fails with the message when no file matches.
require() {
  compgen -G "$1" >/dev/null && return 0
  echo "dev: $2" >&2
  return 1
}
