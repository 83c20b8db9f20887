// The station's page: live values pushed over a WebSocket, everything else fetched as JSON.
// Every text from the station goes into the document as text (textContent, value), never
// as markup.
'use strict';

const $ = (id) => document.getElementById(id);
const PEN_COLOURS = ['#0a58ca', '#b00020', '#1b7f3b', '#8a5a00'];
const NOT_ANSWERING_AFTER_MS = 5000;

const state = {
  layout: null, live: null, session: null,
  screen: 1, trend: 1, alarmView: 'current',
  lastHeard: 0, lastTime: '', socket: null, retryMs: 1000,
  editing: new Set(),
  history: { file: '', columns: [], start: 1, block: null },
  charts: {},
};

function setText(el, text) { if (el.textContent !== text) el.textContent = text; }

function say(text, refused) {
  const m = $('message');
  m.textContent = text;
  m.className = refused ? 'refused' : '';
}

async function getJson(url) {
  const r = await fetch(url, { credentials: 'same-origin', cache: 'no-store' });
  const body = await r.json().catch(() => ({ error: 'the station sent no answer' }));
  if (!r.ok) throw new Error(body.error || ('the station answered ' + r.status));
  return body;
}

async function post(url, body) {
  const headers = { 'Content-Type': 'application/json' };
  if (state.session && state.session.csrf) headers['X-KOVA-CSRF'] = state.session.csrf;
  const r = await fetch(url, {
    method: 'POST', credentials: 'same-origin', headers, body: JSON.stringify(body || {}),
  });
  const answer = await r.json().catch(() => ({ error: 'the station sent no answer' }));
  return { ok: r.ok, status: r.status, body: answer };
}

// ---- who is logged in -------------------------------------------------------------------

function isOperator() { return !!(state.session && state.session.role === 'operator'); }

function showSession() {
  const s = state.session || {};
  const loggedIn = !!s.user;
  $('login-form').hidden = loggedIn || !s.loginAvailable || !s.secureEnough;
  $('who').hidden = !loggedIn;
  setText($('who-text'), loggedIn ? 'Logged in as ' + s.user + ' (' + s.role + ')' : '');
  let note = '';
  if (!s.loginAvailable) note = 'This page only shows: the station has no users.';
  else if (!s.secureEnough) note = 'Logging in needs HTTPS: this page only shows.';
  else if (!loggedIn) note = 'Read-only: an operator logs in to acknowledge, reset and set values.';
  else if (!isOperator()) note = 'A viewer only reads: writes need an operator.';
  setText($('login-note'), note);
  for (const b of document.querySelectorAll('button.write')) b.disabled = !isOperator();
  if (state.layout) drawScreen();
}

async function loadSession() {
  try { state.session = await getJson('/api/session'); } catch (e) { state.session = null; }
  showSession();
}

$('login-form').addEventListener('submit', async (ev) => {
  ev.preventDefault();
  const user = $('login-user').value, password = $('login-password').value;
  const r = await post('/api/login', { user, password }).catch(() => null);
  $('login-password').value = '';
  if (!r) { say('The station is not answering.', true); return; }
  if (!r.ok) { say('Login refused: ' + (r.body.error || r.status), true); return; }
  say('Logged in as ' + r.body.user + ' (' + r.body.role + ').');
  await loadSession();
});

$('logout-button').addEventListener('click', async () => {
  await post('/api/logout').catch(() => null);
  $('login-user').value = '';
  say('Logged out.');
  await loadSession();
});

// ---- tabs -------------------------------------------------------------------------------

const tabs = Array.from(document.querySelectorAll('[role=tab]'));
function selectTab(tab) {
  for (const t of tabs) {
    const on = t === tab;
    t.setAttribute('aria-selected', on ? 'true' : 'false');
    t.tabIndex = on ? 0 : -1;
    $(t.getAttribute('aria-controls')).hidden = !on;
  }
  if (tab.id === 'tab-trends') refreshTrend();
  if (tab.id === 'tab-history') loadLogFiles();
}
tabs.forEach((t, i) => {
  t.addEventListener('click', () => selectTab(t));
  t.addEventListener('keydown', (ev) => {
    let j = null;
    if (ev.key === 'ArrowRight') j = (i + 1) % tabs.length;
    if (ev.key === 'ArrowLeft') j = (i + tabs.length - 1) % tabs.length;
    if (ev.key === 'Home') j = 0;
    if (ev.key === 'End') j = tabs.length - 1;
    if (j !== null) { ev.preventDefault(); tabs[j].focus(); selectTab(tabs[j]); }
  });
});
function visible(id) { return !$(id).hidden; }

// ---- readings screens -------------------------------------------------------------------

function tagOf(n) { return n >= 1 && state.layout ? state.layout.tags[n - 1] : null; }

async function write(tag, value) {
  const r = await post('/api/write', { tag: tag.name, value: String(value) }).catch(() => null);
  if (!r) { say('The station is not answering.', true); return; }
  say(r.body.line || r.body.error || ('The station answered ' + r.status), !r.ok);
}

// A row's heading cell: the tag's label with its direction prefix; the row's controls are
// labelled by it.
function rowHeading(id, tag) {
  const th = document.createElement('th');
  th.scope = 'row';
  th.id = id;
  th.textContent = tag ? tag.prefixedLabel : '';
  return th;
}

function analogRow(row, n) {
  const tr = document.createElement('tr');
  const tag = tagOf(n);
  const th = rowHeading('an-label-' + row, tag);
  const td = document.createElement('td');
  td.className = 'number';
  if (tag && tag.writable && isOperator()) {
    const input = document.createElement('input');
    input.className = 'value';
    input.id = 'an-value-' + row;
    input.setAttribute('aria-labelledby', th.id);
    input.inputMode = 'decimal';
    input.maxLength = 64;
    input.addEventListener('focus', () => state.editing.add(row));
    input.addEventListener('blur', () => { state.editing.delete(row); });
    input.addEventListener('change', () => write(tag, input.value.trim()));
    input.addEventListener('keydown', (ev) => { if (ev.key === 'Enter') input.blur(); });
    td.appendChild(input);
  } else {
    td.id = 'an-value-' + row;
  }
  const units = document.createElement('td');
  units.textContent = tag ? tag.units : '';
  tr.append(th, td, units);
  return tr;
}

function digitalRow(row, n) {
  const tr = document.createElement('tr');
  const tag = tagOf(n);
  const th = rowHeading('dig-label-' + row, tag);
  const text = document.createElement('td');
  text.id = 'dig-text-' + row;
  const box = document.createElement('td');
  if (tag) {
    const input = document.createElement('input');
    input.type = 'checkbox';
    input.id = 'dig-box-' + row;
    input.setAttribute('aria-labelledby', th.id);
    input.disabled = !(tag.writable && isOperator());
    input.addEventListener('change', () => write(tag, input.checked ? 1 : 0));
    box.appendChild(input);
  }
  tr.append(th, text, box);
  return tr;
}

function screenInfo() { return state.layout.screens[state.screen - 1]; }

function drawScreen() {
  if (!state.layout) return;
  const sc = screenInfo();
  setText($('screen-caption'), sc.caption);
  state.editing.clear();
  const analog = $('analog-rows'), digital = $('digital-rows');
  analog.replaceChildren(...sc.analog.map((n, row) => analogRow(row, n)));
  digital.replaceChildren(...sc.digital.map((n, row) => digitalRow(row, n)));
  refreshScreen(true);
}

function refreshScreen(all) {
  if (!state.layout || !state.live) return;
  const sc = screenInfo(), live = state.live;
  $('screen-logging').checked = live.logging && live.loggingActive;
  sc.analog.forEach((n, row) => {
    if (state.editing.has(row) && !all) return;
    const el = $('an-value-' + row);
    const text = n >= 1 ? live.values[n - 1] : '';
    if (el.tagName === 'INPUT') { if (document.activeElement !== el) el.value = text.trim(); }
    else setText(el, text);
  });
  sc.digital.forEach((n, row) => {
    const tag = tagOf(n);
    const on = n >= 1 && live.states[n - 1] === 1;
    setText($('dig-text-' + row), tag ? (on ? tag.text1 : tag.text0) : '');
    const box = $('dig-box-' + row);
    if (box && document.activeElement !== box) box.checked = on;
  });
}

function stepScreen(step) {
  state.screen = ((state.screen - 1 + step + 10) % 10) + 1;
  drawScreen();
}
$('screen-next').addEventListener('click', () => stepScreen(1));
$('screen-prev').addEventListener('click', () => stepScreen(-1));
$('screen-jump').addEventListener('click', () => {
  const to = screenInfo().jumpTo;
  if (to >= 1 && to <= 10) { state.screen = to; drawScreen(); }
});

// ---- live state -------------------------------------------------------------------------

// The lamp's colour, and the words for those who cannot see it.
function lamp(id, on) {
  $(id).classList.toggle('on', !!on);
  const text = $(id + '-text');
  if (!text.dataset.name) text.dataset.name = text.textContent;
  setText(text, text.dataset.name + (on ? ': on' : ': off'));
}

function showAlarms() {
  const a = state.live.alarms;
  setText($('alarm-count'), a.unacknowledged);
  const lines = state.alarmView === 'history' ? a.history : a.current;
  setText($('alarm-lines'), lines.join('\n'));
}

function showMinMax() {
  const body = $('minmax-rows');
  const rows = state.live.minmax;
  if (body.children.length !== rows.length) {
    body.replaceChildren(...rows.map(() => {
      const tr = document.createElement('tr');
      tr.append(document.createElement('th'), ...[0, 1, 2].map(() => {
        const td = document.createElement('td'); td.className = 'number'; return td;
      }));
      tr.firstChild.scope = 'row';
      return tr;
    }));
  }
  rows.forEach((r, i) => {
    const cells = body.children[i].children;
    setText(cells[0], r.label);
    setText(cells[1], r.reading);
    setText(cells[2], r.maximum);
    setText(cells[3], r.minimum);
  });
}

async function loadLayout() {
  try {
    state.layout = await getJson('/api/layout');
    setText($('station-name'), 'KOVA station ' + (state.layout.setupFile || ''));
    drawScreen();
  } catch (e) { /* the next live message tries again */ }
}

function onLive(live) {
  state.live = live;
  state.lastHeard = Date.now();
  state.lastTime = live.time;
  $('not-answering').hidden = true;
  setText($('connection'), 'Connected. Station time ' + live.time);
  lamp('sw-poll', live.poll);
  lamp('sw-log', live.logging && live.loggingActive);
  lamp('sw-alarms', live.alarmsEnabled);
  lamp('sw-controls', live.controlsEnabled);
  if (!state.layout || state.layout.layoutVersion !== live.layoutVersion) { loadLayout(); return; }
  refreshScreen(false);
  showAlarms();
  showMinMax();
}

function connect() {
  const url = (location.protocol === 'https:' ? 'wss://' : 'ws://') + location.host + '/live';
  let socket;
  try { socket = new WebSocket(url); } catch (e) { setTimeout(connect, state.retryMs); return; }
  state.socket = socket;
  socket.onopen = () => { state.retryMs = 1000; };
  socket.onmessage = (ev) => {
    try { const m = JSON.parse(ev.data); if (m.type === 'live') onLive(m); } catch (e) { /* skip */ }
  };
  socket.onclose = () => {
    state.socket = null;
    setTimeout(connect, state.retryMs);
    state.retryMs = Math.min(state.retryMs * 2, 5000);
  };
}

// The page says so when the station stops answering: nothing heard for a few seconds.
setInterval(() => {
  const silent = Date.now() - state.lastHeard > NOT_ANSWERING_AFTER_MS;
  const banner = $('not-answering');
  if (silent && banner.hidden) {
    banner.textContent = 'The station is not answering' +
      (state.lastTime ? ' (last heard at station time ' + state.lastTime + ')' : '') +
      '. The values shown may be old.';
    banner.hidden = false;
    setText($('connection'), 'Not connected.');
  }
}, 1000);

// ---- alarms, min/max --------------------------------------------------------------------

function alarmView(view) {
  state.alarmView = view;
  $('alarms-current').setAttribute('aria-pressed', view === 'current' ? 'true' : 'false');
  $('alarms-history').setAttribute('aria-pressed', view === 'history' ? 'true' : 'false');
  if (state.live) showAlarms();
}
$('alarms-current').addEventListener('click', () => alarmView('current'));
$('alarms-history').addEventListener('click', () => alarmView('history'));

async function command(url) {
  const r = await post(url).catch(() => null);
  if (!r) { say('The station is not answering.', true); return; }
  say(r.body.line || r.body.error || ('The station answered ' + r.status), !r.ok);
}
$('alarms-ack').addEventListener('click', () => command('/api/acknowledge'));
$('minmax-reset').addEventListener('click', () => command('/api/minmax/reset'));

// ---- charts -----------------------------------------------------------------------------

function lineChart(canvasId, labels, pens, yRange) {
  if (typeof Chart === 'undefined') return;
  const datasets = pens.map((p, i) => ({
    label: p.label, data: p.points, borderColor: PEN_COLOURS[i], backgroundColor: PEN_COLOURS[i],
    borderWidth: 1.5, pointRadius: 0, tension: 0,
  }));
  let chart = state.charts[canvasId];
  const y = yRange ? { min: yRange[0], max: yRange[1] } : {};
  if (!chart) {
    chart = new Chart($(canvasId), {
      type: 'line',
      data: { labels, datasets },
      options: {
        animation: false, responsive: true, maintainAspectRatio: false,
        plugins: { legend: { display: true } },
        scales: {
          x: { ticks: { autoSkip: false, maxRotation: 0,
            callback(v, i) { const l = this.chart.data.labels[i]; return l === '' ? null : l; } } },
          y,
        },
      },
    });
    state.charts[canvasId] = chart;
  } else {
    chart.data.labels = labels;
    chart.data.datasets = datasets;
    chart.options.scales.y = y;
    chart.update('none');
  }
}

function numberOrNull(text) {
  const t = text.trim();
  return t !== '' && isFinite(Number(t)) ? Number(t) : null;
}

async function refreshTrend() {
  if (!visible('view-trends')) return;
  try {
    const t = await getJson('/api/trend?n=' + state.trend);
    setText($('trend-number'), String(t.trend));
    setText($('trend-period'), t.period);
    const pens = $('trend-pens');
    pens.replaceChildren(...t.pens.map((p, i) => {
      const li = document.createElement('li');
      const sw = document.createElement('span');
      sw.className = 'pen-swatch';
      sw.style.background = PEN_COLOURS[i];
      li.append(sw, document.createTextNode('Pen ' + (i + 1) + ': ' + p.label));
      return li;
    }));
    // Point 0 is the newest sample; the axis counts seconds back from it.
    const labels = t.pens[0].points.map((_, k) => (k % 25 === 0 ? String(+(k * t.seconds).toFixed(3)) : ''));
    let range = null;
    if (!$('trend-auto').checked) {
      const low = numberOrNull($('trend-low').value), high = numberOrNull($('trend-high').value);
      if (low !== null && high !== null) range = [low, high];
      else range = state.trendRange || null;  // not numbers: the range stays as it was
    }
    state.trendRange = range;
    lineChart('trend-chart', labels, t.pens, range);
    $('trend-chart').setAttribute('aria-label', 'Trend ' + t.trend + ' chart: ' +
      t.pens.map((p, i) => 'pen ' + (i + 1) + ' ' + p.label.trim() + ' newest ' + p.points[0]).join(', '));
  } catch (e) { /* the banner tells when the station is gone */ }
}
setInterval(refreshTrend, 2000);
$('trend-next').addEventListener('click', () => { state.trend = state.trend % 10 + 1; refreshTrend(); });
$('trend-prev').addEventListener('click', () => { state.trend = (state.trend + 8) % 10 + 1; refreshTrend(); });
for (const id of ['trend-auto', 'trend-low', 'trend-high']) $(id).addEventListener('change', refreshTrend);

// ---- history ----------------------------------------------------------------------------

async function loadLogFiles() {
  try {
    const f = await getJson('/api/history/files');
    setText($('history-folder'), 'Log folder: ' + f.folder);
    const select = $('history-file');
    const keep = select.value;
    const none = document.createElement('option');
    none.value = '';
    none.textContent = f.files.length ? 'Choose a log file' : 'No log files';
    select.replaceChildren(none, ...f.files.map((file) => {
      const o = document.createElement('option');
      o.value = file.name;
      o.textContent = file.name + ' (' + file.bytes + ' bytes)';
      return o;
    }));
    select.value = f.files.some((x) => x.name === keep) ? keep : '';
  } catch (e) { say('The log files cannot be listed: ' + e.message, true); }
}

async function chooseFile() {
  const name = $('history-file').value;
  state.history = { file: name, columns: [], start: 1, block: null };
  $('history-columns').replaceChildren();
  setText($('history-rows'), '');
  if (!name) return;
  try {
    const c = await getJson('/api/history/columns?file=' + encodeURIComponent(name));
    $('history-columns').replaceChildren(...c.columns.map((col) => {
      const label = document.createElement('label');
      label.className = 'tick';
      const box = document.createElement('input');
      box.type = 'checkbox';
      box.value = String(col.column);
      box.addEventListener('change', () => pickColumn(box));
      label.append(box, document.createTextNode(' ' + col.name));
      return label;
    }));
  } catch (e) { say(e.message, true); }
}

function pickColumn(box) {
  const picked = Array.from($('history-columns').querySelectorAll('input:checked'));
  if (picked.length > 4) {
    box.checked = false;
    say('At most four columns can be charted.', true);
    return;
  }
  state.history.columns = picked.map((b) => b.value);
  state.history.start = 1;
  readBlock(1);
}

async function readBlock(start) {
  const h = state.history;
  if (!h.file) return;
  try {
    const b = await getJson('/api/history/block?file=' + encodeURIComponent(h.file) +
      '&columns=' + h.columns.join(',') + '&start=' + start);
    if (b.rowsRead === 0) { say(b.message, true); return; }  // the chart stays as it was
    h.start = start;
    h.block = b;
    setText($('history-rows'), 'Rows ' + start + ' to ' + (start + b.rowsRead - 1));
    plotBlock();
  } catch (e) { say(e.message, true); }
}

function plotBlock() {
  const h = state.history;
  if (!h.block) return;
  const texts = $('history-axis-time').checked ? h.block.timeTexts : h.block.periodTexts;
  const labels = texts.map((t, i) => (i % 25 === 0 ? t || ' ' : ''));
  const names = Array.from($('history-columns').querySelectorAll('input:checked'))
    .map((b) => b.parentElement.textContent.trim());
  const pens = h.block.pens.slice(0, names.length).map((points, i) => ({ label: names[i], points }));
  lineChart('history-chart', labels, pens, null);
  $('history-chart').setAttribute('aria-label', 'History chart of ' + h.file + ', ' +
    names.join(', ') + ', rows ' + h.start + ' on');
}

$('history-file').addEventListener('change', chooseFile);
$('history-refresh').addEventListener('click', loadLogFiles);
$('history-forward').addEventListener('click', () => {
  const h = state.history;
  if (h.block) readBlock(h.start + 200);
});
$('history-back').addEventListener('click', () => {
  const h = state.history;
  if (h.block && h.start > 1) readBlock(Math.max(1, h.start - 200));
});
for (const id of ['history-axis-time', 'history-axis-period']) $(id).addEventListener('change', plotBlock);

// ---- start ------------------------------------------------------------------------------

loadSession();
loadLayout();
connect();
