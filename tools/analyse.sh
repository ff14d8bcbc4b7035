# `./dev analyse`: cppcheck and GCC's analyzer over the sources of the library. clang-tidy runs with
# `./dev test`.

analyse() {
  setup build analyse || exit 1
  check "cppcheck" run_cppcheck
  check "GCC's analyzer" run_gcc_analyzer
  summary
}

run_cppcheck() {
  mkdir -p build/cppcheck
  # It reads no standard headers, so what it says of types that it can't see stays silent.
  cppcheck --enable=warning,performance,portability --inline-suppr --std=c++20 --language=c++ \
    --error-exitcode=1 --quiet -j "$(nproc)" --cppcheck-build-dir=build/cppcheck -I include -I src \
    --suppressions-list=tools/cppcheck-suppressions.txt \
    src/automation src/bag src/chart src/collections src/content src/core src/details src/document \
    src/fields src/platform src/process src/published src/schema src/templates src/titles
}

# GCC 12 knows its analyzer to be unfinished for C++. The checks that are off take what a function
# makes in place for its caller for uninitialised, operator new for one that may give null, and an
# allocation that a destructor frees for a leak; leaks are the address sanitizer's part.
unfinished_checks=(-Wno-analyzer-use-of-uninitialized-value -Wno-analyzer-possible-null-argument
  -Wno-analyzer-possible-null-dereference -Wno-analyzer-malloc-leak)

run_gcc_analyzer() {
  cmake -G Ninja -S . -B build/analyzer -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=g++ \
    -DVNDOC6_TESTS=OFF -DCMAKE_CXX_FLAGS="-fanalyzer ${unfinished_checks[*]} -Werror" &&
    cmake --build build/analyzer --parallel "$(nproc)" --target vndoc6
}
