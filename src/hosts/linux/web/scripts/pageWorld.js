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
  const {CustomEvent, MouseEvent, String, URL} = window;
  const {dispatchEvent} = EventTarget.prototype;
  const {getRootNode} = Node.prototype;
  const getter = ({prototype}, name) => Object.getOwnPropertyDescriptor(prototype, name).get;
  const baseUri = getter(Node, 'baseURI');
  const eventType = getter(Event, 'type');
  const inputType = getter(HTMLInputElement, 'type');
  const urlHref = getter(URL, 'href');
  const page = window;
  const pageDocument = document;

  // The order in which the two worlds' scripts run is not defined: announcements are queued until
  // bridgeWorld.js says that its listener is registered.
  let waiting = [];
  const dispatch = (fact) => {
    const init = {__proto__: null, detail: stringify(fact)};
    apply(dispatchEvent, page, [new CustomEvent(channel, init)]);
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
        announce({__proto__: null, kind: 'message', name, body: stringify(body) ?? 'null'});
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

  // The isolated world sees only events that reach the window. Here it is told of the other trees,
  // and of what raises no event. frameWorld.js takes the nodes from these events.
  const hand = (kind, relatedTarget) => {
    const init = {__proto__: null, relatedTarget};
    apply(dispatchEvent, page, [new MouseEvent(`${channel}-${kind}`, init)]);
  };
  // The engine (2.50) collects an input outside the document as garbage while its file chooser is
  // open, and the page is never told of the files.
  let lastTree;
  const handRootOf = (node) => {
    const root = apply(getRootNode, node, []);
    if (root === pageDocument) return;
    lastTree = [root, node];
    hand('root', root);
  };
  // Calls `before` with the receiver and arguments of each call of a native function, and `after`
  // with the result.
  const wrap = (owner, name, before, after) => {
    const native = owner[name];
    if (!native) return;
    const wrapper = {
      [name]() {
        before?.(this, arguments);
        const result = apply(native, this, arguments);
        after?.(result);
        return result;
      },
    }[name];
    defineProperty(wrapper, 'length', {__proto__: null, value: native.length});
    owner[name] = wrapper;
  };

  const announceWindow = (url) => {
    try {
      const target = new URL(String(url), apply(baseUri, pageDocument, []));
      const init = {__proto__: null, detail: apply(urlHref, target, [])};
      apply(dispatchEvent, page, [new CustomEvent(`${channel}-open`, init)]);
    } catch {
      // Not a URL: the native function throws the error.
    }
  };
  wrap(page, 'open', (self, {0: url = ''}) => announceWindow(url));
  wrap(Document.prototype, 'open', (self, {length, 0: url}) => {
    if (length > 2 && self === pageDocument) announceWindow(url);
  });

  wrap(HTMLElement.prototype, 'click', handRootOf);
  wrap(HTMLFormElement.prototype, 'requestSubmit', handRootOf);
  wrap(HTMLFormElement.prototype, 'submit', (form) => hand('submit', form));
  wrap(HTMLInputElement.prototype, 'showPicker', (input) => {
    if (apply(inputType, input, []) === 'file') hand('picker', input);
  });
  wrap(EventTarget.prototype, 'dispatchEvent', (target, {0: event}) => {
    try {
      const type = apply(eventType, event, []);
      if (type === 'click' || type === 'auxclick') handRootOf(target);
    } catch {
      // Not an event, which the native function refuses, or not dispatched to a node.
    }
  });
  wrap(Element.prototype, 'attachShadow', null, (root) => hand('root', root));
})(/*ARGUMENTS*/);
