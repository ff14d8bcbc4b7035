# `./dev soak [minutes]`: the endurance tests with large counts and fresh seeds, and the fuzz
# targets under sanitizers. Each round and each fuzz target is one check.

soak() {
  local minutes=${1:-10} end seed=${VNDOC6_SEED:-$(date +%s)}
  if ! [[ $minutes =~ ^[0-9]+$ ]] || ((minutes < 1)); then
    echo "dev: soak takes a number of minutes" >&2
    exit 2
  fi
  setup build test lint || exit 1
  check "GCC build" build release || exit 1
  check "sanitizers build" build sanitizers || exit 1
  echo "Soaking for $minutes minutes; the first seed is $seed"
  # Half of the time for either: the tests, then the fuzz targets.
  end=$((SECONDS + minutes * 30))
  soak_round "$seed"
  while ((SECONDS < end)); do
    seed=$((seed + 1))
    soak_round "$seed"
  done
  soak_fuzzers $((minutes * 30))
  windows_half soak_windows || failed=$((failed + 1))
  summary
}

# What a long form is named by: the tests that count on VNDOC6_SOAK.
soak_tests='Crash*:FileFaults.*:PowerLoss.*:HostileFile.*:Sequences.*:RandomCalls.*'

# soak_round SEED
soak_round() {
  VNDOC6_SEED=$1 VNDOC6_SOAK=${VNDOC6_SOAK:-10} check_cases "endurance, seed $1" \
    build/native/vndoc6_tests --gtest_filter="$soak_tests"
  VNDOC6_SEED=$1 VNDOC6_SOAK=${VNDOC6_SOAK:-10} check_cases "without memory, seed $1" \
    build/native/vndoc6_memory_tests
}

soak_windows() {
  check "64-bit build" build win64 vndoc6_com_tests && check "Wine prefix" wine_start || return 0
  VNDOC6_SOAK=${VNDOC6_SOAK:-10} check_cases "endurance under Wine" \
    wine_run build/win64/vndoc6_com_tests.exe --gtest_filter='*Endurance*'
  wine_stop
}

# soak_fuzzers SECONDS: shares them among the fuzz targets, which go on from what they found before.
soak_fuzzers() {
  local targets=(fuzz/*_fuzz.cpp) source
  for source in "${targets[@]}"; do
    soak_fuzzer "$(basename "$source" _fuzz.cpp)" $(($1 / ${#targets[@]} + 1))
  done
}

soak_fuzzer() {
  local program=build/sanitizers/${1}_fuzz name="fuzz $1, $2 s" options
  mapfile -t options <"$program.options"
  check "$name" "$program" -max_total_time="$2" -timeout=20 -rss_limit_mb=4096 \
    -print_final_stats=1 "${options[@]}"
  grep -aE 'stat::number_of_executed_units|cov: [0-9]+' "$(log_of "$name")" | tail -n 2
}
