#!/bin/bash
# Loads a report in Chromium, clicks in it, and looks at what its script did.
# browser_test.sh VNDOC DOCUMENT
set -euo pipefail
vndoc=$1 document=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$vndoc" report "$document" -o "$folder/report.html"
# Errors before the clicks and in them end up in the page, where the dump shows them.
{
  sed 's|<head>|<head><script>addEventListener("error", (e) => document.documentElement.dataset.error = e.message);\
addEventListener("securitypolicyviolation", (e) => document.documentElement.dataset.error = e.blockedURI);</script>|' \
    "$folder/report.html"
  cat <<'HTML'
<script>
document.querySelector('#figure-2 text').dispatchEvent(new MouseEvent('click', {bubbles: true}));
document.querySelector('#figure-1').dispatchEvent(new MouseEvent('mouseover', {bubbles: true}));
document.querySelector('[data-zoom=full]').click();
document.querySelector('[data-zoom=in]').click();
document.documentElement.dataset.wide = document.documentElement.scrollWidth > innerWidth;
</script>
HTML
} >"$folder/clicked.html"
chromium --headless --no-sandbox --disable-gpu --disable-background-networking --no-first-run \
  --user-data-dir="$folder/profile" --window-size=400,800 --enable-logging=stderr --log-level=0 \
  --dump-dom "file://$folder/clicked.html" >"$folder/dump.html" 2>"$folder/log"

failed=0
expect() {
  if ! grep -Eq "$2" "$folder/dump.html"; then
    echo "browser: $1"
    failed=1
  fi
}
expect "the script did not run to its end" '<html[^>]* data-ready="true"'
expect "the clicked step is not chosen in the list" '<article class="card current" id="step-2" aria-current="true"'
expect "the clicked step is not chosen in the chart" '<a class="step current"[^>]* id="figure-2"'
expect "the lines of the step under the pointer do not show" '<g class="line near" data-from="1"'
expect "the chart did not grow" '<output id="zoom"[^>]*>125 %</output>'
expect "the page is wider than a phone" 'data-wide="false"'
if grep -q 'data-error=' "$folder/dump.html" || grep -q 'CONSOLE' "$folder/log"; then
  echo "browser: errors in the page"
  grep -o 'data-error="[^"]*"' "$folder/dump.html" || true
  grep 'CONSOLE' "$folder/log" || true
  failed=1
fi
exit $failed
