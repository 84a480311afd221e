// Runs in the application's isolated world, in every frame. Reports which link, form or file input
// the user acts on, and in which frame, just before the engine asks the application about it.
(() => {
  const linkOf = (event) => event.composedPath().find(
    (node) => (node instanceof HTMLAnchorElement || node instanceof HTMLAreaElement ||
                node instanceof SVGAElement) &&
      node.hasAttribute('href'));
  const hrefOf = (link) =>
    link instanceof SVGAElement ? new URL(link.href.baseVal, document.baseURI).href : link.href;
  const fileInputOf = (event) =>
    event.composedPath().find((node) => node instanceof HTMLInputElement && node.type === 'file');

  const report = (fact) => {
    const source = {top: window === window.top, frameUrl: location.href};
    window.webkit.messageHandlers.navoraFrames.postMessage(JSON.stringify({source, ...fact}));
  };

  const reportLink = (kind, event) => {
    const link = linkOf(event);
    if (!link) return false;
    try {
      report({kind, href: hrefOf(link)});
    } catch {
      // An SVG link whose href is not a URL is not followed.
    }
    return true;
  };

  globalThis.reportClick ??= (event) => {
    if (reportLink('link', event)) return;
    const input = fileInputOf(event);
    if (input) report({kind: 'files', directories: input.webkitdirectory === true});
  };
  globalThis.reportContextMenu ??= (event) => void reportLink('menu', event);
  globalThis.reportSubmit ??= (event) => {
    const action = event.submitter?.hasAttribute('formaction') ? event.submitter.formAction :
                                                                 event.target.action;
    if (typeof action === 'string') report({kind: 'form', href: action});
  };

  window.addEventListener('click', globalThis.reportClick, true);
  window.addEventListener('auxclick', globalThis.reportClick, true);
  window.addEventListener('contextmenu', globalThis.reportContextMenu, true);
  window.addEventListener('submit', globalThis.reportSubmit, true);
})();
