// Runs in the page's own world, in the top frame only, before any code of the page. The engine
// does not say which frame a script message, a dialog or a new window comes from; so the top frame
// of the service's pages gets the bridge and marks what it asks for, and nothing else can.
((origin, handlerNames, dialogToken, channel) => {
  if (window.location.origin !== new window.URL(origin).origin) return;
  // document.open() runs this script again on the same window.
  if (Object.getOwnPropertyDescriptor(window, 'webkit')?.configurable === false) return;

  // What the page may replace later is taken now.
  const {apply, defineProperty} = Reflect;
  const {freeze} = Object;
  const {stringify} = JSON;
  const {CustomEvent, String, URL} = window;
  const {dispatchEvent} = EventTarget.prototype;
  const baseUri = Object.getOwnPropertyDescriptor(Node.prototype, 'baseURI').get;
  const page = window;
  const pageDocument = document;

  // Which of the two worlds starts first is not defined: announcements wait until the listener of
  // the other world has said that it is there.
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
      // Not a URL: the engine reports it in its own words below.
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
