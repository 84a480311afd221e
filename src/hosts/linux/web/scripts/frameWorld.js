// Runs in the application's isolated world, in every frame. Reports which link, form or file input
// the user or a script acts on, and in which frame, just before the engine asks the application
// about it, and shortly afterwards that the report no longer holds.
((channel) => {
  const makeReporter = () => {
    const post = (body) =>
      window.webkit.messageHandlers.navoraFrames.postMessage(JSON.stringify(body));

    // Calls functions in later turns of the event loop. The page can clear timers, but not these.
    const waiting = [];
    const {port1, port2} = new MessageChannel();
    port1.onmessage = () => waiting.shift()();
    const soon = (action) => {
      waiting.push(action);
      port2.postMessage(null);
    };

    const frame = Math.random();
    let count = 0;
    const report = (fact) => {
      const id = `${frame}/${++count}`;
      const end = () => post({ended: id});
      post({source: {top: window === window.top, frameUrl: location.href}, id, ...fact});
      switch (fact.kind) {
        case 'menu':
          // It stays open.
          return;
        case 'form':
          // The engine submits it, and asks, a turn after the event.
          soon(() => {
            post({over: id});
            soon(end);
          });
          return;
        default:
          // The engine asks during the event or the page's call.
          soon(end);
      }
    };

    // Several listeners see the same event.
    const reportedOf = new WeakMap();
    const reportOnce = (event, fact) => {
      const text = JSON.stringify(fact);
      const reported = reportedOf.get(event) ?? new Set();
      reportedOf.set(event, reported);
      if (reported.has(text)) return;
      reported.add(text);
      report(fact);
    };

    const reportLink = (kind, event) => {
      const link = event.composedPath().find((node) => node.matches?.(':any-link'));
      if (!link) return false;
      const target =
        typeof link.href === 'string' ? link.href : link.href?.baseVal ?? link.getAttribute('href');
      try {
        reportOnce(event, {kind, href: new URL(target, link.baseURI).href});
      } catch {
        // A link whose target is not a URL is not followed.
      }
      return true;
    };

    const reportFiles = (tell, input) => void tell({
      kind: 'files',
      directories: input.webkitdirectory === true,
      multiple: input.multiple,
    });

    // The getter itself: a control named "action" hides the property.
    const actionOf = Object.getOwnPropertyDescriptor(HTMLFormElement.prototype, 'action').get;
    const reportForm = (form, submitter) => void report({
      kind: 'form',
      href: submitter?.hasAttribute('formaction') ? submitter.formAction :
                                                    Reflect.apply(actionOf, form, []),
    });

    const reportChangedLink = (event) => void reportLink('link', event);

    const onClick = (event) => {
      const path = event.composedPath();
      for (const node of path) {
        if (node instanceof ShadowRoot) listenAt(node);
      }
      if (reportLink('link', event)) {
        // After the handlers of the page, which may change the target.
        for (const node of path) {
          node.removeEventListener(event.type, reportChangedLink);
          node.addEventListener(event.type, reportChangedLink);
        }
      }
      const input = path.find((node) => node.localName === 'input' && node.type === 'file');
      if (input) reportFiles((fact) => reportOnce(event, fact), input);
    };
    const onContextMenu = (event) => void reportLink('menu', event);
    const onSubmit = (event) => reportForm(event.target, event.submitter);

    // Listens to the events that end at `root`: the window, a shadow root, or the topmost node of a
    // tree outside the document.
    const listenAt = (root) => {
      root.addEventListener('click', onClick, true);
      root.addEventListener('auxclick', onClick, true);
      root.addEventListener('contextmenu', onContextMenu, true);
      root.addEventListener('submit', onSubmit, true);
    };

    // What pageWorld.js announces.
    const announced = {
      'root': (event) => listenAt(event.relatedTarget),
      'submit': (event) => reportForm(event.relatedTarget),
      'picker': (event) => reportFiles(report, event.relatedTarget),
      'open': (event) => report({kind: 'open', href: event.detail}),
    };
    const onAnnouncement = (event) => {
      // The page has no use for it.
      event.stopImmediatePropagation();
      announced[event.type.slice(channel.length + 1)](event);
    };

    return () => {
      for (const kind of Object.keys(announced)) {
        window.addEventListener(`${channel}-${kind}`, onAnnouncement, true);
      }
      listenAt(window);
    };
  };

  // document.open() removes the listeners and runs this script again. Keeping the functions makes
  // addEventListener() ignore a second registration.
  globalThis.startReports ??= makeReporter();
  globalThis.startReports();
})(/*ARGUMENTS*/);
