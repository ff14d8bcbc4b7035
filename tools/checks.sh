# Runs checks and counts them. Output goes to build/logs and is shown when a check fails.

passed=0
failed=0

log_of() {
  echo "build/logs/${1//[^A-Za-z0-9+-]/-}.log"
}

report() {
  local name=$1 verdict=$2 seconds=$3
  printf '%-44s %s (%d s)\n' "$name" "$verdict" "$seconds"
}

show_failure() {
  local log
  log=$(log_of "$1")
  echo "---- last lines of $log"
  tail -n 40 "$log"
  echo "----"
}

# check NAME COMMAND...: one check; it passes when the command succeeds.
check() {
  local name=$1 start=$SECONDS
  shift
  if "$@" >"$(log_of "$name")" 2>&1 </dev/null; then
    passed=$((passed + 1))
    report "$name" passed $((SECONDS - start))
    return 0
  fi
  failed=$((failed + 1))
  report "$name" FAILED $((SECONDS - start))
  show_failure "$name"
  return 1
}

# limited PROGRAM...: ends a program that hangs.
limited() {
  timeout --kill-after=10 600 "$@"
}

# A case's closing line need not stand at the beginning of a line: the case may have printed.
count_lines() {
  grep -a -c "$1" "$2" || true
}

# check_cases NAME PROGRAM...: runs a Google Test program and counts its cases. A program that
# fails without a failed case (it crashed, leaked, or ran nothing) counts as one failure.
check_cases() {
  local name=$1 start=$SECONDS status=0 log good bad
  shift
  log=$(log_of "$name")
  "$@" >"$log" 2>&1 </dev/null || status=$?
  good=$(count_lines '\[       OK \] .* ms)' "$log")
  bad=$(count_lines '\[  FAILED  \] .* ms)' "$log")
  if [[ $bad -eq 0 ]] && { [[ $status -ne 0 || $good -eq 0 ]] || ! grep -aq '\[==========\] .* ran\.' "$log"; }; then
    bad=1
  fi
  passed=$((passed + good))
  failed=$((failed + bad))
  report "$name" "$good passed, $bad failed" $((SECONDS - start))
  if [[ $bad -eq 0 ]]; then return 0; fi
  grep -a '\[  FAILED  \]' "$log"
  show_failure "$name"
  return 1
}

# The last line, which says it all.
summary() {
  echo "$passed passed, $failed failed"
  [[ $failed -eq 0 ]]
}
