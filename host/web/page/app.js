// The page: the score, the selection, the plug-in's command with its dialog, undo and redo,
// downloads, opening another score and the plug-in's language.
import { get, post } from './api.js';
import { AlertBox, DialogBox } from './dialog.js';
import { ScoreView } from './score-view.js';

const $ = (id) => document.getElementById(id);
const LANGUAGE_NAMES = { en: 'English', de: 'Deutsch' };

const alerts = new AlertBox($('alert-layer'));
const dialog = new DialogBox($('dialog-layer'), sendAction, alerts);
const view = new ScoreView($('score'), $('progress'), () => showSelection());
let state = null;
let shownRevision = 0;
let running = false; // a request that changes the document is on its way

function say(text) {
  $('status').textContent = text;
}

async function fail(error) {
  say(error.message);
  await alerts.show(error.message);
}

// "measures 2–4, staves 1–2" with the score's printed measure numbers.
function showSelection() {
  const s = view.selection;
  const span = (first, last, one, many) => (first === last ? `${one} ${first}` : `${many} ${first}–${last}`);
  $('selection').textContent = s
    ? `${span(state.measures[s.firstMeasure - 1], state.measures[s.lastMeasure - 1], 'measure', 'measures')}, ` +
      span(s.firstStaff, s.lastStaff, 'staff', 'staves')
    : 'Click a measure to select it; shift-click extends the selection.';
  updateControls();
}

function updateControls() {
  const blocked = running || dialog.isOpen || !state;
  $('command').disabled = blocked || !view.selection;
  $('undo').disabled = blocked || !state.canUndo;
  $('redo').disabled = blocked || !state.canRedo;
  for (const id of ['open', 'language', 'download-xml', 'download-mxl']) $(id).disabled = blocked;
}

async function applyState(next) {
  const newScore = !state || state.name !== next.name || state.measures.length !== next.measures.length ||
    state.staves.length !== next.staves.length;
  state = next;
  $('command').textContent = state.menu.item;
  $('command').title = state.menu.description;
  $('score-name').textContent = state.name;
  document.title = `${state.name} – scribo-host`;
  $('language').replaceChildren(...state.languages.map((code) =>
    new Option(LANGUAGE_NAMES[code] ?? code, code, false, code === state.language)));
  if (newScore) view.select(null);
  showSelection();
  if (state.revision === shownRevision) return;
  shownRevision = state.revision;
  delete document.body.dataset.rendered;
  const xml = await (await get('/api/score')).text();
  if (!(await view.render(xml))) return;
  document.body.dataset.rendered = String(next.revision);
  if (view.measures.length !== state.measures.length)
    say(`The rendering shows ${view.measures.length} measures of ${state.measures.length}; selections follow its order.`);
}

// Requests that change the document: one at a time, the controls off meanwhile.
async function change(request) {
  running = true;
  updateControls();
  try {
    return await request();
  } catch (error) {
    await fail(error);
  } finally {
    running = false;
    updateControls();
  }
}

async function runCommand() {
  say('');
  const answer = await change(() => post('/api/invoke', {
    selection: view.selection,
    screen: { width: innerWidth, height: innerHeight },
  }));
  if (answer?.dialog) {
    await dialog.open(answer.dialog);
    updateControls();
  } else if (answer) await finishCommand(answer);
}

async function sendAction(action) {
  try {
    const answer = await post('/api/dialog', { action });
    if (answer.dialog) await dialog.update(answer.dialog);
    else await finishCommand(answer);
  } catch (error) {
    if (error.status === 409) { // the dialog is gone (it waited too long)
      dialog.close();
      await applyState(await get('/api/state'));
    }
    await fail(error);
  }
}

function describe(result) {
  if (result.timedOut) return `The dialog waited longer than ${state.dialogTimeout} s and was cancelled; nothing changed.`;
  if (!result.accepted) return 'Cancelled; nothing changed.';
  if (!result.changed) return 'Nothing in the selection was subdivided.';
  const tuplets = result.tupletsMade === 1 ? '1 tuplet' : `${result.tupletsMade} tuplets`;
  return `${result.splitEntries} entries subdivided in ${result.changedMeasures} measures; ${tuplets} made.`;
}

async function finishCommand(answer) {
  dialog.close();
  updateControls();
  say(answer.result.error ?? describe(answer.result));
  const rendering = applyState(answer.state);
  for (const alert of answer.result.alerts ?? []) await alerts.show(alert.text);
  await rendering;
}

async function step(path) {
  const answer = await change(() => post(path));
  if (answer) await applyState(answer.state);
}

async function openFile(file) {
  if (!file) return;
  if (file.size > state.maxUpload) {
    return fail(new Error(`${file.name} is larger than ${Math.floor(state.maxUpload / 1048576)} MB; scores that large are not opened here.`));
  }
  const data = await new Promise((resolve, reject) => {
    const reader = new FileReader();
    reader.onload = () => resolve(reader.result.slice(reader.result.indexOf(',') + 1));
    reader.onerror = () => reject(reader.error);
    reader.readAsDataURL(file);
  });
  const answer = await change(() => post('/api/open', { name: file.name, data }));
  if (answer) {
    say(`Opened ${file.name}.`);
    await applyState(answer.state);
  }
}

async function download(format) {
  const response = await change(() => get(`/api/download?format=${format}`));
  if (!response) return;
  const link = document.createElement('a');
  link.href = URL.createObjectURL(await response.blob());
  link.download = /filename="([^"]+)"/.exec(response.headers.get('Content-Disposition') ?? '')?.[1] ?? `score.${format}`;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

$('command').addEventListener('click', runCommand);
$('undo').addEventListener('click', () => step('/api/undo'));
$('redo').addEventListener('click', () => step('/api/redo'));
$('download-xml').addEventListener('click', () => download('musicxml'));
$('download-mxl').addEventListener('click', () => download('mxl'));
$('open').addEventListener('click', () => $('file').click());
$('file').addEventListener('change', () => openFile($('file').files[0]).finally(() => ($('file').value = '')));
$('language').addEventListener('change', async () => {
  const answer = await change(() => post('/api/language', { language: $('language').value }));
  if (answer) await applyState(answer.state);
});
document.addEventListener('keydown', (event) => {
  if (!(event.ctrlKey || event.metaKey) || dialog.isOpen || event.target.closest('input, select')) return;
  const key = event.key.toLowerCase();
  if (key === 'z' && !event.shiftKey && !$('undo').disabled) step('/api/undo');
  else if ((key === 'y' || (key === 'z' && event.shiftKey)) && !$('redo').disabled) step('/api/redo');
  else return;
  event.preventDefault();
});
document.addEventListener('dragover', (event) => {
  event.preventDefault();
  document.body.classList.add('dropping');
});
document.addEventListener('dragleave', (event) => {
  if (!event.relatedTarget) document.body.classList.remove('dropping');
});
document.addEventListener('drop', (event) => {
  event.preventDefault();
  document.body.classList.remove('dropping');
  if (!running && !dialog.isOpen) openFile(event.dataTransfer.files[0]);
});

try {
  const first = await get('/api/state');
  const rendering = applyState(first);
  if (first.dialog) { // reloaded while the dialog waits
    await dialog.open(first.dialog);
    updateControls();
  }
  await rendering;
} catch (error) {
  await fail(error);
}
