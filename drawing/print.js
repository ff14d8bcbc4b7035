// The chart on paper: on as many pages as it needs for letters of 8 points, cut between steps; a page
// for each container where that takes no more. Without this script it is printed on one page.
(() => {
  'use strict';
  const frame = document.getElementById('chart-frame');
  if (!frame) return;
  const chart = frame.querySelector('svg');
  // What is left of A4 and of Letter with margins of 15 mm and room for the heading and the page's number.
  const upright = {width: 680, height: 860};
  const across = {width: 930, height: 590};
  const smallest = 8 * 96 / 72;
  const margin = 12;

  function smallestLetters() {
    let size = parseFloat(chart.getAttribute('font-size')) || 12;
    for (const text of chart.querySelectorAll('text[font-size]')) {
      size = Math.min(size, parseFloat(text.getAttribute('font-size')));
    }
    return size;
  }

  // Where pages end, from `start` on: not within a step, if that leaves a third of the page. There
  // may be less room on the first one.
  function cuts(start, end, room, spans, first = room) {
    const places = [start];
    for (let at = start; at + (at === start ? first : room) < end;) {
      let cut = at + (at === start ? first : room);
      for (let moved = true; moved;) {
        moved = false;
        for (const [from, to] of spans) {
          if (from < cut && cut < to && from > at + room / 3) { cut = from - 1; moved = true; }
        }
      }
      places.push(cut);
      at = cut;
    }
    places.push(end);
    return places;
  }

  const overlap = (a, b) => a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
      b.y < a.y + a.height;
  const holds = (box, inner) => {
    const x = inner.x + inner.width / 2, y = inner.y + inner.height / 2;
    return x >= box.x && x <= box.x + box.width && y >= box.y && y <= box.y + box.height;
  };

  // Rows and columns of pages, without the empty ones.
  function grid(all, boxes, paper, scale) {
    const xs = cuts(all.x, all.x + all.width, paper.width / scale, boxes.map((b) => [b.x, b.x + b.width]));
    const ys = cuts(all.y, all.y + all.height, paper.height / scale, boxes.map((b) => [b.y, b.y + b.height]),
        xs.length === 2 && paper.first ? paper.first / scale : undefined);
    const pages = [];
    for (let row = 0; row + 1 < ys.length; ++row) {
      for (let column = 0; column + 1 < xs.length; ++column) {
        pages.push({
          x: xs[column], y: ys[row], width: xs[column + 1] - xs[column], height: ys[row + 1] - ys[row],
        });
      }
    }
    return pages;
  }
  // What the title and the details leave of the first page, if it is worth while.
  function roomBelowHeader() {
    const copy = document.querySelector('header').cloneNode(true);
    copy.className = 'measured';
    document.body.append(copy);
    const room = upright.height - copy.offsetHeight;
    copy.remove();
    return room > upright.height * 0.4 ? room : upright.height;
  }
  const fits = (box, paper, scale) => box.width * scale <= paper.width && box.height * scale <= paper.height;

  function choosePages(parts) {
    const view = chart.viewBox.baseVal;
    const all = {x: view.x, y: view.y, width: view.width, height: view.height};
    const scale = smallest / smallestLetters();
    upright.first = roomBelowHeader();
    for (const paper of [upright, across]) {
      if (fits(all, paper, scale)) return {paper, pages: [all]};
    }
    const boxesOf = (kinds) => parts.filter((part) => part.element.matches(kinds)).map((part) => part.box);
    const steps = boxesOf('.step');
    const whole = boxesOf('.step, text');
    const used = (pages) => pages.filter((page) => parts.some((part) => part.solid && overlap(page, part.box)));
    const plans = [upright, across].map((paper) => ({paper, pages: used(grid(all, whole, paper, scale))}));
    const best = plans.reduce((one, other) => other.pages.length < one.pages.length ? other : one);
    const containers = boxesOf('.container').map((box) => ({
      x: box.x - margin, y: box.y - margin, width: box.width + 2 * margin, height: box.height + 2 * margin,
    }));
    const rest = steps.filter((step) => !containers.some((box) => holds(box, step)));
    for (const paper of containers.length ? [upright, across] : []) {
      if (!containers.every((box) => fits(box, paper, scale))) continue;
      const others = grid(all, whole, paper, scale).filter((page) => rest.some((step) => overlap(page, step)));
      const most = rest.length ? best.pages.length - 1 : best.pages.length * 1.5;
      if (containers.length + others.length <= most) {
        return {paper, pages: [...containers, ...others]};
      }
    }
    return best;
  }

  // A page's part of the chart, without what lies outside of it.
  function picture(page, parts, scale) {
    const copy = chart.cloneNode(false);
    for (const name of ['id', 'style', 'aria-labelledby']) copy.removeAttribute(name);
    copy.setAttribute('viewBox', [page.x, page.y, page.width, page.height].join(' '));
    copy.setAttribute('width', page.width * scale);
    copy.setAttribute('height', page.height * scale);
    for (const {element, box} of parts) {
      if (!overlap(page, box)) continue;
      const part = copy.appendChild(element.cloneNode(true));
      part.removeAttribute('id');
      for (const inner of part.querySelectorAll('[id]')) inner.removeAttribute('id');
    }
    return copy;
  }

  function lay() {
    const parts = [...chart.children].filter((element) => element.getBBox && element.tagName !== 'title' &&
        element.tagName !== 'desc' && element.tagName !== 'pattern').map((element) => {
      const {x, y, width, height} = element.getBBox();
      return {
        element, solid: element.tagName !== 'rect',
        box: {x: x - 6, y: y - 6, width: width + 12, height: height + 12},
      };
    });
    const {paper, pages} = choosePages(parts);
    const scale = Math.min(4 / 3, ...pages.map((page) =>
        Math.min(paper.width / page.width, (pages.length === 1 || page !== pages[0] ? paper.height :
            paper.first || paper.height) / page.height)));
    const sheets = document.createElement('div');
    sheets.id = 'sheets';
    frame.closest('section').classList.toggle('across', paper === across);
    pages.forEach((page, index) => {
      const sheet = sheets.appendChild(document.createElement('div'));
      sheet.className = 'sheet';
      sheet.appendChild(picture(page, parts, scale));
      if (pages.length === 1) return;
      sheet.appendChild(document.createElement('p')).textContent =
          frame.dataset.page.replace('%1', index + 1).replace('%2', pages.length);
    });
    frame.after(sheets);
  }
  const clear = () => document.getElementById('sheets')?.remove();
  addEventListener('beforeprint', () => { clear(); lay(); });
  addEventListener('afterprint', clear);
})();
