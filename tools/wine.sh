# Runs Windows programs under Wine, headless, in a prefix of our own that leaves no trace elsewhere.

export WINEPREFIX="$PWD/build/wine-prefix"
export WINEDEBUG=-all
# Without these, Wine asks to install add-ons and writes menus into the user's home folder.
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="

# Prints the first of the programs that exists; Debian's wine64 is not on the path.
find_program() {
  local name
  for name in "$@"; do
    command -v "$name" && return 0
  done
  return 1
}

wine_run() {
  limited "$(find_program wine64 /usr/lib/wine/wine64 wine)" "$@"
}

wine_stop() {
  "$(find_program wineserver /usr/lib/wine/wineserver)" -k 2>/dev/null
  return 0
}

windows_path() {
  local path
  path=$(realpath -m "$1")
  echo "Z:${path//\//\\}"
}

# Makes the prefix, unless the last run's is complete and of this Wine. StdFont reports the font
# that it could realise, so Tahoma has to be there.
wine_start() {
  local version fonts="$WINEPREFIX/drive_c/windows/Fonts"
  version="$(wine_run --version) $(find_program /usr/lib/wine/wine)"
  trap wine_stop EXIT
  if [[ $(cat "$WINEPREFIX/ready" 2>/dev/null) == "$version" ]]; then return 0; fi
  wine_stop
  rm -rf "$WINEPREFIX"
  mkdir -p "$WINEPREFIX"
  wine_run wineboot --init >build/logs/wine-prefix.log 2>&1 || return 1
  mkdir -p "$fonts"
  find /usr/share/wine/fonts /usr/share/fonts -iname 'tahoma*.ttf' -exec cp -t "$fonts" {} + 2>/dev/null
  if ! compgen -G "$fonts/[Tt]ahoma.ttf" >/dev/null; then
    echo "dev: found no Tahoma font for Wine (package fonts-wine)" >&2
    return 1
  fi
  echo "$version" >"$WINEPREFIX/ready"
}

wine_register() {
  wine_run regsvr32 /s "$(windows_path build/win64/VNDoc6.dll)" || {
    echo "dev: regsvr32 could not register build/win64/VNDoc6.dll" >&2
    return 1
  }
}

# wine_script FILE ARGUMENT...: runs a script. Wine's cscript gives 0 also for a script that stopped
# with an error, so what runs is a copy that quits with a code of its own when it came to its end.
wine_script() {
  local done=77 copy status=0
  copy=build/$(basename "$1")
  { cat "$1" && printf '\r\nWScript.Quit(%d)\r\n' $done; } >"$copy" || return 1
  shift
  wine_run cscript //nologo "$(windows_path "$copy")" "$@" || status=$?
  if [[ $status -eq $done ]]; then return 0; fi
  echo "dev: $(basename "$copy") stopped with an error before its end (exit status $status)" >&2
  return 1
}

# skip WHAT: says what is left out. In CI nothing may be, so there it fails.
skip() {
  echo "Skipped: $1"
  [[ ${CI:-} != true ]]
}

# windows_half COMMAND...: runs it when MinGW and Wine are there.
windows_half() {
  if setup windows && wine_run --version >/dev/null 2>&1; then
    "$@"
  else
    skip "what needs MinGW and Wine"
  fi
}
