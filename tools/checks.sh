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

# What the failed cases printed, each from its RUN line to its FAILED line.
show_failed_cases() {
  awk '
    /^\[ RUN      \]/ { text = "" }
    { text = text $0 "\n" }
    /\[  FAILED  \] .* ms\)/ { printf "%s", text; text = "" }' "$1" | head -n 100
}

# Whether a test program came to its end, with an exit status that its cases explain. Otherwise it
# crashed, hung, leaked, or ran nothing.
ran_properly() {
  local log=$1 status=$2 good=$3 bad=$4
  grep -aq '\[==========\] .* ran\.' "$log" && ((good + bad > 0 && (status == 0 || bad > 0)))
}

# check_cases NAME PROGRAM...: runs a Google Test program and counts its cases. One that did not run
# properly counts as one more failure.
check_cases() {
  local name=$1 start=$SECONDS status=0 log good bad broken=0
  shift
  log=$(log_of "$name")
  "$@" >"$log" 2>&1 </dev/null || status=$?
  good=$(count_lines '\[       OK \] .* ms)' "$log")
  bad=$(count_lines '\[  FAILED  \] .* ms)' "$log")
  ran_properly "$log" "$status" "$good" "$bad" || broken=1
  passed=$((passed + good))
  failed=$((failed + bad + broken))
  report "$name" "$good passed, $((bad + broken)) failed" $((SECONDS - start))
  show_failed_cases "$log"
  if [[ $broken -eq 1 ]]; then show_failure "$name"; fi
  return $((bad + broken > 0))
}

# The last line, which says it all.
summary() {
  echo "$passed passed, $failed failed"
  [[ $failed -eq 0 ]]
}
