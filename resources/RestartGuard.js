// Tells the application whether the page may be unloaded for a restart, and blocks all input to the
// page from then on. A page that knows better may provide its own `window.NavoraUpdateGuard`.
//
// Runs before the page's scripts and keeps references to the platform's functions, so that it works
// whatever the page does to the built-in objects later. Code that runs afterwards avoids spread,
// for-of and array destructuring, because they call iterators that the page can replace.
(() => {
  'use strict';
  if (window.NavoraUpdateGuard) return;

  // ---- The platform's functions.

  const {apply} = Reflect;
  const {defineProperty, getOwnPropertyDescriptor, freeze, keys} = Object;
  const {parse} = JSON;
  // Returns the methods and getters of a type as functions that take the object as first argument.
  const taken = (type) => {
    const found = {__proto__: null};
    const all = Object.getOwnPropertyDescriptors(type.prototype);
    for (const name of Reflect.ownKeys(all)) {
      const {value, get} = all[name];
      if (get) found[name] = (self) => apply(get, self, []);
      else if (typeof value === 'function')
        found[name] = (self, ...parameters) => apply(value, self, parameters);
    }
    return found;
  };
  const types = {
    Element,
    File,
    FormData,
    HTMLElement,
    HTMLInputElement,
    HTMLSelectElement,
    HTMLTextAreaElement,
    InputEvent,
    Request,
    URLSearchParams,
    WeakRef,
  };
  const documents = taken(Document);
  const nodes = taken(Node);
  const elements = taken(Element);
  const html = taken(HTMLElement);
  const input = taken(HTMLInputElement);
  const area = taken(HTMLTextAreaElement);
  const select = taken(HTMLSelectElement);
  const choice = taken(HTMLOptionElement);
  const dialogs = taken(HTMLDialogElement);
  const events = taken(Event);
  const {submitter} = taken(SubmitEvent);
  const {dataTransfer} = taken(DragEvent);
  const {addEventListener: listen} = taken(EventTarget);
  const {method: methodOf} = taken(Request);
  const answers = taken(Response);
  const {status} = taken(XMLHttpRequest);
  const {name: fileName} = taken(File);
  const {size} = taken(Blob);
  const {get: recall, set: remember} = taken(WeakMap);
  const {deref} = taken(WeakRef);
  const {then} = taken(Promise);
  const {toLowerCase: lower, slice, includes, indexOf} = taken(String);
  const {forEach: eachField} = taken(FormData);
  const {forEach: eachParameter} = taken(URLSearchParams);
  const {[Symbol.replace]: replace} = taken(RegExp);
  const later = window.setTimeout.bind(window);
  const selection = window.getSelection.bind(window);
  const pattern = (expression) => Object.assign(expression, {exec: RegExp.prototype.exec});
  const blanks = pattern(/[\s\u200b]+/gu);
  const signs = pattern(/[^\p{L}\p{N}]+/gu);

  const push = (list, value) => {
    list[list.length] = value;
  };
  const squeezed = (text) => replace(blanks, text, '');

  // ---- The kinds of elements that a user can fill in.

  // Each kind represents the element's content as a string: `value` is the current one, `initial`
  // that of the markup. `typed` distinguishes texts from choices.
  const linesOf = (list, line) => {
    let text = '';
    for (let index = 0; index < list.length; ++index) text += line(list[index]);
    return text;
  };
  const optionsThat = (are) => (element) =>
    linesOf(select.options(element), (option) => (are(option) ? `${choice.value(option)}\n` : ''));
  const stated = optionsThat(choice.defaultSelected);
  const enabled = optionsThat((option) => !choice.disabled(option));
  const firstLine = (text) => slice(text, 0, indexOf(text, '\n') + 1);
  const kinds = {
    area: {typed: true, value: area.value, initial: area.defaultValue, form: area.form},
    line: {typed: true, value: input.value, initial: input.defaultValue, form: input.form},
    host: {
      typed: true,
      value: (element) => {
        let text = nodes.textContent(element);
        for (let count =
               elements.querySelectorAll(element, 'img, video, audio, canvas, object').length;
          count > 0; --count)
          text += '\ufffc';
        return text;
      },
      initial: () => '',
      form: (element) => elements.closest(element, 'form'),
    },
    // An editor in a closed shadow tree: its content is not accessible.
    sealed: {typed: true, value: () => '\ufffc', initial: () => '', form: () => null},
    toggle: {
      value: (element) => `${input.checked(element)}`,
      initial: (element) => `${input.defaultChecked(element)}`,
      form: input.form
    },
    scale: {value: input.value, initial: input.defaultValue, form: input.form},
    files: {
      value: (element) => linesOf(input.files(element), (file) => `${fileName(file)}\n`),
      initial: () => '',
      form: input.form,
    },
    menu: {
      value: optionsThat(choice.selected),
      initial: (element) =>
        stated(element) || (select.multiple(element) ? '' : firstLine(enabled(element))),
      form: select.form,
    },
  };
  const inputKinds = {
    __proto__: null,
    checkbox: kinds.toggle,
    radio: kinds.toggle,
    file: kinds.files,
    range: kinds.scale,
    color: kinds.scale,
    hidden: null,
    submit: null,
    button: null,
    reset: null,
    image: null,
  };

  function kindOf(element) {
    if (element instanceof types.HTMLTextAreaElement) return kinds.area;
    if (element instanceof types.HTMLSelectElement) return kinds.menu;
    if (element instanceof types.HTMLInputElement) {
      const kind = inputKinds[input.type(element)];
      return kind === undefined ? kinds.line : kind;
    }
    if (!(element instanceof types.HTMLElement)) return null;
    return html.isContentEditable(element) || documents.designMode(document) === 'on' ?
      kinds.host :
      kinds.sealed;
  }

  // ---- What the user has filled in. A record's `base` is the value that need not be kept: the
  // original one, or the one last sent. `seen` is the value when the user last finished editing,
  // null during the editing.

  const records = new WeakMap();
  let tracked = [];
  let failed = false;

  function track(element, kind, base) {
    const record = {kind, base, seen: null};
    remember(records, element, record);
    push(tracked, new types.WeakRef(element));
    return record;
  }

  function forEachRecord(visit) {
    const alive = [];
    for (let index = 0; index < tracked.length; ++index) {
      const element = deref(tracked[index]);
      if (!element) continue;
      push(alive, tracked[index]);
      visit(element, recall(records, element));
    }
    tracked = alive;
  }

  // Returns whether `now` is still the user's text `before`, ignoring case and punctuation, which
  // the page may have changed.
  function retains(now, before) {
    const left = lower(replace(signs, now, ''));
    const typed = lower(replace(signs, before, ''));
    return !left || !typed || includes(left, typed) || includes(typed, left);
  }

  function isUnsent(element, {kind, base, seen}) {
    if (!nodes.isConnected(element) || (!kind.typed && !kind.form(element))) return false;
    const now = kind.value(element);
    if (now === base || now === kind.initial(element) || (kind.typed && !squeezed(now)))
      return false;
    return seen === null || now === seen || (!!kind.typed && retains(now, seen));
  }

  const innermost = (event) => events.composedPath(event)[0];
  const observers = {
    __proto__: null,
    beforeinput(event) {
      const element = innermost(event);
      const record = recall(records, element);
      if (record) {
        // At the start of each editing: text that is not the user's own becomes the base.
        if (record.seen !== null && !isUnsent(element, record))
          record.base = record.kind.value(element);
        return;
      }
      const kind = kindOf(element);
      if (kind?.typed) track(element, kind, kind === kinds.sealed ? null : kind.value(element));
    },
    // Not always preceded by `beforeinput`: the wheel over a number and date pickers send only
    // this.
    input(event) {
      const element = innermost(event);
      const record = recall(records, element);
      const kind = record ? record.kind : kindOf(element);
      if (!kind?.typed || (kind === kinds.sealed && !(event instanceof types.InputEvent))) return;
      if (record) record.seen = null;
      else track(element, kind, null);
    },
    change(event) {
      const element = innermost(event);
      const kind = kindOf(element);
      if (!kind || kind.typed) return;
      const now = kind.value(element);
      const before = kind === kinds.toggle ? `${!input.checked(element)}` : null;
      (recall(records, element) || track(element, kind, before)).seen = now;
    },
    focusout(event) {
      const element = innermost(event);
      const record = recall(records, element);
      if (record?.kind.typed && record.seen === null) record.seen = record.kind.value(element);
    },
    submit: submitted,
  };

  // ---- Requests and form submissions in progress.

  let pending = 0;
  let undecided = 0;
  let submitting = null;
  let departing = null;

  // Returns the names and values in a request body. `readable` is false for types of body that
  // cannot be read synchronously.
  function partsOf(body) {
    const parts = {names: [], values: [], readable: true};
    const add = (value, name) => {
      push(parts.names, name);
      push(parts.values, value);
    };
    const walk = (value, name) => {
      const names = typeof value === 'object' && value !== null ? keys(value) : null;
      if (!names) add(value, name);
      for (let index = 0; index < names?.length; ++index) walk(value[names[index]], names[index]);
    };
    if (body === null || body === undefined) return parts;
    if (typeof body === 'string') {
      add(body, null);
      try {
        walk(parse(body), null);
      } catch {
        eachParameter(new types.URLSearchParams(body), add);
      }
    } else if (body instanceof types.URLSearchParams) {
      eachParameter(body, add);
    } else if (body instanceof types.FormData) {
      eachField(body, add);
    } else {
      parts.readable = false;
      add(body, null);
    }
    return parts;
  }

  function isCarriedBy(part, name, element, kind, value) {
    const isFile = part instanceof types.File;
    if (kind === kinds.files)
      return isFile && `${fileName(part)}\n` === value &&
        size(part) === size(input.files(element)[0]);
    if (kind === kinds.toggle) {
      const own = input.name(element) || elements.getAttribute(element, 'id');
      return name === own &&
        (`${part}` === value || (input.checked(element) && part === input.value(element)));
    }
    // Match numbers only with elements that take numbers: requests hold many unrelated small ones.
    const takesNumbers = !kind.typed || (kind === kinds.line && input.type(element) === 'number');
    if (typeof part !== 'string' && !(typeof part === 'number' && takesNumbers)) return false;
    const text = squeezed(value);
    return text !== '' && squeezed(`${part}`) === text;
  }

  // Returns the unsent texts and choices that a request carries: those found in its body or, for a
  // body that cannot be read, all of the form being submitted.
  function cargoOf(body) {
    const cargo = [];
    if (tracked.length === 0) return cargo;
    const parts = partsOf(body);
    forEachRecord((element, record) => {
      const {kind} = record;
      if (kind.typed && record.seen === null) record.seen = kind.value(element);
      if (!isUnsent(element, record)) return;
      const value = kind.value(element);
      const form = kind.form(element);
      let isIn = !parts.readable && !!form && form === submitting;
      for (let index = 0; index < parts.values.length && !isIn; ++index) {
        isIn = isCarriedBy(parts.values[index], parts.names[index], element, kind, value);
      }
      if (isIn) push(cargo, {element, record, value});
    });
    return cargo;
  }

  function beginRequest(name, body) {
    const verb = lower(`${name}`);
    if (verb === 'get' || verb === 'head' || verb === 'options') return null;
    const ticket = {cargo: [], over: false};
    ++pending;
    try {
      ticket.cargo = cargoOf(body);
    } catch {
      // Nothing counts as sent then.
    }
    return ticket;
  }

  function endRequest(ticket, arrived) {
    if (!ticket || ticket.over) return;
    ticket.over = true;
    --pending;
    for (let index = 0; arrived && index < ticket.cargo.length; ++index) {
      const {element, record, value} = ticket.cargo[index];
      if (record.kind.value(element) === value) record.base = value;
    }
  }

  function replaceMethod(owner, name, replacement) {
    defineProperty(owner, name, {...getOwnPropertyDescriptor(owner, name), value: replacement});
  }

  function watchFetch() {
    const native = window.fetch;
    replaceMethod(window, 'fetch', function fetch(resource) {
      const options = arguments[1];
      let ticket = null;
      try {
        // A Request is passed unread, because its body can be consumed only once.
        const object = resource instanceof types.Request ? resource : null;
        ticket = beginRequest(
          options?.method ?? (object ? methodOf(object) : 'GET'), options?.body ?? object);
      } catch {
        // The native function reports invalid arguments.
      }
      const answer = apply(native, this, arguments);
      if (!ticket) return answer;
      return then(answer,
        (found) => {
          endRequest(ticket, answers.status(found) < 400 && answers.type(found) !== 'error');
          return found;
        },
        (error) => {
          endRequest(ticket, false);
          throw error;
        });
    });
  }

  function watchXMLHttpRequest() {
    const {open: nativeOpen, send: nativeSend} = XMLHttpRequest.prototype;
    const names = new WeakMap();
    const tickets = new WeakMap();
    replaceMethod(XMLHttpRequest.prototype, 'open', function open(name) {
      const result = apply(nativeOpen, this, arguments);
      // Opening it again aborts the earlier request without an event.
      endRequest(recall(tickets, this), false);
      remember(names, this, name);
      return result;
    });
    replaceMethod(XMLHttpRequest.prototype, 'send', function send(body) {
      const ticket = beginRequest(recall(names, this) ?? 'GET', body);
      if (!ticket) return apply(nativeSend, this, arguments);
      remember(tickets, this, ticket);
      listen(this, 'loadend', () => endRequest(ticket, status(this) >= 200 && status(this) < 400),
        {once: true});
      try {
        return apply(nativeSend, this, arguments);
      } catch (error) {
        endRequest(ticket, false);
        throw error;
      }
    });
  }

  function settleForm(form, withTexts) {
    forEachRecord((element, record) => {
      const {kind} = record;
      if (kind.form(element) === form && (withTexts || !kind.typed))
        record.base = kind.value(element);
    });
  }

  // Records the browser's own submission of a form, which loads a page in this window or another
  // one.
  function depart(form, button) {
    const asked = (name) => lower((button && elements.getAttribute(button, `form${name}`)) ||
      elements.getAttribute(form, name) || '');
    const verb = asked('method');
    const place = asked('target');
    if (verb === 'dialog') return;
    const stays = place && place !== '_self' && place !== '_top' && place !== '_parent';
    if (stays) settleForm(form, true);
    if (stays || verb !== 'post') return;
    departing = form;
    // The page stays loaded if the response is a download or has no content.
    later(() => {
      if (departing === form) departing = null;
    }, 30000);
  }

  function submitted(event) {
    const form = innermost(event);
    settleForm(form, false);
    submitting = form;
    ++undecided;
    // Deferred: whether the page prevents the submission is known only after all its listeners ran.
    later(() => {
      --undecided;
      if (submitting === form) submitting = null;
      if (!events.defaultPrevented(event)) depart(form, submitter(event));
    }, 0);
  }

  function watchForms() {
    const native = HTMLFormElement.prototype.submit;
    replaceMethod(HTMLFormElement.prototype, 'submit', function submit() {
      const result = apply(native, this, arguments);
      depart(this, null);
      return result;
    });
  }

  // Settles a departing form: if the page is restored from the back/forward cache, the form has
  // been sent and the page accepts input again.
  function leave() {
    if (departing) settleForm(departing, true);
    departing = null;
    thaw();
  }

  // ---- The reasons given to the user.

  const reasons = {
    text: {
      __proto__: null,
      ru: 'Отправьте или сотрите введённый текст, затем продолжите обновление.',
      en: 'Send or clear the text you’ve typed, then continue the update.',
      es: 'Envía o borra el texto que has escrito y después continúa la actualización.',
      pt: 'Envie ou apague o texto que você digitou e depois continue a atualização.',
      de: 'Sende den eingegebenen Text ab oder lösche ihn und setze dann das Update fort.',
      fr: 'Envoyez ou effacez le texte que vous avez saisi, puis poursuivez la mise à jour.',
      ja: '入力したテキストを送信するか消去してから、アップデートを続けてください。',
    },
    form: {
      __proto__: null,
      ru: 'Отправьте или сбросьте начатую форму, затем продолжите обновление.',
      en: 'Submit or reset the form you’ve started, then continue the update.',
      es: 'Envía o restablece el formulario que has empezado y después continúa la actualización.',
      pt:
        'Envie ou limpe o formulário que você começou a preencher e depois continue a atualização.',
      de: 'Sende das angefangene Formular ab oder setze es zurück und setze dann das Update fort.',
      fr: 'Envoyez ou réinitialisez le formulaire commencé, puis poursuivez la mise à jour.',
      ja: '入力途中のフォームを送信するかリセットしてから、アップデートを続けてください。',
    },
    request: {
      __proto__: null,
      ru: 'Дождитесь сохранения изменений, затем продолжите обновление.',
      en: 'Wait until your changes have been saved, then continue the update.',
      es: 'Espera a que se guarden los cambios y después continúa la actualización.',
      pt: 'Aguarde até que as alterações sejam salvas e depois continue a atualização.',
      de: 'Warte, bis deine Änderungen gespeichert sind, und setze dann das Update fort.',
      fr: 'Attendez que vos modifications soient enregistrées, puis poursuivez la mise à jour.',
      ja: '変更の保存が終わるのを待ってから、アップデートを続けてください。',
    },
  };

  function sentence(obstacle) {
    const known = reasons[obstacle];
    const inLanguage = (language) => {
      const tag = lower(`${language ?? ''}`);
      const next = slice(tag, 2, 3);
      return next === '' || next === '-' || next === '_' ? known[slice(tag, 0, 2)] : undefined;
    };
    try {
      const element = documents.documentElement(document);
      return (element && inLanguage(elements.getAttribute(element, 'lang'))) ||
        inLanguage(navigator.language) || known.en;
    } catch {
      return known.en;
    }
  }

  function obstacle() {
    if (pending > 0 || undecided > 0 || departing) return 'request';
    let found = failed ? 'text' : null;
    forEachRecord((element, record) => {
      if (found !== 'text' && isUnsent(element, record))
        found = record.kind.typed ? 'text' : 'form';
    });
    return found;
  }

  // ---- Blocking input. Events are stopped in the capture phase. A transparent modal dialog takes
  // the focus, makes the rest of the page inert without a visible change to it, and absorbs
  // scrolling.

  const scrolling = 'wheel mousewheel touchstart touchmove touchend touchcancel'.split(' ');
  const inputs = `
    keydown keypress keyup beforeinput input textInput change search compositionstart
    compositionupdate compositionend cut copy paste beforecut beforecopy beforepaste pointerdown
    pointerup pointermove pointerover pointerout pointerenter pointerleave pointercancel mousedown
    mouseup mousemove mouseover mouseout mouseenter mouseleave click dblclick auxclick contextmenu
    gesturestart gesturechange gestureend dragstart drag dragenter dragover dragleave dragend drop
    submit reset invalid select selectstart focus blur focusin focusout
  `.trim().split(/\s+/);
  const cover = makeCover();
  let frozen = false;
  let thawing = false;
  let before = null;

  function makeCover() {
    try {
      const host = document.createElement('navora-restart-guard');
      // Protects the dialog from the page's style sheets; the host itself generates no box.
      host.style.setProperty('all', 'initial', 'important');
      host.style.setProperty('display', 'contents', 'important');
      const shadow = host.attachShadow({mode: 'closed'});
      const sheet = new CSSStyleSheet();
      sheet.replaceSync(`
        dialog { position: fixed; inset: 0; width: auto; height: auto; max-width: none; max-height: none;
          margin: 0; border: 0; padding: 0; outline: 0; background: transparent; overflow: scroll;
          overscroll-behavior: none; scrollbar-width: none; }
        dialog::-webkit-scrollbar { display: none; }
        dialog::backdrop { display: none; }
        div { height: calc(100% + 1px); }`);
      shadow.adoptedStyleSheets = [sheet];
      const dialog = document.createElement('dialog');
      dialog.append(document.createElement('div'));
      dialog.addEventListener('cancel', (event) => events.preventDefault(event));
      shadow.append(dialog);
      return {host, dialog};
    } catch {
      return null;  // Not an HTML document.
    }
  }

  function block(event) {
    const type = events.type(event);
    const element = innermost(event);
    if (type === 'focus' || type === 'blur' || type === 'focusin' || type === 'focusout') {
      // Focus events of the window itself are not input.
      if (!(element instanceof types.Element)) return;
      events.stopImmediatePropagation(event);
      const enters = type === 'focus' || type === 'focusin';
      if (enters && !thawing && element !== cover?.host) html.blur(element);
      return;
    }
    events.stopImmediatePropagation(event);
    events.preventDefault(event);
    // Preventing the default accepts the drag; the effect "none" refuses it again.
    if (type === 'dragenter' || type === 'dragover') dataTransfer(event).dropEffect = 'none';
  }

  function observe(event) {
    if (!event.isTrusted) return;
    try {
      if (frozen) block(event);
      else observers[events.type(event)]?.(event);
    } catch {
      // Refuse a later restart rather than risk losing a text.
      failed = failed || !frozen;
    }
  }

  function arm() {
    for (let index = 0; index < inputs.length; ++index)
      listen(window, inputs[index], observe, {capture: true});
    for (let index = 0; index < scrolling.length; ++index) {
      listen(window, scrolling[index], observe, {capture: true, passive: true});
    }
    listen(window, 'pagehide', leave, {capture: true});
  }

  function freezePage() {
    if (frozen) return;
    frozen = true;
    try {
      const active = documents.activeElement(document);
      const {anchorNode, anchorOffset, focusNode, focusOffset} = selection();
      before = {active, anchorNode, anchorOffset, focusNode, focusOffset};
      nodes.appendChild(documents.documentElement(document), cover.host);
      dialogs.showModal(cover.dialog);
    } catch {
      if (before?.active instanceof types.HTMLElement) html.blur(before.active);
    }
  }

  function thaw() {
    if (!frozen) return;
    thawing = true;
    try {
      if (cover) {
        dialogs.close(cover.dialog);
        elements.remove(cover.host);
      }
      const {active, anchorNode, anchorOffset, focusNode, focusOffset} = before;
      if (documents.activeElement(document) !== active && active instanceof types.HTMLElement)
        html.focus(active, {preventScroll: true});
      const now = selection();
      if (anchorNode && nodes.isConnected(anchorNode) &&
        (now.anchorNode !== anchorNode || now.focusOffset !== focusOffset)) {
        now.setBaseAndExtent(anchorNode, anchorOffset, focusNode, focusOffset);
      }
    } catch {
      // The page accepts input again even if its focus could not be restored.
    }
    before = null;
    thawing = false;
    frozen = false;
  }

  function prepare() {
    let found = 'text';
    try {
      found = obstacle();
    } catch {
      // A failed check counts as unsaved text.
    }
    if (found) {
      thaw();
      return sentence(found);
    }
    freezePage();
    return undefined;
  }

  watchFetch();
  watchXMLHttpRequest();
  watchForms();
  arm();
  // document.open() keeps the window but removes its listeners.
  new MutationObserver(arm).observe(document, {childList: true});
  defineProperty(window, 'NavoraUpdateGuard', {
    value: freeze({prepare, resume: thaw}),
    writable: true,
    configurable: true,
    enumerable: true,
  });
})();
