// The user's settings as the service knows them, and what follows from them everywhere.
import {get, put} from './api.js';

let current = null;
let effectiveTimeZone = 'UTC';
const watchers = [];

export const settings = () => current;
export const timeZone = () => effectiveTimeZone;

/** Calls back now, if the settings are known, and after every change. */
export function onSettings(callback) {
  watchers.push(callback);
  if (current) callback(current);
}

/** The zone of this computer: from the desktop application when it says, else from the browser. */
export const systemTimeZone = () =>
  window.NavoraSystemTimeZone || Intl.DateTimeFormat().resolvedOptions().timeZone || 'UTC';

function accept(answer) {
  current = answer.settings;
  effectiveTimeZone = answer.timeZone;
  const root = document.documentElement;
  root.dataset.theme = current.theme;
  root.lang = current.locale === 'system' ? current.detectedLocale || 'en' : current.locale;
  localStorage.setItem('navora.theme', current.theme);
  for (const watcher of watchers) watcher(current);
}

export async function loadSettings() {
  accept(await get('/api/settings'));
  await reportSystemTimeZone();
}

// One after another: of two that are under way the older could arrive last.
let saving = Promise.resolve();

export function saveSettings(changes) {
  const saved = saving.then(() => store(changes));
  saving = saved.catch(() => {});
  return saved;
}

async function store(changes) {
  accept(await put('/api/settings', changes));
  if ('locale' in changes) window.dispatchEvent(new Event('tolvin:localesaved'));
  if ('timeZone' in changes) window.dispatchEvent(new Event('tolvin:timezonesaved'));
}

let reported = null;
async function reportSystemTimeZone() {
  const zone = systemTimeZone();
  if (!current || zone === current.systemTimeZone || zone === reported) return;
  reported = zone;
  // A zone that the service does not know leaves the last known one in use.
  await saveSettings({systemTimeZone: zone}).catch(() => {});
}

window.addEventListener('tolvin:systemtimezonechange', reportSystemTimeZone);
