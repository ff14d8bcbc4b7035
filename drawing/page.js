// The chart's zoom, and the step that was chosen. Without this script the page shows everything, and
// its links work.
(() => {
  'use strict';
  const root = document.documentElement;
  root.dataset.ready = 'true';
  const frame = document.getElementById('chart-frame');
  if (!frame) return;
  const chart = frame.querySelector('svg');
  const shown = document.getElementById('zoom');
  const natural = chart.viewBox.baseVal.width;
  const least = 0.02, most = 8, readable = 0.6;
  let scale;  // undefined while the chart fits its frame
  const now = () => chart.getBoundingClientRect().width / natural;
  const tell = () => { shown.textContent = Math.round(now() * 100) + ' %'; };

  const centre = (box) => ({x: (box.left + box.right) / 2, y: (box.top + box.bottom) / 2});
  const inside = (point, box) =>
      point.x >= box.left && point.x <= box.right && point.y >= box.top && point.y <= box.bottom;

  // What stays where it is: the chosen step while it is in view, otherwise the frame's middle.
  function still() {
    const box = frame.getBoundingClientRect();
    const step = chart.querySelector('.current');
    const point = step && centre(step.getBoundingClientRect());
    return point && inside(point, box) ? point : centre(box);
  }

  function centreOn(step) {
    const place = centre(step.getBoundingClientRect()), middle = centre(frame.getBoundingClientRect());
    frame.scrollLeft += place.x - middle.x;
    frame.scrollTop += place.y - middle.y;
  }

  // Gives the chart a size; the chart's place under `point` stays under it. What the frame can't do,
  // the page does, unless a button is pressed: that has to stay.
  function zoom(wanted, point) {
    const pointed = !!point;
    point ||= still();
    const before = chart.getBoundingClientRect();
    const part = {
      x: (point.x - before.left) / before.width, y: (point.y - before.top) / before.height,
    };
    scale = wanted === undefined ? undefined : Math.min(Math.max(wanted, least), most);
    frame.classList.toggle('zoomed', scale !== undefined);
    chart.style.width = scale === undefined ? '' : natural * scale + 'px';
    const after = chart.getBoundingClientRect();
    frame.scrollLeft += after.left + part.x * after.width - point.x;
    frame.scrollTop += after.top + part.y * after.height - point.y;
    const rest = chart.getBoundingClientRect().top + part.y * after.height - point.y;
    if (pointed) scrollBy({top: rest, behavior: 'instant'});
    tell();
  }
  const actions = {
    in: () => zoom(now() * 1.25), out: () => zoom(now() / 1.25), full: () => zoom(1),
    fit: () => zoom(),
  };
  for (const button of document.querySelectorAll('[data-zoom]')) {
    button.addEventListener('click', actions[button.dataset.zoom]);
  }
  frame.addEventListener('keydown', (event) => {
    const action = {'+': 'in', '=': 'in', '-': 'out', '0': 'fit', '1': 'full'}[event.key];
    if (!action || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    actions[action]();
  });
  // With Ctrl, and from pads that pinch; without it the wheel scrolls.
  frame.addEventListener('wheel', (event) => {
    if (!event.ctrlKey) return;
    event.preventDefault();
    const lines = event.deltaMode === 0 ? event.deltaY / 100 : event.deltaY / 3;
    zoom(now() * Math.pow(1.2, -Math.max(-2, Math.min(2, lines))), {x: event.clientX, y: event.clientY});
  }, {passive: false});

  // Two fingers.
  let pinch;
  const fingers = ({touches: [a, b]}) => ({
    apart: Math.hypot(a.clientX - b.clientX, a.clientY - b.clientY),
    x: (a.clientX + b.clientX) / 2, y: (a.clientY + b.clientY) / 2,
  });
  frame.addEventListener('touchstart', (event) => {
    pinch = event.touches.length === 2 ? {...fingers(event), scale: now()} : undefined;
  }, {passive: true});
  frame.addEventListener('touchmove', (event) => {
    if (!pinch || event.touches.length !== 2) return;
    event.preventDefault();
    const at = fingers(event);
    frame.scrollLeft -= at.x - pinch.x;
    frame.scrollTop -= at.y - pinch.y;
    Object.assign(pinch, {x: at.x, y: at.y});
    zoom(pinch.scale * at.apart / pinch.apart, at);
  }, {passive: false});

  // Dragging with the mouse; fingers scroll by themselves. What was dragged is no click.
  let drag, dragged = false;
  frame.addEventListener('pointerdown', (event) => {
    dragged = false;
    if (event.pointerType !== 'mouse' || event.button !== 0 || event.target === frame) return;
    drag = {id: event.pointerId, x: event.clientX, y: event.clientY};
  });
  addEventListener('pointermove', (event) => {
    if (!drag || event.pointerId !== drag.id) return;
    const x = event.clientX - drag.x, y = event.clientY - drag.y;
    if (!dragged && Math.hypot(x, y) < 5) return;
    dragged = true;
    frame.classList.add('dragged');
    frame.scrollLeft -= x;
    frame.scrollTop -= y;
    Object.assign(drag, {x: event.clientX, y: event.clientY});
  });
  const drop = () => { drag = undefined; frame.classList.remove('dragged'); };
  addEventListener('pointerup', drop);
  addEventListener('pointercancel', drop);
  frame.addEventListener('dragstart', (event) => event.preventDefault());
  frame.addEventListener('click', (event) => { if (dragged) event.preventDefault(); }, true);

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
  const numberIn = (address) => (/#(?:step|figure)-(\d+)$/.exec(address) || [])[1];
  const follow = () => { if (numberIn(location.hash)) choose(numberIn(location.hash)); };
  document.addEventListener('click', (event) => {
    const link = event.target.closest('a[href^="#"]');
    const address = link && !event.defaultPrevented && link.getAttribute('href');
    if (!address || !numberIn(address)) return;
    choose(numberIn(address));
    const figure = address.startsWith('#figure-') && document.getElementById(address.slice(1));
    if (!figure) return;
    // A browser would bring the step to its window's edge, and the frame half out of it.
    event.preventDefault();
    history.pushState(null, '', address);
    frame.scrollIntoView({block: 'center'});
    centreOn(figure);
    figure.focus({preventScroll: true});
  });
  addEventListener('hashchange', follow);

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

  // A chart too large to be read as a whole begins with its first step.
  function begin() {
    zoom(readable);
    const first = document.querySelector('.card');
    const step = first && document.getElementById(first.id.replace('step', 'figure'));
    if (!step || chart.querySelector('.current')) return;
    centreOn(step);
  }

  // A frame of another size: the chosen step that was in view stays in view.
  let seen = false;
  const look = () => {
    const step = chart.querySelector('.current');
    seen = !!step && inside(centre(step.getBoundingClientRect()), frame.getBoundingClientRect());
  };
  frame.addEventListener('scroll', look, {passive: true});
  let width = 0;
  function resized(now_wide) {
    if (now_wide === width) return;
    if (width === 0 && now() < readable) begin();
    width = now_wide;
    tell();
    const step = seen && chart.querySelector('.current');
    if (step) centreOn(step);
  }
  // Not while the sizes are told: what it changes would have to be told at once.
  new ResizeObserver(([entry]) => requestAnimationFrame(() => resized(entry.contentRect.width)))
      .observe(frame);

  follow();
})();
