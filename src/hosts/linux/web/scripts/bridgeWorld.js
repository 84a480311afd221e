// Runs in the application's isolated world, in the top frame only. Forwards what pageWorld.js
// announces to the application, together with the document's address, which the page cannot forge
// here.
((origin, channel) => {
  if (window.location.origin !== new window.URL(origin).origin) return;
  // document.open() removes the listeners and runs this script again. Keeping the functions makes
  // addEventListener() ignore a second registration.
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
