// Runs in the application's isolated world, in the top frame only: hands what the page world
// announces to the application, together with the address that the engine itself reports here.
((origin, channel) => {
  if (window.location.origin !== new window.URL(origin).origin) return;
  // document.open() removes the listener and runs this script again; the same function is never
  // registered twice.
  globalThis.forwardAnnouncement ??= (event) => {
    if (typeof event.detail !== 'string') return;
    const source = {frameUrl: location.href};
    window.webkit.messageHandlers.navoraBridge.postMessage(
      JSON.stringify({source, announcement: event.detail}));
  };
  globalThis.sayReady ??= () => void window.dispatchEvent(new CustomEvent(channel + '-ready'));
  window.addEventListener(channel, globalThis.forwardAnnouncement, true);
  window.addEventListener(channel + '-hello', globalThis.sayReady, true);
  globalThis.sayReady();
})(/*ARGUMENTS*/);
