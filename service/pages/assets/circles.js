import {get, patch, post} from './api.js';
import {shortMoment} from './dates.js';
import {byId, element, toast} from './dom.js';

let circles = [];
let roomId = null;

const rooms = () => circles.flatMap((circle) => circle.rooms.map((room) => ({...room, circle})));

async function rename(circle) {
  const name = prompt('Name of the circle', circle.name)?.trim();
  if (!name || name === circle.name) return;
  try {
    await patch(`/api/circles/${circle.id}`, {name});
    await showCircles(roomId);
  } catch (error) {
    alert(error.message);
  }
}

function circleBlock(circle) {
  return element('div', {class: 'circle'},
    element('header', {}, element('h2', {}, circle.name), element('button', {
      type: 'button',
      class: 'link',
      textContent: 'Rename',
      'aria-label': `Rename ${circle.name}`,
      onclick: () => rename(circle)
    })),
    ...circle.rooms.map((room) => element('a', {
      href: `#circles?room=${encodeURIComponent(room.id)}`,
      'aria-current': room.id === roomId ? 'true' : null,
    },
                          room.name)));
}

function messageLine(message) {
  return element('div', {class: 'message'},
    element(
      'span', {class: 'avatar', 'aria-hidden': 'true'}, (message.author[0] || '?').toUpperCase()),
    element('div', {}, element('span', {class: 'who'}, message.author),
      element('time', {dateTime: message.createdAt}, shortMoment(new Date(message.createdAt))),
      element('p', {}, message.text)));
}

function roomView(room) {
  const input = element('input', {
    id: 'message-input',
    maxLength: 2000,
    placeholder: 'Write a message',
    'aria-label': 'Message'
  });
  const send = async (event) => {
    event.preventDefault();
    if (!input.value.trim()) return;
    try {
      await post(`/api/rooms/${room.id}/messages`, {text: input.value});
      await showCircles(room.id);
      byId('message-input')?.focus();
    } catch (error) {
      toast(error.message);
    }
  };
  return [
    element('header', {}, element('h2', {}, room.name),
      element('span', {class: 'quiet'}, room.circle.name)),
    element('div', {class: 'messages', 'aria-live': 'polite'}, ...room.messages.map(messageLine)),
    element('form', {onsubmit: send}, input,
      element('button', {type: 'submit', class: 'button'}, 'Send')),
  ];
}

export async function showCircles(wanted) {
  try {
    circles = (await get('/api/circles')).circles;
  } catch (error) {
    toast(error.message);
    return;
  }
  const all = rooms();
  const room =
    all.find((each) => each.id === wanted) || all.find((each) => each.id === roomId) || all[0];
  roomId = room?.id ?? null;
  byId('circles-list').replaceChildren(...circles.map(circleBlock));
  byId('room').hidden = !room;
  if (room) byId('room').replaceChildren(...roomView(room));
  else
    byId('circles-list')
      .replaceChildren(element('p', {class: 'quiet'}, 'You are in no circle yet.'));
}
