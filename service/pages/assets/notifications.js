import {get, post} from './api.js';
import {shortMoment} from './dates.js';
import {byId, element, toast} from './dom.js';
import {onSettings, settings} from './settings-store.js';

const interval = 30000;
let items = [];
let kinds = [];
const kindWatchers = [];

/** Calls back with the service's kinds of notification. */
export function onKinds(callback) {
  kindWatchers.push(callback);
  if (kinds.length) callback(kinds);
}

function channelOf(item) {
  const chosen = JSON.parse(settings()?.notifyPrefs || '{}');
  return chosen[item.kind] ?? kinds.find((kind) => kind.key === item.kind)?.default ?? 'off';
}

const shown = () =>
  items.filter((item) => !item.resolved && !item.dismissed && channelOf(item) !== 'off');

/** Returns the location within this page that an item refers to. */
function target(item) {
  if (item.captureId) return `#today?open=${encodeURIComponent(item.captureId)}`;
  if (item.roomId) return `#circles?room=${encodeURIComponent(item.roomId)}`;
  if (item.circleId) return '#circles';
  if (['invite', 'event_added', 'event_changed'].includes(item.kind)) {
    const date = item.data?.date ? `?date=${encodeURIComponent(item.data.date)}` : '';
    return `#calendar${date}`;
  }
  return ['spend', 'calendar_error'].includes(item.kind) ? '#settings' : '#today';
}

function line(item) {
  return element('li', {},
    element('a', {
      class: `notification${item.read ? '' : ' unread'}`,
      href: target(item),
      onclick: () => read(item)
    },
      element('p', {}, [item.lead, item.text].filter(Boolean).join(' ')),
      element('time', {dateTime: item.createdAt}, shortMoment(new Date(item.createdAt)))));
}

function render() {
  const list = shown();
  const unread = list.filter((item) => !item.read).length;
  byId('notifications-count').textContent = unread > 99 ? '99+' : unread;
  byId('notifications-count').hidden = unread === 0;
  byId('notifications-read').hidden = unread === 0;
  byId('notifications-button')
    .setAttribute('aria-label', unread ? `Notifications, ${unread} unread` : 'Notifications');
  byId('notifications-list').replaceChildren(...(list.length ? list.map(line) : [
    element('li', {class: 'empty'}, 'Nothing new.')
  ]));
}

async function read(item) {
  setOpen(false);
  if (item.read) return;
  item.read = true;
  render();
  await post(`/api/notifications/${encodeURIComponent(item.id)}/read`, {})
    .catch((error) => toast(error.message));
}

function setOpen(open) {
  byId('notifications-panel').hidden = !open;
  byId('notifications-button').setAttribute('aria-expanded', String(open));
}

export async function refreshNotifications() {
  const answer = await get('/api/notifications');
  items = answer.notifications;
  const first = kinds.length === 0;
  kinds = answer.kinds;
  if (first)
    for (const watcher of kindWatchers) watcher(kinds);
  render();
}

export function startNotifications() {
  const button = byId('notifications-button');
  const panel = byId('notifications-panel');
  button.addEventListener('click', () => setOpen(panel.hidden));
  byId('notifications-read').addEventListener('click', async () => {
    await post('/api/notifications/read', {}).catch((error) => toast(error.message));
    await refreshNotifications().catch((error) => toast(error.message));
  });
  document.addEventListener('pointerdown', (event) => {
    if (!panel.contains(event.target) && !button.contains(event.target)) setOpen(false);
  });
  document.addEventListener('keydown', (event) => {
    if (event.key === 'Escape' && !panel.hidden) {
      setOpen(false);
      button.focus();
    }
  });
  onSettings(render);
  setInterval(() => {
    if (!document.hidden) refreshNotifications().catch(() => {});
  }, interval);
}
