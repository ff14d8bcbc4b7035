# `./dev test`: the tests, native and under 64-bit Wine, and the documentation's examples.
# `./dev test --all`: everything that has to pass before a change goes in.

run_tests() {
  case ${1:-} in
    "") setup build test || exit 1 ;;
    --all) setup build test lint bench browser || exit 1 ;;
    *)
      echo "dev: test knows --all, not '$1'" >&2
      exit 2
      ;;
  esac
  test_sources
  test_native
  if [[ ${1:-} == --all ]]; then test_more; fi
  windows_half test_windows "${1:-}" || failed=$((failed + 1))
  summary
}

test_sources() {
  check "links in the documentation" check_links .
  check "layers" check_layers
}

# The programs under build/native, and whoever uses the installed library.
test_native() {
  check "GCC build" build release || return
  check_cases "native tests" limited build/native/vndoc6_tests
  check_cases "drawing tests" limited build/native/vndoc6_drawing_tests
  check_cases "command-line host tests" limited build/native/vndoc_tests
  check_cases "tests without memory" limited build/native/vndoc6_memory_tests
  check "published contract" build/native/vndoc6_idl --check idl/VNDoc6.idl
  check "manifest" build/native/vndoc6_idl --check idl/VNDoc6.manifest
  check "reference" build/native/vndoc6_idl --check docs/reference.md
  check "demo" demo_native
  check "demo: picture and page" demo_pictures
  check "consumer of the package" check_consumer_package
  check "README: C++ example" check_readme_cpp
}

# Second compiler, lint, sanitizers, threads, and what takes more packages.
test_more() {
  check "format" check_format
  check "speed against what was reached" build/native/vndoc6_bench --guard
  check "report in a browser" check_report
  check "shapes in a browser" tests/vndoc/shapes_test.sh build/native/vndoc
  check "consumer with the sources" check_consumer_sources
  test_clang
  test_sanitizers
  test_threads
}

check_format() {
  source_files | xargs -0 -r clang-format --dry-run -Werror
}

check_report() {
  setup_axe && tests/vndoc/browser_test.sh build/native/vndoc "build/demo/purchase approval.vn6" "$axe_script"
}

install_package() {
  rm -rf build/stage
  cmake --install build/native --prefix build/stage
}

# build_consumer NAME OPTION...: builds tests/consumer outside the tree and runs it.
build_consumer() {
  local folder
  folder=$(mktemp -d) || return 1
  cp -r tests/consumer "$folder/source" &&
    cmake -G Ninja -S "$folder/source" -B "$folder/build" \
      -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" &&
    cmake --build "$folder/build" && (cd "$folder" && build/consumer)
  local status=$?
  rm -rf "$folder"
  return $status
}

check_consumer_package() {
  install_package && build_consumer -DCMAKE_PREFIX_PATH="$PWD/build/stage"
}

check_consumer_sources() {
  build_consumer -DVNDOC6_SOURCES="$PWD" -DVNDOC6_UNITY=ON
}

# readme_example LANGUAGE FILE: the README's code block after the line <!-- example: LANGUAGE -->.
readme_example() {
  mkdir -p build/readme
  awk -v marker="<!-- example: $1 -->" '
    $0 == marker { armed = 1; next }
    armed && /^```/ { if (inside) exit; inside = 1; next }
    inside' README.md >"$2"
  if [[ ! -s $2 ]]; then
    echo "README.md has no '<!-- example: $1 -->' followed by a code block"
    return 1
  fi
}

check_readme_cpp() {
  readme_example cpp build/readme/example.cpp && install_package &&
    build_consumer -DCMAKE_PREFIX_PATH="$PWD/build/stage" -DMAIN="$PWD/build/readme/example.cpp"
}

# check_tour SCRIPT: runs it and compares what it says with its transcript.
check_tour() {
  mkdir -p build/tour
  wine_register && wine_script "examples/$1" "$(windows_path build/tour)" >build/tour/said &&
    diff "tests/windows/$1.txt" <(tr -d '\r' <build/tour/said)
}

# shellcheck source=/dev/null
check_vndoc_exe() {
  source tests/vndoc/windows_test.sh && windows_test build/vndoc-windows
}

# The README's script, as the archive has it. It saves into the folder that it is run from.
check_readme_script() {
  wine_start && wine_register && wine_script build/win64/order.vbs && rm order.vn6
}

# A second compiler, clang-tidy on what changed, every header alone, and a second standard library.
test_clang() {
  check "Clang build and clang-tidy" check_lint
  check "headers compile alone" build clang all_verify_interface_header_sets
  check "libc++ build" build libcxx vndoc6_tests &&
    check_cases "native tests with libc++" limited build/libcxx/vndoc6_tests
}

check_lint() {
  KEEP_GOING=0 build clang lint
}

test_sanitizers() {
  local program
  check "sanitizers build" build sanitizers || return
  check_cases "native tests under sanitizers" limited build/sanitizers/vndoc6_tests
  check_cases "tests without memory under sanitizers" limited build/sanitizers/vndoc6_memory_tests
  check_cases "drawing tests under sanitizers" limited build/sanitizers/vndoc6_drawing_tests
  check_cases "command-line host tests under sanitizers" limited build/sanitizers/vndoc_tests
  for program in fuzz/*_fuzz.cpp; do
    if [[ ! -e $program ]]; then break; fi
    program=$(basename "$program" .cpp)
    check "fuzz ${program%_fuzz}" ctest --test-dir build/sanitizers -R "^$program\$" --output-on-failure
  done
}

# Documents on several threads at once; no other program is worth the time under it.
test_threads() {
  check "thread sanitizer build" build tsan vndoc6_thread_tests || return
  check_cases "threads under the thread sanitizer" limited build/tsan/vndoc6_thread_tests
}

test_windows() {
  check "64-bit build" build win64 || return 0
  check "Wine prefix" wine_start || return 0
  check_cases "tests under Wine" wine_run build/win64/vndoc6_com_tests.exe
  check_cases "tests under Wine without memory" wine_run build/win64/vndoc6_com_memory_tests.exe
  check "demo: script" demo_script
  check "tour: VBScript" check_tour tour.vbs
  check "tour: JScript" check_tour tour.js
  check "README: script example" check_readme_script
  if [[ $1 == --all ]]; then test_more_windows; fi
  wine_stop
}

test_more_windows() {
  check "vndoc.exe" check_vndoc_exe
  check "64-bit archive" check_package win64
  check "32-bit build" build win32 && test_32_bit
}

test_32_bit() {
  check "32-bit archive" check_package win32
  check "32-bit DLL" check_32_bit_dll
  if wine32_start; then
    check_cases "32-bit tests under Wine" wine32_run vndoc6_com_tests.exe
    check_cases "32-bit tests under Wine without memory" wine32_run vndoc6_com_memory_tests.exe
  else
    skip "the 32-bit tests, for there is no Wine that runs 32-bit programs (build/logs/wine32-root.log)"
  fi
}
