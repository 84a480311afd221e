// Dates and times in the user's time zone.
import {timeZone} from './settings-store.js';

const format = (date, options) =>
  new Intl.DateTimeFormat('en-GB', {timeZone: timeZone(), ...options}).format(date);

/**
 * Returns "2026-03-09" in the user's zone, assembled from parts because no locale guarantees this
 * order.
 */
export function dayOf(date) {
  const parts = new Intl
                  .DateTimeFormat('en-GB', {
                    timeZone: timeZone(),
                    calendar: 'gregory',
                    numberingSystem: 'latn',
                    year: 'numeric',
                    month: '2-digit',
                    day: '2-digit',
                  })
                  .formatToParts(date);
  const part = (type) => parts.find((each) => each.type === type).value;
  return `${part('year').padStart(4, '0')}-${part('month')}-${part('day')}`;
}

export const clock = (date) => format(date, {hour: '2-digit', minute: '2-digit', hourCycle: 'h23'});
export const longDay = (date) => format(date, {weekday: 'long', day: 'numeric', month: 'long'});

export function dayTitle(date) {
  const day = dayOf(date);
  if (day === dayOf(new Date())) return 'Today';
  if (day === dayOf(new Date(Date.now() - 86400000))) return 'Yesterday';
  return longDay(date);
}

export const shortMoment = (date) => {
  const day = dayTitle(date);
  return day === 'Today' ? clock(date) : `${day}, ${clock(date)}`;
};

/** Days of a calendar have no time zone and are represented as UTC midnights. */
export const calendarDay = (text) => new Date(`${text}T00:00:00Z`);
export const calendarText = (date) => date.toISOString().slice(0, 10);
export const calendarTitle = (date, options) =>
  new Intl.DateTimeFormat('en-GB', {timeZone: 'UTC', ...options}).format(date);
