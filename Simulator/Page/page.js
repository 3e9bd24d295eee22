// Sends what is entered to zibsim, and shows the document that comes back. What is decided, and how it
// is shown, is the program's; nothing of a payload is put together to markup here.
'use strict';

const byId = (id) => document.getElementById(id);
const largest = 1 << 20;

const modes = {
  inspect: {
    text: byId('payload'),
    file: byId('payload-file'),
    address: () => '/inspect?event-type=' + encodeURIComponent(byId('event-type').value),
    empty: 'Paste a payload to see what it reports and opens.',
  },
  play: {
    text: byId('scenario'),
    file: byId('scenario-file'),
    address: () => '/play',
    empty: 'Paste a scenario to play it.',
  },
};

let current = 'inspect';
let underWay = null;

function say(text) {
  byId('status').textContent = text;
}

function showDocument(html) {
  const answer = new DOMParser().parseFromString(html, 'text/html');
  const main = answer.querySelector('main');
  byId('shown').replaceChildren(...(main ? main.childNodes : []));
  const summary = byId('shown').querySelector('[data-summary]');
  say(summary ? summary.dataset.summary : '');
}

async function send(mode) {
  const {text, address, empty} = modes[mode];
  if (underWay) underWay.abort();
  if (text.value.trim() === '') {
    byId('shown').replaceChildren();
    say(empty);
    return;
  }
  const abort = new AbortController();
  underWay = abort;
  if (mode === 'play') say('Playing …');
  try {
    const response = await fetch(address(), {
      method: 'POST',
      headers: {'Content-Type': 'application/json'},
      body: text.value,
      signal: abort.signal,
    });
    const html = await response.text();
    if (underWay === abort) showDocument(html);
  } catch (error) {
    if (error.name !== 'AbortError') say('zibsim does not answer. Is it still running?');
  }
}

let waiting = 0;
function sendSoon() {
  clearTimeout(waiting);
  waiting = setTimeout(() => send('inspect'), 120);
}

async function take(mode, file) {
  if (!file) return;
  if (file.size > largest) {
    say(`${file.name} has ${file.size.toLocaleString('en')} bytes: more than 1 MB is not taken.`);
    return;
  }
  modes[mode].text.value = await file.text();
  send(mode);
}

function select(mode, takesFocus) {
  current = mode;
  for (const each of Object.keys(modes)) {
    const isSelected = each === mode;
    const tab = byId('tab-' + each);
    tab.setAttribute('aria-selected', String(isSelected));
    tab.tabIndex = isSelected ? 0 : -1;
    byId('panel-' + each).hidden = !isSelected;
  }
  if (takesFocus) byId('tab-' + mode).focus();
  byId('shown').replaceChildren();
  if (mode === 'inspect') {
    send(mode);
  } else {
    if (underWay) underWay.abort();
    say('');
  }
}

for (const [mode, {text, file}] of Object.entries(modes)) {
  const tab = byId('tab-' + mode);
  tab.addEventListener('click', () => select(mode, false));
  tab.addEventListener('keydown', (event) => {
    if (['ArrowLeft', 'ArrowRight', 'Home', 'End'].includes(event.key)) {
      event.preventDefault();
      const isFirst = event.key === 'Home' || (event.key !== 'End' && mode === 'play');
      select(isFirst ? 'inspect' : 'play', true);
    }
  });
  file.addEventListener('change', () => take(mode, file.files[0]));
  const panel = byId('panel-' + mode);
  panel.addEventListener('dragover', (event) => {
    event.preventDefault();
    panel.classList.add('dropping');
  });
  panel.addEventListener('dragleave', () => panel.classList.remove('dropping'));
  panel.addEventListener('drop', (event) => {
    event.preventDefault();
    panel.classList.remove('dropping');
    take(mode, event.dataTransfer.files[0]);
  });
  text.addEventListener('keydown', (event) => {
    if (event.key === 'Enter' && (event.ctrlKey || event.metaKey)) send(mode);
  });
}

byId('payload').addEventListener('input', sendSoon);
byId('event-type').addEventListener('change', () => send('inspect'));
byId('play').addEventListener('click', () => send('play'));
send(current);
