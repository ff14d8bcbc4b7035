#!/bin/bash
# How long reports take to open in Chromium: until the page is loaded, its script has run and it is laid
# out. Three times each; on a machine that does nothing else.
# open_times.sh VNDOC [STEPS...]
set -euo pipefail
vndoc=$1
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Each step with a role and two tasks; every fourth one leads on to another as well.
outline() {
  echo "# Procedure of $1 steps"
  for ((i = 1; i <= $1; ++i)); do
    echo "Step $i does something @Role $((i % 10))"
    echo "  > What is done in step $i, with care"
    echo "  - Task A of $i"
    echo "  - Task B of $i"
    if ((i < $1)); then echo "  -> Step $((i + 1)) does something"; fi
    if ((i % 4 == 0 && i + 5 < $1)); then echo "  no -> Step $((i + 5)) does something"; fi
  done
}

if [[ $# -eq 0 ]]; then set -- 1000 10000; fi
for steps in "$@"; do
  outline "$steps" | "$vndoc" new "$folder/$steps.vn6" --from -
  "$vndoc" report "$folder/$steps.vn6" -o "$folder/report.html"
  # Before the page's policy, which lets no other script in.
  sed '1s|$|<script>addEventListener("load", () => { document.body.offsetHeight; \
    document.documentElement.dataset.opened = Math.round(performance.now()); });</script>|' \
    "$folder/report.html" >"$folder/timed.html"
  for run in 1 2 3; do
    chromium --headless --no-sandbox --disable-gpu --disable-background-networking --no-first-run \
      --user-data-dir="$folder/profile" --window-size=1280,900 --dump-dom "file://$folder/timed.html" \
      2>/dev/null | sed -n "s|.*<html[^>]* data-opened=\"\([0-9]*\)\".*|$steps steps, run $run: \1 ms|p"
  done
done
