// Runs a test's scripts in the page that includes this file. The parameter "name" of its address
// distinguishes pages. Requests are sent to the server of this file, so that pages of other origins
// can be driven too.
(() => {
  const source = new URL(document.currentScript.src);
  const name = source.searchParams.get('name') || 'main';
  const base = `${source.origin}/__test/driver/${encodeURIComponent(name)}`;
  const AsyncFunction = (async () => {}).constructor;
  // Saved before the page's scripts can replace them.
  const send = window.fetch.bind(window);
  const beacon = navigator.sendBeacon.bind(navigator);
  const answers = new Set();
  let current = null;

  const post = (path, value) => send(base + path, {
    method: 'POST',
    body: JSON.stringify(value),
    credentials: 'omit',
    keepalive: true,
  });

  async function run({id, script}) {
    // Scripts must not observe the driver's own replies among the page's requests.
    await Promise.allSettled(answers);
    const answer = {id, ok: true};
    try {
      const value = await new AsyncFunction(script)();
      answer.value = value === undefined ? null : value;
      JSON.stringify(answer);
    } catch (error) {
      answer.ok = false;
      delete answer.value;
      answer.error = String(error);
    }
    const sent = post('/result', answer);
    answers.add(sent);
    await sent.finally(() => answers.delete(sent));
  }

  async function listen(session) {
    while (session === current) {
      try {
        if (session.generation === null) {
          const registered = await post('/register', {});
          session.generation = (await registered.json()).generation;
        }
        const response = await send(`${base}/next?generation=${session.generation}`, {
          cache: 'no-store',
          credentials: 'omit',
          signal: session.abort.signal,
        });
        if (response.status === 410) return;
        // Not awaited: a script may wait for the effect of a later one.
        if (response.status === 200) run(await response.json());
      } catch {
        if (session !== current) return;
        await new Promise((resume) => setTimeout(resume, 100));
      }
    }
  }

  function start() {
    current = {generation: null, abort: new AbortController()};
    listen(current);
  }

  function stop() {
    const session = current;
    current = null;
    // A page restored from the page cache gets no reply to its earlier requests.
    answers.clear();
    if (!session) return;
    session.abort.abort();
    if (session.generation !== null) {
      beacon(`${base}/leave`, JSON.stringify({generation: session.generation}));
    }
  }

  for (const type of ['mousemove', 'mousedown', 'mouseup']) {
    window.addEventListener(type, (event) => {
      window.__driverOffset = {x: event.screenX - event.clientX, y: event.screenY - event.clientY};
    }, true);
  }
  window.addEventListener('pagehide', stop);
  window.addEventListener('pageshow', (event) => {
    if (event.persisted) start();
  });
  start();
})();
