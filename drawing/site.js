// The search of a site's index. Without this script the index lists all there is.
(() => {
  'use strict';
  const form = document.getElementById('search');
  const wanted = document.getElementById('wanted');
  const found = document.getElementById('found');
  const results = document.getElementById('results');
  const most = 60;
  // Letters without their case and accents.
  const plain = (text) => text.toLowerCase().normalize('NFD').replace(/\p{M}/gu, '');

  const entries = [];
  for (const [page, title, code, ...texts] of
      JSON.parse(document.getElementById('search-data').textContent)) {
    const add = (text, place) => entries.push(
        {text, title, address: page + (place && '#' + place), plain: plain(text)});
    add(title, '');
    if (code) add(code, '');
    for (let i = 0; i < texts.length; i += 2) add(texts[i], texts[i + 1]);
  }

  function show(entry) {
    const item = document.createElement('li');
    const link = item.appendChild(document.createElement('a'));
    link.href = entry.address;
    link.appendChild(document.createElement('bdi')).textContent = entry.text;
    if (entry.text !== entry.title) {
      item.append(' ');
      item.appendChild(document.createElement('bdi')).textContent = entry.title;
    }
    return item;
  }
  function search() {
    const words = plain(wanted.value).split(/\s+/).filter(Boolean);
    const hits = words.length === 0 ? [] :
        entries.filter((entry) => words.every((word) => entry.plain.includes(word)));
    results.replaceChildren(...hits.slice(0, most).map(show));
    found.textContent = words.length === 0 ? '' :
        hits.length === 0 ? form.dataset.none : form.dataset.found.replace('%1', hits.length);
  }
  wanted.addEventListener('input', search);
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    results.querySelector('a')?.click();
  });
  form.hidden = false;
})();
