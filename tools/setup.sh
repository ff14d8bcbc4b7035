# Installs what a command needs and the machine has not: packages of Debian 12, by group.

declare -A packages=(
  [build]="g++ cmake ninja-build ccache libcli11-dev nlohmann-json3-dev"
  [test]="libgtest-dev libgmock-dev googletest zsh python3 librsvg2-bin"
  [browser]="chromium"
  [npm]="npm"
  [lint]="clang clang-format clang-tidy libclang-rt-14-dev libc++-dev libc++abi-dev"
  [coverage]="llvm"
  [analyse]="cppcheck"
  [bench]="libbenchmark-dev libpugixml-dev rapidjson-dev libsqlite3-dev libprotobuf-dev protobuf-compiler"
  [windows]="g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools
             libwine-dev wine64 fonts-wine googletest"
  [wine32]="debootstrap"
)

# Prints those of the groups' packages that are not installed.
missing_packages() {
  local group wanted="" installed
  for group in "$@"; do wanted+=" ${packages[$group]}"; done
  # shellcheck disable=SC2086
  installed=$(dpkg-query -W -f='${db:Status-Status} ${binary:Package}\n' $wanted 2>/dev/null |
    sed -n "s/:$(dpkg --print-architecture)\$//; s/^installed //p")
  # shellcheck disable=SC2086
  printf '%s\n' $wanted | sort -u | grep -vxF -f <(echo "$installed") | xargs
}

# A source that cannot be reached matters only when a package comes from it. Nothing that is there
# gives way to what is installed.
lists_are_fresh=""
install_packages() {
  export DEBIAN_FRONTEND=noninteractive
  if [[ -z $lists_are_fresh ]]; then apt-get update -q; fi
  lists_are_fresh=yes
  apt-get install -q -y --no-install-recommends --no-remove "$@"
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
  echo "Installing $missing"
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

# axe-core, which looks for what keeps people out of a page: from npm's registry, of one version, under
# build. npm comes with Node.js or as a package of its own.
axe_version=4.14.1
axe_script=build/axe-core-$axe_version/package/axe.min.js
setup_axe() {
  if [[ -e $axe_script ]]; then return 0; fi
  if ! command -v npm >/dev/null; then setup npm || return 1; fi
  local folder
  folder=$(dirname "$(dirname "$axe_script")")
  mkdir -p "$folder" &&
    npm pack --silent --pack-destination "$folder" "axe-core@$axe_version" >/dev/null &&
    tar -xzf "$folder/axe-core-$axe_version.tgz" -C "$folder"
}
