// Tells the desktop application whether the page can be torn down for an update.
import {editorText, isSending} from './today.js';

function reason() {
  if (isSending()) return 'A note is being saved. Wait a moment, then continue the update.';
  if (editorText()) return 'Save or delete the note you are writing, then continue the update.';
  const unsent = ['message-input', 'event-title'].some((id) => document.getElementById(id)?.value.trim());
  return unsent ? 'Finish what you are writing, then continue the update.' : null;
}

// The application may bring a guard of its own, which then stays in charge.
window.NavoraUpdateGuard ??= Object.freeze({
  prepare() {
    const waiting = reason();
    if (waiting === null) document.body.inert = true;
    return waiting;
  },
  resume() {
    document.body.inert = false;
  },
});
