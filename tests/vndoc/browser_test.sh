#!/bin/bash
# Loads reports in Chromium, uses them, looks at what their script did, and has axe-core look for what
# keeps people out.
# browser_test.sh VNDOC DOCUMENT AXE
set -euo pipefail
vndoc=$1 document=$2 axe=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failed=0

fail() {
  echo "browser: $1"
  failed=1
}

# load PAGE SCRIPT OPTION...: what becomes of the page, in $folder/dump.html. The script is run when
# the page is there, then axe-core. Both stand before the page's policy, which lets nothing else in.
# Errors end up in the page, where the dump shows them.
load() {
  local page=$1 script=$2
  shift 2
  {
    cat <<'HTML'
<!DOCTYPE html><script>
const said = document.documentElement.dataset;
addEventListener("error", (e) => said.error = e.message);
addEventListener("securitypolicyviolation", (e) => said.error = e.violatedDirective + " " + e.blockedURI);
HTML
    cat "$axe"
    echo "</script><script>addEventListener('load', async () => { try { $script"
    cat <<'HTML'
  said.wide = document.documentElement.scrollWidth > innerWidth;
  const {violations} = await axe.run();
  said.axe = violations.map((v) => v.id + ': ' + v.nodes[0].target).join('; ') || 'none';
} catch (e) { said.error = e.message; } });
</script>
HTML
    sed 's|<!DOCTYPE html>||' "$page"
  } >"${page%/*}/used.html"
  chromium --headless --no-sandbox --disable-gpu --disable-background-networking --no-first-run \
    --user-data-dir="$folder/profile" --window-size=400,800 --virtual-time-budget=20000 \
    --enable-logging=stderr --log-level=0 "$@" \
    --dump-dom "file://${page%/*}/used.html" >"$folder/dump.html" 2>"$folder/log" || fail "Chromium failed"
  expect "something keeps people out" '<html[^>]* data-axe="none"'
  expect "the page is wider than a phone" 'data-wide="false"'
  if grep -Eq 'data-error=' "$folder/dump.html" || grep -q 'CONSOLE' "$folder/log"; then
    fail "errors in the page"
    grep -o 'data-error="[^"]*"' "$folder/dump.html" || true
    grep 'CONSOLE' "$folder/log" || true
  fi
}

expect() {
  if ! grep -Eq "$2" "$folder/dump.html"; then
    fail "$1: $(grep -om1 '<html[^>]*>' "$folder/dump.html")"
  fi
}

"$vndoc" report "$document" -o "$folder/report.html"
load "$folder/report.html" '
  const figure = (n) => document.getElementById("figure-" + n);
  const centre = (e) => { const r = e.getBoundingClientRect(); return [r.x + r.width / 2, r.y + r.height / 2]; };
  const near = ([a, b], [c, d]) => Math.hypot(a - c, b - d) < 2;
  const frame = document.getElementById("chart-frame");
  figure(2).querySelector("text").dispatchEvent(new MouseEvent("click", {bubbles: true}));
  figure(1).dispatchEvent(new MouseEvent("mouseover", {bubbles: true}));
  document.querySelector("[data-zoom=full]").click();
  document.querySelector("[data-zoom=in]").click();
  said.shown = document.getElementById("zoom").textContent;
  for (let i = 0; i < 6; ++i) document.querySelector("[data-zoom=in]").click();
  frame.scrollTop = 300; frame.scrollLeft = 300;
  const [x, y] = centre(figure(3));
  frame.dispatchEvent(new WheelEvent("wheel", {ctrlKey: true, deltaY: -100, clientX: x, clientY: y, cancelable: true}));
  said.pointer = near(centre(figure(3)), [x, y]);
  const at = centre(figure(3));
  const pointer = (type, dx) => figure(3).dispatchEvent(new PointerEvent(type,
      {bubbles: true, pointerId: 1, pointerType: "mouse", button: 0, clientX: 200 + dx, clientY: 200}));
  pointer("pointerdown", 0); pointer("pointermove", -40); pointer("pointerup", -40);
  figure(3).dispatchEvent(new MouseEvent("click", {bubbles: true, cancelable: true}));
  said.dragged = near(centre(figure(3)), [at[0] - 40, at[1]]);
  dispatchEvent(new Event("beforeprint"));
  const sheets = [...document.querySelectorAll("#sheets svg")];
  const printed = new Set(sheets.flatMap((s) => [...s.querySelectorAll("a.step")].map((a) => a.getAttribute("href"))));
  said.printed = sheets.length > 1 && printed.size === document.querySelectorAll(".card").length &&
      sheets.every((s) => 12 * s.width.baseVal.value / s.viewBox.baseVal.width >= 8 * 96 / 72 - 0.01);
  dispatchEvent(new Event("afterprint"));'
expect "the script did not run to its end" '<html[^>]* data-ready="true"'
expect "the clicked step is not chosen in the list" '<article class="card current" id="step-2" aria-current="true"'
expect "the clicked step is not chosen in the chart" '<a class="step current"[^>]* id="figure-2"'
expect "the lines of the step under the pointer do not show" '<g class="line near" data-from="1"'
expect "the chart did not grow" 'data-shown="125 %"'
expect "what is under the pointer moved" 'data-pointer="true"'
expect "dragging did not move the chart, or counts as a click" 'data-dragged="true"'
expect "paper lacks steps, or its letters are too small" 'data-printed="true"'

load "$folder/report.html" '' --blink-settings=preferredColorScheme=0

"$vndoc" report "$document" -o "$folder/site/" --language fr >/dev/null
load "$folder/site/index.html" '
  const wanted = document.getElementById("wanted");
  wanted.value = "REQUEST purch";
  wanted.dispatchEvent(new Event("input"));'
expect "the search does not find the step" '<ul id="results"><li><a href="[^"]*#step-1"><bdi>Request a purchase'
exit $failed
