import {byId, element, toast} from './dom.js';
import {showCalendar} from './calendar.js';
import {showCircles} from './circles.js';
import {startNotifications, refreshNotifications} from './notifications.js';
import {startSettings} from './settings.js';
import {loadSettings, onSettings} from './settings-store.js';
import {openCapture, refreshCaptures, startToday} from './today.js';
import './update-guard.js';

const views = ['today', 'circles', 'calendar', 'settings'];

/** "#calendar?date=2026-03-09" → {view: 'calendar', parameters}. Unknown views map to today. */
function route() {
  const [name, query = ''] = location.hash.slice(1).split('?');
  return {view: views.includes(name) ? name : 'today', parameters: new URLSearchParams(query)};
}

function show() {
  const {view, parameters} = route();
  for (const section of document.querySelectorAll('[data-view]'))
    section.hidden = section.dataset.view !== view;
  for (const link of document.querySelectorAll('[data-nav]')) {
    link.toggleAttribute('aria-current', link.dataset.nav === view);
  }
  document.title =
    view === 'today' ? 'Navora' : `${view[0].toUpperCase()}${view.slice(1)} · Navora`;
  window.scrollTo(0, 0);
  if (view === 'today') openCapture(parameters.get('open'));
  if (view === 'circles') showCircles(parameters.get('room'));
  if (view === 'calendar') showCalendar(parameters.get('date'), parameters.get('event'));
}

async function refresh() {
  try {
    await loadSettings();
    await Promise.all([refreshCaptures(), refreshNotifications()]);
  } catch (error) {
    toast(error.message);
  }
}

async function start() {
  const user = document.body.dataset.user;
  byId('account-initial').append(element('span', {}, (user[0] || '?').toUpperCase()));
  startSettings();
  startToday();
  startNotifications();
  window.addEventListener('hashchange', show);
  window.addEventListener('tolvin:resume', async () => {
    await refresh();
    show();
  });
  await refresh();
  show();
  onSettings(() => {
    if (route().view === 'calendar') show();
  });
}

start();
