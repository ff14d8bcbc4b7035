// Without this script the page shows everything, and its links work.
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
