// Records the input events that reach the page.
window.seen = [];
window.failures = [];
for (const type of window.inputTypes ?? []) {
  window.addEventListener(type, (event) => {
    if (event.isTrusted) seen[seen.length] = type;
  }, {capture: true, passive: true});
}
window.addEventListener('error', (event) => failures.push(event.message));
window.addEventListener('unhandledrejection', (event) => failures.push(String(event.reason)));
window.nextFrame = () => new Promise((resume) => requestAnimationFrame(resume));
window.byId = (id) => document.getElementById(id);
