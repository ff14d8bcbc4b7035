# Wine for 32-bit programs. Where the machine's own Wine runs only 64-bit ones, a small 32-bit
# Debian below build/ has one that runs the others. It may be deleted at any time.

wine32_root=build/wine32-root

# Whether the prefix runs 32-bit programs as well.
wine_has_32_bit() {
  [[ -e $WINEPREFIX/drive_c/windows/syswow64/kernel32.dll ]]
}

# wine32_run PROGRAM [ARGUMENT...]: a program in build/win32.
wine32_run() {
  local program=build/win32/$1
  shift
  if wine_has_32_bit; then
    wine_run "$program" "$@"
  else
    in_wine32_root wine "/mnt/$(basename "$program")" "$@"
  fi
}

# wine32_start: makes sure that there is a Wine for 32-bit programs; a machine that can't have one
# is none of its failures, so the caller says what it leaves out.
wine32_start() {
  wine_has_32_bit && return 0
  if [[ ! -e $wine32_root/ready ]]; then
    [[ $EUID -eq 0 ]] && setup wine32 && make_wine32_root >build/logs/wine32-root.log 2>&1 || return 1
  fi
}

make_wine32_root() {
  rm -rf --one-file-system "$wine32_root"
  debootstrap --arch=i386 --variant=minbase bookworm "$wine32_root" &&
    in_wine32_root apt-get install -q -y --no-install-recommends wine32 wine fonts-wine &&
    in_wine32_root apt-get clean &&
    in_wine32_root sh -c 'wine wineboot --init && wineserver --wait' &&
    cp "$wine32_root"/usr/share/wine/fonts/tahoma*.ttf "$wine32_root/prefix/drive_c/windows/Fonts" &&
    touch "$wine32_root/ready"
}

# in_wine32_root COMMAND...: with build/win32 as /mnt. What is mounted goes with the command.
in_wine32_root() {
  mkdir -p build/win32
  # shellcheck disable=SC2016
  limited unshare --mount --pid --fork --kill-child bash -c '
    root=$1; shift
    mount -t proc proc "$root/proc" && mount --bind /dev "$root/dev" &&
      mount --bind build/win32 "$root/mnt" && cd "$root" &&
      exec chroot . env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        WINEPREFIX=/prefix WINEARCH=win32 WINEDEBUG="$WINEDEBUG" \
        WINEDLLOVERRIDES="$WINEDLLOVERRIDES" VNDOC6_SOAK="${VNDOC6_SOAK:-}" "$@"
  ' bash "$wine32_root" "$@"
}
