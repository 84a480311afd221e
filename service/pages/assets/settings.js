import {byId, choose, element, halfHours, option, toast} from './dom.js';
import {clock, longDay} from './dates.js';
import {onKinds} from './notifications.js';
import {onSettings, saveSettings, settings, systemTimeZone, timeZone} from './settings-store.js';

const languages = [
  ['system', 'Like the system'],
  ['en', 'English'],
  ['de', 'Deutsch'],
  ['es', 'Español'],
  ['fr', 'Français'],
  ['pt-BR', 'Português (Brasil)'],
  ['ru', 'Русский'],
  ['ja', '日本語'],
];
const channels = [['phone', 'Show on screen'], ['inbox', 'Only in the list'], ['off', 'Off']];
const usualQuietHours = ['22:00', '07:00'];

async function save(changes) {
  try {
    await saveSettings(changes);
    toast('Saved');
  } catch (error) {
    toast(error.message);
    if (settings()) render(settings());
  }
}

/** The desktop application's message handlers; undefined in a browser. */
const desktop = () => window.webkit?.messageHandlers?.navoraNotifications;

function renderDesktop() {
  const state = window.NavoraNotificationState;
  const on = Boolean(state?.authorized && state?.enabled);
  let text = 'Off. Turn them on to hear about finished notes.';
  if (!desktop()) text = 'Open Navora for the desktop to use them.';
  else if (!state) text = 'Asking the system…';
  else if (state.denied)
    text = 'The system does not allow them. Allow Navora in its notification settings.';
  else if (on) text = 'On. They come while Navora is running.';
  byId('desktop-state').textContent = text;
  byId('desktop-enable').hidden = on;
  byId('desktop-disable').hidden = !on;
  for (const id of ['desktop-enable', 'desktop-disable', 'desktop-test'])
    byId(id).disabled = !desktop();
}

function renderQuietHours(range) {
  const on = range !== 'off';
  const [from, until] = on ? range.split('-') : usualQuietHours;
  byId('quiet-on').checked = on;
  byId('quiet-range').hidden = !on;
  choose(byId('quiet-from'), from);
  choose(byId('quiet-until'), until);
}

function saveQuietHours() {
  const range = `${byId('quiet-from').value}-${byId('quiet-until').value}`;
  save({quietHours: byId('quiet-on').checked ? range : 'off'});
}

function renderTimeZone() {
  byId('setting-timeZone').options[0].textContent = `Like the system (${systemTimeZone()})`;
  const now = new Date();
  byId('time-zone-now').textContent =
    `It is ${clock(now)}, ${longDay(now)}, in ${timeZone().replaceAll('_', ' ')}.`;
}

function render(current) {
  choose(byId('setting-locale'), current.locale);
  choose(byId('setting-theme'), current.theme);
  choose(byId('setting-timeZone'), current.timeZone);
  renderTimeZone();
  renderQuietHours(current.quietHours);
  const chosen = JSON.parse(current.notifyPrefs);
  for (const select of document.querySelectorAll('[data-kind]')) {
    choose(select, chosen[select.dataset.kind] ?? select.dataset.default);
  }
}

function kindRow(kind) {
  const select = element('select', {'data-kind': kind.key, 'data-default': kind.default},
    ...channels.map(([value, label]) => option(value, label)));
  select.addEventListener('change', () => {
    const chosen = JSON.parse(settings().notifyPrefs);
    chosen[kind.key] = select.value;
    save({notifyPrefs: JSON.stringify(chosen)});
  });
  return element('label', {class: 'row'}, element('span', {}, kind.title), select);
}

export function startSettings() {
  byId('setting-locale').append(...languages.map(([value, label]) => option(value, label)));
  byId('setting-timeZone')
    .append(option('system', 'Like the system'), ...(Intl.supportedValuesOf?.('timeZone') ?? [
      'UTC'
    ]).map((zone) => option(zone, zone.replaceAll('_', ' '))));
  byId('quiet-from').append(...halfHours.map((time) => option(time)));
  byId('quiet-until').append(...halfHours.map((time) => option(time)));
  for (const select of document.querySelectorAll('[data-setting]')) {
    select.addEventListener('change', () => save({[select.dataset.setting]: select.value}));
  }
  for (const id of ['quiet-on', 'quiet-from', 'quiet-until'])
    byId(id).addEventListener('change', saveQuietHours);
  for (const command of ['enable', 'disable', 'test']) {
    byId(`desktop-${command}`).addEventListener('click', () => desktop()?.postMessage(command));
  }
  window.addEventListener('tolvin:notificationschange', renderDesktop);
  window.addEventListener('tolvin:systemtimezonechange', renderTimeZone);
  renderDesktop();
  desktop()?.postMessage('status');
  onKinds((kinds) => {
    byId('notification-kinds').replaceChildren(...kinds.map(kindRow));
    if (settings()) render(settings());
  });
  onSettings(render);
}
