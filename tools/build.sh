# Builds by preset. Configuring again is quick and notices what was installed since.

# build PRESET [TARGET...]: everything, or just the targets.
# KEEP_GOING=0 shows every fault, not just the first.
build() {
  local preset=$1 target_options=()
  shift
  if [[ $# -gt 0 ]]; then target_options=(--target "$@"); fi
  if ! cmake --preset "$preset" --log-level=WARNING >build/configure.log 2>&1; then
    cat build/configure.log
    return 1
  fi
  cmake --build --preset "$preset" --parallel "$(nproc)" "${target_options[@]}" -- -k "${KEEP_GOING:-1}"
}

build_dlls() {
  require src/com/server/VNDoc6.def "src/com/server has no VNDoc6.def yet: no VNDoc6.dll" &&
    build win64 vndoc6_dll && build win32 vndoc6_dll
}

# The formatted sources, separated by NUL.
source_files() {
  find . -path ./build -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0
}

demo_native() {
  require "hosts/demo/*.cpp" "hosts/demo has no C++ host yet" || return 1
  build release vndoc6_demo >build/demo-build.log 2>&1 || { cat build/demo-build.log; return 1; }
  mkdir -p build/demo && build/native/vndoc6_demo build/demo
}

# The demo's procedure as a picture and as a page.
demo_pictures() {
  build release vndoc >build/demo-build.log 2>&1 || { cat build/demo-build.log; return 1; }
  local document="build/demo/purchase approval.vn6"
  build/native/vndoc render "$document" -o build/demo/chart.svg &&
    build/native/vndoc report "$document" -o build/demo/report.html &&
    echo "The procedure as a picture: $PWD/build/demo/chart.svg" &&
    echo "and as a page for a browser: $PWD/build/demo/report.html"
}

# The same documents read by a script, through the registered DLL.
demo_script() {
  require hosts/demo/demo.vbs "hosts/demo has no demo.vbs yet" || return 1
  build win64 vndoc6_dll >build/demo-build.log 2>&1 || { cat build/demo-build.log; return 1; }
  wine_start && wine_register || return 1
  local status=0
  wine_script hosts/demo/demo.vbs "$(windows_path build/demo)" || status=$?
  iconv -f UTF-16 -t UTF-8 "build/demo/script account.txt" | tr -d '\r'
  return $status
}
