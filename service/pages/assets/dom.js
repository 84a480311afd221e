/** Returns the element with an id; all of these are part of the page. */
export const byId = (id) => document.getElementById(id);

/**
 * Makes an element. Texts become text nodes, so that nothing a user wrote is read as markup.
 * Properties: "class", "data-..." and "aria-..." as attributes, "on..." as listeners, others as
 * properties.
 */
export function element(name, properties = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(properties)) {
    if (value === undefined || value === null) continue;
    if (key.startsWith('on')) made.addEventListener(key.slice(2), value);
    else if (key === 'class' || key.includes('-')) made.setAttribute(key, value);
    else made[key] = value;
  }
  made.append(...children.filter((child) => child !== null && child !== undefined));
  return made;
}

export function icon(name) {
  const namespace = 'http://www.w3.org/2000/svg';
  const svg = document.createElementNS(namespace, 'svg');
  svg.setAttribute('class', 'icon');
  svg.setAttribute('aria-hidden', 'true');
  const use = document.createElementNS(namespace, 'use');
  use.setAttribute('href', `#icon-${name}`);
  svg.append(use);
  return svg;
}

export function iconButton(name, label, onclick) {
  return element('button',
    {type: 'button', class: 'icon-button', title: label, 'aria-label': label, onclick}, icon(name));
}

export function option(value, label = value) {
  return element('option', {value, textContent: label});
}

/** Selects a value in a select element, and adds it if the list lacks it. */
export function choose(select, value, label = value) {
  if (![...select.options].some((each) => each.value === value))
    select.append(option(value, label));
  select.value = value;
}

/** Returns the times of a day in half-hour steps: "00:00", "00:30", ... */
export const halfHours = Array.from(
  {length: 48}, (_, index) => `${String(index >> 1).padStart(2, '0')}:${index % 2 ? '30' : '00'}`);

let toastTimer;
export function toast(text) {
  const box = byId('toast');
  box.textContent = text;
  box.hidden = false;
  clearTimeout(toastTimer);
  toastTimer = setTimeout(() => {
    box.hidden = true;
  }, 3500);
}
