// The user's settings on the service, and their effects on the whole page.
import {get, put} from './api.js';

let current = null;
let effectiveTimeZone = 'UTC';
const watchers = [];

export const settings = () => current;
export const timeZone = () => effectiveTimeZone;

/** Calls back now if the settings are known, and after every change. */
export function onSettings(callback) {
  watchers.push(callback);
  if (current) callback(current);
}

/**
 * Returns the system's time zone: from the desktop application if it has announced one, else from
 * the browser.
 */
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

// One after another, because of two concurrent requests the older could arrive last.
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
  // If the service does not know the zone, the last known one stays in use.
  await saveSettings({systemTimeZone: zone}).catch(() => {});
}

window.addEventListener('tolvin:systemtimezonechange', reportSystemTimeZone);
