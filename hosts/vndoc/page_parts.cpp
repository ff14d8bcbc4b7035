// The style and the script of the report's page.
#include "page.h"

namespace vndoc {

const char* const kPageStyle = R"css(
:root {
  --paper: #f5f6f8; --card: #ffffff; --ink: #1b1f27; --soft: #58606e; --edge: #d8dce3;
  --accent: #1f5fbf; --mark: #fff3c4; --draw: #2b3340;
  color-scheme: light dark;
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; scroll-padding-top: 1rem; }
body {
  margin: 0 auto; max-width: 68rem; padding: 1.5rem 1rem 4rem; background: var(--paper);
  color: var(--ink); font: 16px/1.55 system-ui, "Segoe UI", Roboto, "DejaVu Sans", sans-serif;
  overflow-wrap: anywhere;
}
h1 { margin: 0 0 .5rem; font-size: clamp(1.5rem, 5vw, 2.2rem); line-height: 1.2; }
h2 { margin: 2.5rem 0 .8rem; font-size: 1.35rem; }
h3 { margin: 0 0 .4rem; font-size: 1.08rem; }
p { margin: .4rem 0; white-space: pre-line; }
a { color: var(--accent); }
a:focus-visible, button:focus-visible, [tabindex]:focus-visible {
  outline: 3px solid var(--accent); outline-offset: 2px;
}
.skip { position: absolute; left: -100vw; }
.skip:focus { left: 1rem; top: .5rem; background: var(--card); padding: .5rem; }
.details { display: grid; grid-template-columns: repeat(auto-fill, minmax(13rem, 1fr)); gap: .6rem 1.5rem; margin: 1rem 0; }
dt { color: var(--soft); font-size: .82rem; }
dd { margin: 0; }
dd bdi { white-space: pre-line; }
nav ul { display: flex; flex-wrap: wrap; gap: .4rem; list-style: none; margin: 1.2rem 0 0; padding: 0; }
nav a {
  display: block; padding: .3rem .8rem; border: 1px solid var(--edge); border-radius: 2rem;
  background: var(--card); text-decoration: none;
}
.card, #chart-frame, .table { background: var(--card); border: 1px solid var(--edge); border-radius: .6rem; }
.card { padding: 1rem 1.2rem; margin: 0 0 .8rem; }
.card:target, .card.current { background: var(--mark); border-color: var(--accent); }
.card dl { display: grid; grid-template-columns: 8rem 1fr; gap: .25rem 1rem; margin: .7rem 0 0; }
.card dt { grid-column: 1; padding-top: .15rem; }
.card dd { grid-column: 2; }
.card ol { margin: 0; padding-inline-start: 1.3rem; }
.back { font-size: .85rem; }
code { font-size: .88em; color: var(--soft); }
.tools { display: flex; gap: .4rem; align-items: center; margin-bottom: .5rem; }
.tools output { color: var(--soft); font-size: .85rem; }
button {
  min-width: 2.5rem; min-height: 2.5rem; padding: 0 .7rem; font: inherit; color: inherit;
  background: var(--card); border: 1px solid var(--edge); border-radius: .4rem; cursor: pointer;
}
button:hover, nav a:hover { border-color: var(--accent); }
#chart-frame { overflow: auto; max-height: 85vh; text-align: center; }
#chart-frame svg { display: inline-block; max-width: 100%; height: auto; vertical-align: top; }
#chart-frame.zoomed svg { max-width: none; }
svg a.step { cursor: pointer; outline: none; }
svg a.step:hover > .shape, svg a.step:focus-visible > .shape, svg a.step.current > .shape,
svg a.step:target > .shape {
  stroke: var(--accent); stroke-width: 3;
}
svg .line.near > path:first-of-type { stroke: var(--accent); stroke-width: 2.5; }
.table { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; }
caption { text-align: start; color: var(--soft); font-size: .85rem; padding: .6rem 1rem 0; }
th, td { text-align: start; vertical-align: top; padding: .5rem 1rem; border-top: 1px solid var(--edge); }
thead th { border-top: 0; color: var(--soft); font-size: .82rem; }
tbody th { font-weight: 600; }
td ul { margin: 0; padding: 0; list-style: none; }
@media (max-width: 40rem) {
  .card dl { grid-template-columns: 1fr; gap: 0; }
  .card dd { grid-column: 1; margin-bottom: .4rem; }
  .card { padding: .8rem .9rem; }
  th, td { padding: .45rem .6rem; }
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --paper: #12151b; --card: #1b2029; --ink: #e6e9ef; --soft: #a3acba; --edge: #363d4a;
    --accent: #7fb2ff; --mark: #26344d;
  }
  svg .fill { fill: #1b2029; }
  svg .pen { stroke: #c3cad6; }
  svg .ink { fill: #e6e9ef; }
  svg .halo { stroke: #1b2029; }
}
@media print {
  body { max-width: none; padding: 0; background: #fff; font-size: 10.5pt; }
  nav, .tools, .back, .skip { display: none; }
  #chart-frame, .table { border: 0; max-height: none; overflow: visible; }
  #chart-frame svg { max-width: 100% !important; max-height: 23cm; width: auto !important; }
  .card { break-inside: avoid; }
  .card:target, .card.current { background: none; border-color: var(--edge); }
  h2, h3 { break-after: avoid; }
  tr { break-inside: avoid; }
  a { color: inherit; text-decoration: none; }
}
@media (prefers-reduced-motion: reduce) { html { scroll-behavior: auto; } }
)css";

// Without it the page shows everything, and its links work.
const char* const kPageScript = R"js(
(() => {
  'use strict';
  const frame = document.getElementById('chart-frame');
  const chart = frame.querySelector('svg');
  const shown = document.getElementById('zoom');
  const natural = chart.viewBox.baseVal.width;
  const now = () => chart.getBoundingClientRect().width / natural;

  function zoom(scale) {
    const fits = scale === undefined;
    const centre = (frame.scrollLeft + frame.clientWidth / 2) / Math.max(frame.scrollWidth, 1);
    frame.classList.toggle('zoomed', !fits);
    chart.style.width = fits ? '' : natural * Math.min(Math.max(scale, 0.05), 8) + 'px';
    frame.scrollLeft = centre * frame.scrollWidth - frame.clientWidth / 2;
    shown.textContent = Math.round(now() * 100) + ' %';
  }
  const actions = {
    in: () => zoom(now() * 1.25), out: () => zoom(now() / 1.25), full: () => zoom(1),
    fit: () => zoom(),
  };
  for (const button of document.querySelectorAll('[data-zoom]')) {
    button.addEventListener('click', actions[button.dataset.zoom]);
  }
  frame.addEventListener('wheel', (event) => {
    if (!event.ctrlKey) return;
    event.preventDefault();
    zoom(now() * (event.deltaY < 0 ? 1.1 : 1 / 1.1));
  }, {passive: false});

  // The step that was chosen, in the chart and in the list.
  function choose(number) {
    for (const old of document.querySelectorAll('.current')) {
      old.classList.remove('current');
      old.removeAttribute('aria-current');
    }
    for (const part of ['step-', 'figure-']) {
      const element = document.getElementById(part + number);
      if (!element) continue;
      element.classList.add('current');
      element.setAttribute('aria-current', 'true');
    }
  }
  document.addEventListener('click', (event) => {
    const link = event.target.closest('a[href^="#step-"], a[href^="#figure-"]');
    if (link) choose(link.getAttribute('href').replace(/^#[a-z]+-/, ''));
  });

  // The lines of the step under the pointer.
  const near = (event, on) => {
    const step = event.target.closest('a.step');
    if (!step) return;
    const number = step.id.replace('figure-', '');
    for (const line of chart.querySelectorAll('[data-from="' + number + '"], [data-to="' + number + '"]')) {
      line.classList.toggle('near', on);
    }
  };
  for (const [name, on] of [['mouseover', true], ['focusin', true], ['mouseout', false], ['focusout', false]]) {
    chart.addEventListener(name, (event) => near(event, on));
  }
  zoom();
  addEventListener('resize', () => { shown.textContent = Math.round(now() * 100) + ' %'; });
  document.documentElement.dataset.ready = 'true';
})();
)js";

}  // namespace vndoc
