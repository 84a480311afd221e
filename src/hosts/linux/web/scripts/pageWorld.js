// Runs in the page's own world, in the top frame only, before the page's scripts. WebKitGTK does
// not report which frame a script message, a dialog or a new window comes from. So only the top
// frame of the service's pages gets the message handlers, and functions that announce or mark its
// requests.
((origin, handlerNames, dialogToken, channel) => {
  if (window.location.origin !== new window.URL(origin).origin) return;
  // document.open() runs this script again on the same window.
  if (Object.getOwnPropertyDescriptor(window, 'webkit')?.configurable === false) return;

  // Saved before the page can replace them.
  const {apply, defineProperty} = Reflect;
  const {freeze} = Object;
  const {stringify} = JSON;
  const {CustomEvent, String, URL} = window;
  const {dispatchEvent} = EventTarget.prototype;
  const baseUri = Object.getOwnPropertyDescriptor(Node.prototype, 'baseURI').get;
  const page = window;
  const pageDocument = document;

  // The order in which the two worlds' scripts run is not defined: announcements are queued until
  // bridgeWorld.js says that its listener is registered.
  let waiting = [];
  const dispatch = (fact) => {
    apply(dispatchEvent, page, [new CustomEvent(channel, {detail: stringify(fact)})]);
  };
  const announce = (fact) => void (waiting ? waiting.push(fact) : dispatch(fact));
  page.addEventListener(channel + '-ready', () => {
    const facts = waiting ?? [];
    waiting = null;
    facts.forEach(dispatch);
  });
  apply(dispatchEvent, page, [new CustomEvent(channel + '-hello')]);

  const handlers = {};
  for (const name of handlerNames) {
    handlers[name] = freeze({
      postMessage(body) {
        announce({kind: 'message', name, body: stringify(body) ?? 'null'});
      },
    });
  }
  defineProperty(page, 'webkit', {
    value: freeze({messageHandlers: freeze(handlers)}),
    enumerable: true,
  });

  const nativeAlert = page.alert;
  const nativeConfirm = page.confirm;
  const nativePrompt = page.prompt;
  page.alert = function alert(message = '') {
    return apply(nativeAlert, page, [dialogToken + String(message)]);
  };
  page.confirm = function confirm(message = '') {
    return apply(nativeConfirm, page, [dialogToken + String(message)]);
  };
  page.prompt = function prompt(message = '', defaultText = '') {
    return apply(nativePrompt, page, [dialogToken + String(message), String(defaultText)]);
  };

  const nativeOpen = page.open;
  page.open = function open(url = '', ...rest) {
    try {
      const {href} = new URL(String(url), apply(baseUri, pageDocument, []));
      announce({kind: 'open', href});
    } catch {
      // Not a URL: the native function throws the error below.
    }
    return apply(nativeOpen, page, [url, ...rest]);
  };

  const nativeShowPicker = HTMLInputElement.prototype.showPicker;
  if (nativeShowPicker) {
    HTMLInputElement.prototype.showPicker = function showPicker() {
      announce({kind: 'files', directories: this.webkitdirectory === true});
      return apply(nativeShowPicker, this, []);
    };
  }
})(/*ARGUMENTS*/);
