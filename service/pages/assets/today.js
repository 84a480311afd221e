import {get, post, remove, upload} from './api.js';
import {dayTitle, clock, longDay} from './dates.js';
import {byId, element, icon, iconButton, toast} from './dom.js';
import {refreshNotifications} from './notifications.js';
import {onSettings, saveSettings} from './settings-store.js';

const textLimit = 10000;
const draftKey = 'navora.draft';
const pause = 500;      // ms, after a reply without changes
const patience = 2000;  // ms, after a failure
let captures = [];
let opened = null;
let attempt = null;  // {text, key} of an unconfirmed submission
let sending = false;
let known = null;  // the version of the notes on display
let following = null;

const editor = () => byId('capture-input');
export const editorText = () => editor().innerText.replace(/\u00a0/g, ' ').trim();
export const isSending = () => sending;

function newKey() {
  const bytes = crypto.getRandomValues(new Uint8Array(16));
  return `web-${[...bytes].map((byte) => byte.toString(16).padStart(2, '0')).join('')}`;
}

function say(text, problem = false) {
  const message = byId('capture-message');
  message.textContent = text;
  message.classList.toggle('problem', problem);
}

function updateEditor() {
  const text = editorText();
  // Browsers leave a line break in an emptied editor, which would hide the placeholder.
  if (!text && !editor().textContent.trim() && document.activeElement !== editor())
    editor().textContent = '';
  if (!editor().textContent) editor().textContent = '';
  byId('capture-submit').disabled = sending || !text || text.length > textLimit;
  say(text.length > textLimit ? `${text.length - textLimit} characters too long` : '', true);
  if (text) sessionStorage.setItem(draftKey, text);
  else sessionStorage.removeItem(draftKey);
}

async function submit() {
  const text = editorText();
  if (sending || !text || text.length > textLimit) return;
  // A repeated attempt keeps its key, so that a note that has arrived is not stored twice.
  if (!attempt || attempt.text !== text) attempt = {text, key: newKey()};
  const provider = byId('ai-provider').value;
  const model = byId('ai-model').value;
  const note = {raw: text, provider, ...(provider !== 'fallback' && model ? {model} : {})};
  sending = true;
  byId('capture-form').setAttribute('aria-busy', 'true');
  byId('capture-submit').disabled = true;
  editor().setAttribute('contenteditable', 'false');
  say('Saving…');
  let problem = '';
  try {
    await post('/api/captures', note, {'Idempotency-Key': attempt.key});
    attempt = null;
    editor().textContent = '';
  } catch (error) {
    if (error.status >= 400 && error.status < 500) attempt = null;
    problem = error.message;
  }
  sending = false;
  byId('capture-form').removeAttribute('aria-busy');
  makeEditable();
  editor().focus();
  updateEditor();
  if (problem) say(problem, true);
  else await refreshCaptures().catch((error) => toast(error.message));
}

function makeEditable() {
  editor().setAttribute('contenteditable', 'plaintext-only');
  if (!editor().isContentEditable) editor().setAttribute('contenteditable', 'true');
}

function fileLink(file) {
  return element('a',
    {class: 'file', href: `/api/attachments/${file.id}`, title: `${file.size} bytes`}, icon('file'),
    file.name);
}

function attach(capture) {
  const input = byId('attachment-file');
  input.value = '';
  input.onchange = async () => {
    const file = input.files[0];
    if (!file) return;
    if (file.size > 1024 * 1024) {
      alert('A file can have at most 1 MiB.');
      return;
    }
    try {
      await upload(
        `/api/captures/${capture.id}/attachments?name=${encodeURIComponent(file.name)}`, file);
      await refreshCaptures();
      toast('File attached');
    } catch (error) {
      alert(error.message);
    }
  };
  input.click();
}

async function deleteCapture(capture) {
  if (!confirm('Delete this note? This cannot be undone.')) return;
  try {
    await remove(`/api/captures/${capture.id}`);
    await Promise.all([refreshCaptures(), refreshNotifications()]);
    toast('Note deleted');
  } catch (error) {
    alert(error.message);
  }
}

function card(capture) {
  const working = capture.state !== 'done';
  const text = element('p', {class: 'note-text'}, capture.raw);
  const lines = capture.raw.split('\n').length;
  let unfold = null;
  if (lines > 9 || capture.raw.length > 700) {
    text.classList.add('long');
    unfold = element('button', {
      type: 'button',
      class: 'link',
      textContent: 'Show all',
      onclick: () => {
        const unfolded = text.classList.toggle('unfolded');
        unfold.textContent = unfolded ? 'Show less' : 'Show all';
      }
    });
  }
  const summary = working ? element('span', {class: 'working'}, 'Processing…') :
                            element('span', {}, capture.summary || '');
  return element('article', {
    class: `card note${capture.id === opened ? ' opened' : ''}`,
    id: `note-${capture.id}`,
    'data-state': capture.state
  },
    text, unfold,
    capture.attachments.length ?
      element('div', {class: 'files'}, ...capture.attachments.map(fileLink)) :
      null,
    element('footer', {class: 'note-foot'},
      element('time', {dateTime: capture.createdAt}, clock(new Date(capture.createdAt))),
      element('span', {class: 'summary'}, summary),
      iconButton('clip', 'Attach a file', () => attach(capture)),
      iconButton('trash', 'Delete note', () => deleteCapture(capture))));
}

function render() {
  byId('today-date').textContent = longDay(new Date());
  const content = [];
  let day = null;
  for (const capture of captures) {
    const title = dayTitle(new Date(capture.createdAt));
    if (title !== day) content.push(element('h2', {class: 'day'}, title));
    day = title;
    content.push(card(capture));
  }
  if (!captures.length)
    content.push(element('p', {class: 'nothing'}, 'No notes yet. Write the first one above.'));
  byId('captures').replaceChildren(...content);
}

/** Follows changes by other clients and the progress of jobs while the page is visible. */
async function followChanges() {
  if (following || document.hidden || known === null) return;
  following = new AbortController();
  try {
    while (!document.hidden) {
      const version = await nextVersion(following.signal);
      if (version === known) await new Promise((resume) => setTimeout(resume, pause));
      else await Promise.all([refreshCaptures(), refreshNotifications()]);
    }
  } catch {
    // Tried again later, or when the page becomes visible.
    if (!document.hidden) setTimeout(followChanges, patience);
  } finally {
    following = null;
  }
}

/** The service replies when something has changed, or after a time-out. */
async function nextVersion(signal) {
  // Without api.js, which opens the login page: an idle page stays when the session ends.
  const response = await fetch(`/api/captures/changes?after=${known}`,
    {credentials: 'same-origin', cache: 'no-store', signal});
  if (response.status === 401) known = null;
  if (!response.ok) throw new Error(`status ${response.status}`);
  return (await response.json()).version;
}

export async function refreshCaptures() {
  const answer = await get('/api/captures');
  captures = answer.captures;
  known = answer.version;
  render();
  followChanges();
}

export function openCapture(id) {
  opened = id;
  render();
  if (id) byId(`note-${id}`)?.scrollIntoView({block: 'center'});
}

function showProvider() {
  byId('ai-model-field').hidden = byId('ai-provider').value === 'fallback';
}

export function startToday() {
  makeEditable();
  editor().textContent = sessionStorage.getItem(draftKey) || '';
  updateEditor();
  editor().addEventListener('input', () => {
    if (editor().innerText.trim() === '' && !editor().textContent) editor().textContent = '';
    updateEditor();
  });
  editor().addEventListener('keydown', (event) => {
    if (event.key === 'Enter' && (event.ctrlKey || event.metaKey) && !event.isComposing) {
      event.preventDefault();
      submit();
    }
  });
  byId('capture-form').addEventListener('submit', (event) => {
    event.preventDefault();
    submit();
  });
  for (const id of ['ai-provider', 'ai-model']) {
    byId(id).addEventListener('change', () => {
      showProvider();
      saveSettings({provider: byId('ai-provider').value, model: byId('ai-model').value})
        .catch((error) => toast(error.message));
    });
  }
  document.addEventListener('visibilitychange', () => {
    if (document.hidden) following?.abort();
    else followChanges();
  });
  onSettings((settings) => {
    byId('ai-provider').value = settings.provider;
    byId('ai-model').value = settings.model;
    showProvider();
    render();
  });
}
