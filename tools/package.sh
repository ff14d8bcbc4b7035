# The archives for Windows, one for each bitness, and what can be said of a DLL without running it.

# make_package PRESET: puts the archive beside the DLL, which has been built.
make_package() {
  rm -f "build/$1"/VNDoc6-*.zip
  cpack --config "build/$1/CPackConfig.cmake" >"build/logs/cpack-$1.log"
}

# check_package PRESET: the archive holds these files and no others, and its texts refer to nothing
# else.
check_package() {
  local folder status=0
  folder=$(mktemp -d) || return 1
  make_package "$1" && (cd "$folder" && cmake -E tar xf "$OLDPWD/build/$1"/VNDoc6-*-"$1.zip") &&
    check_files "$folder"/* && check_links "$folder"/* || status=1
  rm -rf "$folder"
  return $status
}

check_files() {
  diff - <(cd "$1" && find . -type f -printf '%P\n' | LC_ALL=C sort) <<'LIST'
CHANGELOG.md
CONTRIBUTING.md
README.md
SECURITY.md
VNDoc6.dll
VNDoc6.h
VNDoc6.idl
VNDoc6.manifest
VNDoc6.tlb
docs/architecture.md
docs/behaviour.md
docs/file-format.md
docs/performance.md
docs/reference.md
docs/reliability.md
docs/vndoc.md
examples/demo.vbs
examples/order.vbs
examples/tour.js
examples/tour.vbs
LIST
}

# check_links FOLDER: every relative link in its Markdown files leads to a file.
check_links() {
  local file link status=0
  while IFS=: read -r file link; do
    if [[ ! -e $(dirname "$file")/$link ]]; then
      echo "$file: $link leads nowhere"
      status=1
    fi
  done < <(grep -roP --include='*.md' --exclude-dir=build '\]\(\K[^)#:]+(?=[)#])' "$1")
  return $status
}

# What makes a 32-bit DLL unusable although it builds.
check_32_bit_dll() {
  local dll=build/win32/VNDoc6.dll headers symbols status=0
  headers=$(i686-w64-mingw32-objdump -p "$dll") &&
    symbols=$(i686-w64-mingw32-nm "$dll" | grep -v '\.cold') || return 1
  check_exports "$headers" || status=1
  check_needs_only_windows "$headers" || status=1
  check_type_library "$headers" || status=1
  check_slots "$symbols" || status=1
  return $status
}

# Windows looks these names up as they stand here, without the decoration of the compiler.
check_exports() {
  diff - <(sed -n '/Name Pointer\] Table/,/^$/s/^\t\[.*\] //p' <<<"$1" | LC_ALL=C sort) <<'LIST'
DllCanUnloadNow
DllGetClassObject
DllInstall
DllRegisterServer
DllUnregisterServer
VNDoc6LiveObjects
LIST
}

# The compiler's runtime libraries are libgcc, libstdc++ and libwinpthread.
check_needs_only_windows() {
  grep -q 'DLL Name: KERNEL32' <<<"$1" || return 1
  if grep 'DLL Name: lib' <<<"$1"; then return 1; fi
}

check_type_library() {
  grep -A 2 ': TYPELIB,' <<<"$1" | grep -q 'ID: 0x000001,' && return 0
  echo "The DLL has no type library as its resource 1"
  return 1
}

# Callers of a dual interface leave their arguments to the member to remove. The compiler writes the
# number of bytes that a function removes behind its name; a name without it is a wrong convention.
check_slots() {
  local slots wrong
  slots=$(grep -E ' __ZN6vndoc6(10automation3abi4SlotI|3com12_GLOBAL__N_1.*EPNS0_8FaceHead)' <<<"$1") || {
    echo "The DLL names none of its members"
    return 1
  }
  wrong=$(grep -vE '@[0-9]+$' <<<"$slots") || return 0
  echo "Not stdcall:"
  head -n 10 <<<"$wrong"
  return 1
}
