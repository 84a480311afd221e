import {get, post, remove} from './api.js';
import {calendarDay, calendarText, calendarTitle, dayOf} from './dates.js';
import {byId, element, halfHours, iconButton, option, toast} from './dom.js';

const dayLength = 86400000;
const shownPerDay = 2;
let month = null;   // "2026-03"
let chosen = null;  // "2026-03-09"
let opened = null;  // the uid of an event that a notification opened
let events = [];
let started = false;

const today = () => dayOf(new Date());
const eventsOf = (day) => events.filter((event) => event.date === day);

/** Returns the days of the whole weeks (from Monday) that contain the month. */
function days() {
  const first = calendarDay(`${month}-01`);
  const start = first.getTime() - ((first.getUTCDay() + 6) % 7) * dayLength;
  const list = [];
  while (list.length % 7 || list.length === 0 ||
    calendarText(new Date(start + list.length * dayLength)).startsWith(month)) {
    list.push(calendarText(new Date(start + list.length * dayLength)));
  }
  return list;
}

function dayCell(day, index, all) {
  const own = eventsOf(day);
  const classes = ['date'];
  if (!day.startsWith(month)) classes.push('outside');
  if (day === today()) classes.push('today');
  if (day === chosen) classes.push('chosen');
  if (index >= all.length - 7) classes.push('last');
  const lines =
    own.slice(0, shownPerDay).map((event) => element('span', {class: 'event'}, event.title));
  if (own.length > shownPerDay)
    lines.push(element('span', {class: 'event more'}, `${own.length - shownPerDay} more`));
  const label = `${calendarTitle(calendarDay(day), {dateStyle: 'full'})}, ${own.length} events`;
  return element('button', {
    type: 'button',
    class: classes.join(' '),
    'data-day': day,
    'aria-label': label,
    onclick: () => choose(day)
  },
    element('span', {class: 'number'}, String(Number(day.slice(8)))), ...lines);
}

function weekdayNames() {
  return Array.from({length: 7},
    (_, index) => element('div', {class: 'weekday'},
      calendarTitle(new Date(Date.UTC(2024, 0, 1 + index)), {weekday: 'short'})));
}

function eventLine(event) {
  return element('li', {class: event.uid === opened ? 'opened' : ''},
    element('time', {}, event.time || 'All day'), element('span', {}, event.title),
    iconButton('trash', 'Delete event', () => deleteEvent(event)));
}

function render() {
  byId('calendar-title').textContent =
    calendarTitle(calendarDay(`${month}-01`), {month: 'long', year: 'numeric'});
  byId('month').replaceChildren(...weekdayNames(), ...days().map(dayCell));
  byId('event-day').textContent =
    calendarTitle(calendarDay(chosen), {weekday: 'long', day: 'numeric', month: 'long'});
  byId('event-list').replaceChildren(...eventsOf(chosen).map(eventLine));
}

async function load() {
  const asked = month;
  try {
    const answer = await get(`/api/events?month=${asked}`);
    if (asked !== month) return;
    events = answer.events;
    render();
  } catch (error) {
    toast(error.message);
  }
}

function choose(day) {
  chosen = day;
  if (day.startsWith(month)) {
    render();
    return;
  }
  month = day.slice(0, 7);
  load();
}

async function deleteEvent(event) {
  if (!confirm(`Delete “${event.title}”?`)) return;
  await remove(`/api/events/${event.uid}`).catch((error) => alert(error.message));
  await load();
}

function moveMonth(step) {
  const first = calendarDay(`${month}-01`);
  first.setUTCMonth(first.getUTCMonth() + step);
  choose(calendarText(first));
}

function startCalendar() {
  started = true;
  byId('event-time').append(option('', 'All day'), ...halfHours.map((time) => option(time)));
  byId('month-previous').addEventListener('click', () => moveMonth(-1));
  byId('month-next').addEventListener('click', () => moveMonth(1));
  byId('month-today').addEventListener('click', () => choose(today()));
  byId('event-form').addEventListener('submit', async (submitted) => {
    submitted.preventDefault();
    const title = byId('event-title').value.trim();
    if (!title) return;
    try {
      await post('/api/events', {date: chosen, time: byId('event-time').value, title});
      byId('event-title').value = '';
      await load();
    } catch (error) {
      toast(error.message);
    }
  });
}

export function showCalendar(date, uid) {
  if (!started) startCalendar();
  opened = uid;
  if (/^\d{4}-\d{2}-\d{2}$/.test(date || '') && !isNaN(calendarDay(date))) chosen = date;
  chosen ??= today();
  month = chosen.slice(0, 7);
  return load();
}
