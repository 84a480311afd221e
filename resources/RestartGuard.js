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
  // They throw for an object of another type, also where the object belongs to another frame, whose
  // types `instanceof` does not know.
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
  const types = {HTMLElement, MutationObserver, URLSearchParams, WeakRef};
  const documents = taken(Document);
  const nodes = taken(Node);
  const elements = taken(Element);
  const html = taken(HTMLElement);
  const input = taken(HTMLInputElement);
  const area = taken(HTMLTextAreaElement);
  const select = taken(HTMLSelectElement);
  const choice = taken(HTMLOptionElement);
  const dialogs = taken(HTMLDialogElement);
  const frames = taken(HTMLIFrameElement);
  const oldFrames = taken(HTMLFrameElement);
  const events = taken(Event);
  const keyboard = taken(KeyboardEvent);
  const {inputType} = taken(InputEvent);
  const {submitter} = taken(SubmitEvent);
  const {dataTransfer} = taken(DragEvent);
  const {addEventListener: listen} = taken(EventTarget);
  const {method: methodOf, url: urlOf} = taken(Request);
  const answers = taken(Response);
  const {status} = taken(XMLHttpRequest);
  const {name: fileName} = taken(File);
  const {size} = taken(Blob);
  const {get: recall, set: remember} = taken(WeakMap);
  const {has: isIn, add: addTo} = taken(WeakSet);
  const {deref} = taken(WeakRef);
  const {then} = taken(Promise);
  const {observe: watch} = taken(MutationObserver);
  const {toLowerCase: lower, slice, includes, indexOf} = taken(String);
  const {forEach: eachField} = taken(FormData);
  const {forEach: eachParameter} = taken(URLSearchParams);
  const {[Symbol.replace]: replace, test} = taken(RegExp);
  const {escape} = CSS;
  const later = window.setTimeout.bind(window);
  const milliseconds = performance.now.bind(performance);
  const selection = window.getSelection.bind(window);
  const pattern = (expression) => Object.assign(expression, {exec: RegExp.prototype.exec});
  const blanks = pattern(/[\s\u200b]+/gu);
  const ink = pattern(/[^\s\u200b]/u);
  const tags = pattern(/<[^>]*>/gu);
  const signs = pattern(/[^\p{L}\p{N}]+/gu);

  const push = (list, value) => {
    list[list.length] = value;
  };
  const squeezed = (text) => replace(blanks, text, '');
  const isBlank = (text) => !test(ink, text);
  // Returns the result, or `otherwise` if the function throws.
  const attempt = (work, otherwise) => {
    try {
      return work();
    } catch {
      return otherwise;
    }
  };

  // ---- The kinds of elements that a user can fill in.

  // Each kind represents the element's content as a string: `value` is the current one, `initial`
  // that of the markup, which frameworks may change along with the value: it is read once. `typed`
  // distinguishes texts from choices.
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

  const isElement = (object) => attempt(() => nodes.nodeType(object) === 1, false);
  const isHtml = (element) => elements.namespaceURI(element) === 'http://www.w3.org/1999/xhtml';
  const isEditable = (element) =>
    html.isContentEditable(element) || documents.designMode(nodes.ownerDocument(element)) === 'on';

  // Returns null for an element that the user cannot fill in.
  function kindOf(element) {
    if (!isElement(element) || !isHtml(element)) return null;
    switch (elements.localName(element)) {
      case 'textarea':
        return kinds.area;
      case 'select':
        return kinds.menu;
      case 'input': {
        const kind = inputKinds[input.type(element)];
        return kind === undefined ? kinds.line : kind;
      }
      default:
        return isEditable(element) ? kinds.host : null;
    }
  }

  const innermost = (event) => events.composedPath(event)[0];

  // Returns the element that the user fills in by the event. Some events name an element inside of
  // the editor.
  function fieldOf(event) {
    let element = innermost(event);
    if (isElement(element) && recall(records, element)) return element;
    if (kindOf(element) !== kinds.host) return element;
    const whole = documents.body(nodes.ownerDocument(element));
    if (whole && nodes.contains(element, whole)) return whole;
    for (let outer = element; outer && kindOf(outer) === kinds.host;
      outer = nodes.parentElement(outer)) {
      element = outer;
      if (element === whole) break;
    }
    return element;
  }

  // ---- What the user has filled in, a record for each element that was ever focused or changed:
  //
  //   base       the value that need not be kept: the original one, or the one last sent
  //   initial    of a choice: the value of the markup
  //   edited     whether the user has changed the element
  //   edits      how often
  //   seen       the value when the user last finished editing; null during the editing
  //   unsent     the value that would be lost, as found by the last look; null for none
  //   unclear    the page has sent pieces of the text, and does not say whether all of it is stored
  //   swallowed  a text that the page removed from the element while it was typed
  //   failed     a text that the page removed from the element and could not send
  //   delivered  the user's action whose request brought the text to the service; see beginAction
  //   changed    the user's action that changed a choice
  //   place      where to look for the element's successor when the page has removed it

  const records = new WeakMap();
  let tracked = [];

  function track(element, kind, base) {
    const record = {
      element: new types.WeakRef(element),
      kind,
      base,
      initial: kind.typed ? null : kind.initial(element),
      edited: false,
      edits: 0,
      seen: base,
      unsent: null,
      unclear: false,
      swallowed: null,
      failed: null,
      delivered: null,
      changed: null,
      place: null,
    };
    remember(records, element, record);
    push(tracked, record);
    return record;
  }

  // Calls `visit` with each record and its element, which is null if the page does not show it.
  function forEachRecord(visit) {
    const kept = [];
    for (let index = 0; index < tracked.length; ++index) {
      const record = tracked[index];
      if (!deref(record.element) && record.unsent === null && !isLost(record)) continue;
      push(kept, record);
      visit(record, shownElement(record));
    }
    tracked = kept;
  }

  function shownElement({element: reference}) {
    const element = deref(reference);
    // A document without a view belongs to a frame that was removed or shows another page.
    return element && nodes.isConnected(element) &&
        documents.defaultView(nodes.ownerDocument(element)) ?
      element :
      null;
  }

  const isLost = ({swallowed, failed}) => swallowed !== null || failed !== null;

  const letters = (text) => lower(replace(signs, text, ''));

  // Returns whether `now` is still the user's text `before`, ignoring case and punctuation, which
  // the page may have changed.
  function retains(now, before) {
    const left = letters(now);
    const typed = letters(before);
    return !left || !typed || includes(left, typed) || includes(typed, left);
  }

  // Returns whether all of `text` is in `now`.
  function holds(now, text) {
    const typed = letters(text);
    return typed ? includes(letters(now), typed) : includes(squeezed(now), squeezed(text));
  }

  function isUnsent(element, {kind, base, initial, edited, seen}, now) {
    if (!edited || now === base) return false;
    if (!kind.typed) return !!kind.form(element) && now !== initial && now === seen;
    return !isBlank(now) && (seen === null || now === seen || retains(now, seen));
  }

  // Looks at the element, and returns why its content keeps the application from restarting: 'text'
  // or 'form' if the user can send it or clear it, 'reload' if the guard would not notice that, or
  // null.
  function obstacleOf(record) {
    const {kind} = record;
    const element = shownElement(record);
    if (!element) return kind.typed ? obstacleOfRemoved(record) : null;
    const now = kind.value(element);
    if (record.swallowed !== null && holds(now, record.swallowed)) record.swallowed = null;
    if (record.failed !== null && holds(now, record.failed.text)) record.failed = null;
    record.unsent = isUnsent(element, record, now) ? now : null;
    if (isLost(record)) return 'reload';
    if (record.unsent === null) {
      record.unclear = false;
      return null;
    }
    if (record.unclear || kind === kinds.sealed) return 'reload';
    return kind.typed ? 'text' : 'form';
  }

  // The page may keep the text of an element that it has removed, until it shows the element again.
  function obstacleOfRemoved(record) {
    if (isLost(record)) return 'reload';
    if (record.unsent === null) return null;
    if (record.delivered === action) {
      settle(record, record.unsent);
      return null;
    }
    const {selector, peers, address} = record.place;
    if (!selector || location.href !== address) return 'reload';
    const heirs = documents.querySelectorAll(document, selector);
    if (heirs.length < peers) return 'reload';
    let areEmpty = true;
    for (let index = 0; index < heirs.length; ++index) {
      const heir = heirs[index];
      const kind = kindOf(heir);
      const now = kind?.typed ? kind.value(heir) : '\ufffc';
      if (holds(now, record.unsent)) return inherit(record, heir, kind, now);
      areEmpty = areEmpty && isBlank(now);
    }
    if (!areEmpty) return 'reload';
    record.unsent = null;
    return null;
  }

  function inherit(record, heir, kind, now) {
    if (recall(records, heir)?.edited) {
      // The text has got a record of its own.
      record.unsent = null;
      return null;
    }
    remember(records, heir, record);
    record.element = new types.WeakRef(heir);
    record.kind = kind;
    record.base = null;
    record.seen = now;
    return obstacleOf(record);
  }

  // Returns how to find an element that the page creates anew in place of this one.
  function placeOf(element, kind) {
    const place = {
      name: elements.getAttribute(element, 'name'),
      id: elements.getAttribute(element, 'id'),
      address: location.href,
      selector: null,
      peers: 0,
    };
    if (kind === kinds.sealed || nodes.getRootNode(element) !== document) return place;
    const marks = ['id', 'name', 'aria-label', 'placeholder', 'data-placeholder'];
    for (let index = 0; index < marks.length && !place.selector; ++index) {
      const mark = elements.getAttribute(element, marks[index]);
      if (mark)
        place.selector = `${elements.localName(element)}[${marks[index]}="${escape(mark)}"]`;
    }
    if (place.selector) place.peers = documents.querySelectorAll(document, place.selector).length;
    return place;
  }

  // What `record` had not sent need not be kept any more.
  function settle(record, value) {
    record.base = value;
    record.unsent = null;
    record.unclear = false;
    record.swallowed = null;
    record.failed = null;
  }

  // Records that the user is about to change a text, or has changed it: only before the change is
  // its value the page's.
  function edit(element, kind, isBefore) {
    const isOfPage = isBefore && kind !== kinds.sealed;
    let record = recall(records, element) ??
      track(element, kind, (isOfPage ? kind.value : kind.initial)(element));
    if (record.seen !== null || !record.place) {
      // The element may be the successor of one with a draft.
      forEachRecord((other, shown) => {
        if (!shown && other.kind.typed) obstacleOf(other);
      });
      record = recall(records, element);
      const now = kind.value(element);
      // Text that is not the user's own need not be kept.
      if (isOfPage && !isUnsent(element, record, now)) record.base = now;
      record.place = placeOf(element, kind);
    }
    // Not in `input` alone: an editor may cancel `beforeinput` or a key and change itself.
    record.seen = null;
    record.edited = true;
    ++record.edits;
    return record;
  }

  // The look after an edit, when the page has handled its event.
  let looking = null;
  let isLookDue = false;

  function look() {
    if (!looking) return;
    const {record, typed} = looking;
    looking = null;
    const element = shownElement(record);
    if (typed !== null && element && isBlank(record.kind.value(element)) &&
      !isUnderWay(record, element))
      record.swallowed = typed;
    obstacleOf(record);
  }

  // `typed` is the value that an insertion has just produced, null after another event.
  function lookLater(record, typed) {
    if (looking && (looking.record !== record || looking.typed !== null)) look();
    looking = {record, typed};
    if (isLookDue) return;
    isLookDue = true;
    later(() => {
      isLookDue = false;
      attempt(look);
    }, 0);
  }

  // The user's actions, counted. What an action's request has sent is settled when the page removes
  // the editor in consequence: before the user's next action.
  let action = 0;
  // Whether the last action was a click or Enter, and not typing.
  let isCommand = false;

  function beginAction(command) {
    if (looking) look();
    for (let index = 0; index < underWay.length; ++index) {
      const {cargo} = underWay[index];
      for (let each = 0; each < cargo.length; ++each) {
        if (!shownElement(cargo[each].record)) cargo[each].isRemoved = true;
      }
    }
    forEachDelivered((record) => {
      if (!shownElement(record)) settle(record, record.unsent);
    });
    ++action;
    isCommand = command;
  }

  let deliveries = [];
  function forEachDelivered(visit) {
    const all = deliveries;
    deliveries = [];
    for (let index = 0; index < all.length; ++index) {
      if (all[index].delivered === action) visit(all[index]);
    }
  }

  const nameOfKey = pattern(/^[A-Z][A-Za-z0-9]+$/u);
  const editingKeys = {
    __proto__: null,
    Enter: true,
    Backspace: true,
    Delete: true,
    Process: true,
    Unidentified: true,
  };

  function editing(event) {
    const element = fieldOf(event);
    const kind = kindOf(element);
    if (kind?.typed) lookLater(edit(element, kind, true), null);
  }

  const observers = {
    __proto__: null,
    focusin(event) {
      const element = fieldOf(event);
      const kind = kindOf(element);
      if (kind && !recall(records, element)) track(element, kind, kind.value(element));
    },
    // The focus may have moved into a frame.
    blur(event) {
      if (!isElement(innermost(event))) armFrames(document);
    },
    mousedown: () => beginAction(true),
    keydown(event) {
      const key = keyboard.key(event);
      beginAction(key === 'Enter');
      if (!test(nameOfKey, key) || editingKeys[key]) editing(event);
    },
    keyup() {
      if (looking) look();
    },
    compositionstart: editing,
    paste: editing,
    cut: editing,
    drop: editing,
    beforeinput(event) {
      const element = fieldOf(event);
      const kind = recall(records, element)?.kind ?? kindOf(element) ?? kinds.sealed;
      if (kind.typed) lookLater(edit(element, kind, true), null);
    },
    // Not always preceded by `beforeinput`: the wheel over a number and date pickers send only
    // this.
    input(event) {
      const element = fieldOf(event);
      const change = attempt(() => inputType(event), null);
      const kind = recall(records, element)?.kind ?? kindOf(element) ??
        (change === null ? null : kinds.sealed);
      if (!kind?.typed) return;
      // The line that Enter begins belongs to its key.
      if (change !== 'insertLineBreak' && change !== 'insertParagraph') beginAction(false);
      const record = edit(element, kind, false);
      const now = kind.value(element);
      // In case the page removes the element at once.
      record.unsent = isUnsent(element, record, now) ? now : null;
      const inserts = change !== null && slice(change, 0, 6) === 'insert' && !isBlank(now);
      lookLater(record, inserts ? now : null);
    },
    change(event) {
      const element = innermost(event);
      const kind = kindOf(element);
      if (!kind || kind.typed) return;
      const record = recall(records, element) ??
        track(element, kind, kind === kinds.toggle ? `${!input.checked(element)}` : null);
      record.edited = true;
      record.changed = action;
      record.seen = kind.value(element);
      if (kind !== kinds.toggle || input.type(element) !== 'radio') return;
      // The other buttons of the group have changed without an event.
      forEachRecord((other, button) => {
        if (button && other.kind === kind && input.name(button) === input.name(element) &&
          input.form(button) === input.form(element))
          other.seen = kind.value(button);
      });
    },
    focusout(event) {
      const element = fieldOf(event);
      const record = isElement(element) ? recall(records, element) : null;
      if (record?.kind.typed && record.seen === null) record.seen = record.kind.value(element);
    },
    submit: submitted,
    // What the reset replaces is cleared. A field that keeps its value, because the page had made
    // that the default as well, keeps the user's text.
    reset(event) {
      const form = innermost(event);
      const before = [];
      forEachRecord((record, element) => {
        if (element && record.kind.form(element) === form)
          push(before, {record, element, value: record.kind.value(element)});
      });
      later(() => {
        for (let index = 0; index < before.length; ++index) {
          const {record, element, value} = before[index];
          const now = record.kind.value(element);
          if (now === value) continue;
          settle(record, now);
          record.seen = now;
        }
      }, 0);
    },
  };

  // Elements whose events the guard failed to handle. What they hold is unknown until they are
  // empty.
  let doubted = [];

  function doubt(event) {
    const element = attempt(() => fieldOf(event), null);
    const type = events.type(event);
    const isText = type === 'input' || type === 'beforeinput';
    if (!isText && !attempt(() => kindOf(element), true)) return;
    for (let index = 0; index < doubted.length; ++index) {
      if (doubted[index] === element) return;
    }
    push(doubted, element);
  }

  function hasDoubts() {
    const left = [];
    for (let index = 0; index < doubted.length; ++index) {
      const element = doubted[index];
      const isEmpty = attempt(() => {
        const kind = kindOf(element);
        return !!kind?.typed && nodes.isConnected(element) && isBlank(kind.value(element));
      }, false);
      if (!isEmpty) push(left, element);
    }
    doubted = left;
    return left.length > 0;
  }

  // ---- Requests and form submissions in progress.
  //
  // A request has sent a text only if it arrived and is known to be about that text's field:
  // because the field's form is being submitted, or because the body names the field. The same
  // words elsewhere may be a spelling check, a suggestion, or another field's.

  // The requests under way. Each carries the texts and choices that its body contains.
  let underWay = [];
  let undecided = 0;
  let submitting = null;
  let departing = null;
  // After so many milliseconds, a request is not expected to end.
  const patience = 20000;

  // Returns the names and values in a request body; `squeezed` and `plain` are for carriageOf().
  // `readable` is false for types of body that cannot be read synchronously.
  function partsOf(body) {
    const parts = {names: [], values: [], squeezed: [], plain: [], readable: true};
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
      return parts;
    }
    const isForm = attempt(() => {
      eachField(body, add);
      return true;
    }, false);
    const isRead = isForm || attempt(() => {
      eachParameter(body, add);
      return true;
    }, false);
    if (isRead) return parts;
    parts.readable = false;
    add(body, null);
    return parts;
  }

  // Returns whether a name in a body is that of the field, and of no other field with the same
  // words.
  function isNameOf(name, element, {kind, place}, text) {
    if (name === null) return false;
    const isOwn = element ? name === elements.getAttribute(element, 'name') ||
        name === elements.getAttribute(element, 'id') :
                            name === place?.name || name === place?.id;
    if (!isOwn || !kind.typed) return isOwn;
    const page = element ? nodes.ownerDocument(element) : document;
    const peers =
      documents.querySelectorAll(page, `[name="${escape(name)}"], [id="${escape(name)}"]`);
    for (let index = 0; index < peers.length; ++index) {
      const other = peers[index] === element ? null : kindOf(peers[index]);
      if (other?.typed && squeezed(other.value(peers[index])) === text) return false;
    }
    return true;
  }

  // Returns how a value in a body carries the content of a field: 'own' under its name, 'whole'
  // under another one, 'piece' or null.
  function carriageOf(parts, index, element, record, value, text) {
    const part = parts.values[index];
    const name = parts.names[index];
    const {kind} = record;
    if (kind === kinds.files) {
      const isFile = attempt(() => `${fileName(part)}\n` === value, false) &&
        size(part) === size(input.files(element)[0]);
      return isFile ? 'own' : null;
    }
    if (kind === kinds.toggle) {
      const isCarried = `${part}` === value ||
        (input.checked(element) ? part === input.value(element) : input.type(element) === 'radio');
      return isCarried && isNameOf(name, element, record, value) ? 'own' : null;
    }
    // Match numbers only with elements that take numbers: requests hold many unrelated small ones.
    const takesNumbers =
      !kind.typed || (kind === kinds.line && !!element && input.type(element) === 'number');
    if (typeof part !== 'string' && !(typeof part === 'number' && takesNumbers)) return null;
    const carried = parts.squeezed[index] ??= squeezed(`${part}`);
    if (carried === text) return isNameOf(name, element, record, text) ? 'own' : 'whole';
    if (!kind.typed || typeof part !== 'string') return null;
    const plain = parts.plain[index] ??= squeezed(replace(tags, part, ''));
    return isPiece(carried, plain, text) ? 'piece' : null;
  }

  // Returns whether a value looks like a part of the text, or like the text in other clothes: with
  // markup or a little more around it. `plain` is the value without markup. A few letters or a long
  // value have too much in common with any text.
  function isPiece(carried, plain, text) {
    return (carried.length >= 8 && includes(text, carried)) ||
      (plain.length < 2 * text.length && includes(plain, text));
  }

  // Returns the unsent texts and choices that a body carries, and how: `isKnown` if it is certain
  // that the request is about that field, `isWhole` if it has all of the text, otherwise a piece of
  // it.
  function cargoOf(body, route) {
    const cargo = [];
    if (tracked.length === 0) return cargo;
    const parts = partsOf(body);
    forEachRecord((record, element) => {
      const {kind} = record;
      if (kind.typed && element && record.seen === null) record.seen = kind.value(element);
      obstacleOf(record);
      const isSubmitted = !!element && !!submitting && kind.form(element) === submitting;
      const value = record.unsent ?? record.failed?.text ?? (isSubmitted ? record.swallowed : null);
      if (value === null) return;
      const found = {__proto__: null};
      const text = squeezed(value);
      for (let index = 0; index < parts.values.length; ++index) {
        const how = carriageOf(parts, index, element, record, value, text);
        if (how) found[how] = true;
      }
      const isWhole = !!found.own || !!found.whole;
      const isTaken = isSubmitted && (isWhole || !parts.readable || record.swallowed !== null);
      const isRepeated = isWhole && record.failed?.route === route;
      // A choice that is stored at once.
      const isPrompt = isWhole && !kind.typed && record.changed === action;
      if (isWhole || isTaken || found.piece || (!parts.readable && kind === kinds.host)) {
        push(cargo, {
          record,
          value,
          text,
          edits: record.edits,
          isNamed: !!found.own,
          isSubmitted,
          isWhole,
          isKnown: isTaken || isRepeated || isPrompt || !!found.own,
          isAlone: true,
          isRemoved: false,
        });
      }
    });
    distinguish(cargo);
    return cargo;
  }

  // The same words may be in two fields: only a name or a submission tells which of them is sent.
  function distinguish(cargo) {
    for (let index = 0; index < cargo.length; ++index) {
      const one = cargo[index];
      for (let other = 0; other < cargo.length && one.record.kind.typed; ++other) {
        const {record, text, isNamed, isSubmitted} = cargo[other];
        if (other === index || !record.kind.typed || text !== one.text) continue;
        one.isAlone = false;
        if ((isNamed || isSubmitted) && !one.isSubmitted) one.isKnown = false;
      }
    }
  }

  function isUnderWay(record, element) {
    if (submitting && record.kind.form(element) === submitting) return true;
    for (let index = 0; index < underWay.length; ++index) {
      const {cargo} = underWay[index];
      for (let each = 0; each < cargo.length; ++each) {
        if (cargo[each].record === record) return true;
      }
    }
    return false;
  }

  function beginRequest(name, body, place) {
    const verb = lower(`${name}`);
    if (verb === 'get' || verb === 'head' || verb === 'options') return null;
    const route = `${verb} ${attempt(() => `${place}`, '')}`;
    const ticket = {cargo: [], route, action, isCommand, since: milliseconds()};
    push(underWay, ticket);
    // If it fails, nothing counts as sent.
    attempt(() => {
      ticket.cargo = cargoOf(body, route);
    });
    return ticket;
  }

  function endRequest(ticket, arrived) {
    if (!ticket) return;
    const others = [];
    for (let index = 0; index < underWay.length; ++index) {
      if (underWay[index] !== ticket) push(others, underWay[index]);
    }
    if (others.length === underWay.length) return;
    underWay = others;
    for (let index = 0; index < ticket.cargo.length; ++index) {
      attempt(() => (arrived ? deliver : giveBack)(ticket, ticket.cargo[index]));
    }
  }

  function deliver(ticket, {record, value, edits, isWhole, isKnown, isAlone, isRemoved}) {
    const element = shownElement(record);
    const isSame = element ? record.kind.value(element) === value : record.edits === edits;
    const isElsewhere = isWhole && record.failed?.action === ticket.action;
    if (record.failed !== null && (isKnown || isElsewhere)) record.failed = null;
    if (record.swallowed !== null && isKnown && record.edits === edits) record.swallowed = null;
    if (isKnown && isSame) {
      settle(record, value);
    } else if (isWhole && isAlone && ticket.isCommand && record.edits === edits) {
      if (!element && (isRemoved || ticket.action === action)) {
        settle(record, value);
      } else if (ticket.action === action) {
        record.delivered = action;
        push(deliveries, record);
      }
    }
    if (!isKnown && element && isSame) record.unclear = true;
  }

  // A text that was in the editor when it was sent, is not there any more and has not arrived.
  function giveBack(ticket, {record, value, edits, isWhole}) {
    const element = shownElement(record);
    const isGone = !!element && record.edits === edits && isBlank(record.kind.value(element));
    if (isWhole && ticket.isCommand && isGone && record.delivered !== ticket.action)
      record.failed = {text: value, route: ticket.route, action: ticket.action};
  }

  // Messages that are never answered: the page may store pieces of a document by them.
  function noteMessage(body) {
    const cargo = attempt(() => cargoOf(body, null), []);
    for (let index = 0; index < cargo.length; ++index) cargo[index].record.unclear = true;
  }

  const replacements = new WeakSet();

  function replaceMethod(owner, name, make) {
    const described = getOwnPropertyDescriptor(owner, name);
    const native = described?.value;
    // A frame may keep its window for another document.
    if (typeof native !== 'function' || isIn(replacements, native)) return;
    const replacement = make(native);
    addTo(replacements, replacement);
    defineProperty(owner, name, {...described, value: replacement});
  }

  function watchFetch(view) {
    replaceMethod(view, 'fetch', (native) => function fetch(resource) {
      const options = arguments[1];
      let ticket = null;
      try {
        // A Request is passed unread, because its body can be consumed only once.
        const method = attempt(() => methodOf(resource), null);
        ticket = beginRequest(options?.method ?? method ?? 'GET',
          options?.body ?? (method === null ? null : resource),
          method === null ? resource : urlOf(resource));
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

  function watchXMLHttpRequest(view) {
    const requests = new WeakMap();
    const tickets = new WeakMap();
    const owner = view.XMLHttpRequest.prototype;
    replaceMethod(owner, 'open', (native) => function open(name, place) {
      const result = apply(native, this, arguments);
      // Opening it again aborts the earlier request without an event.
      endRequest(recall(tickets, this), false);
      remember(requests, this, {name, place});
      return result;
    });
    replaceMethod(owner, 'send', (native) => function send(body) {
      const request = recall(requests, this);
      const ticket = beginRequest(request?.name ?? 'GET', body, request?.place);
      if (!ticket) return apply(native, this, arguments);
      remember(tickets, this, ticket);
      listen(this, 'loadend', () => endRequest(ticket, status(this) >= 200 && status(this) < 400),
        {once: true});
      try {
        return apply(native, this, arguments);
      } catch (error) {
        endRequest(ticket, false);
        throw error;
      }
    });
  }

  function watchMessages(view) {
    replaceMethod(view.WebSocket.prototype, 'send', (native) => function send(body) {
      noteMessage(body);
      return apply(native, this, arguments);
    });
  }

  function settleForm(form, withTexts) {
    forEachRecord((record, element) => {
      const {kind} = record;
      if (element && kind.form(element) === form && (withTexts || !kind.typed))
        settle(record, kind.value(element));
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
    if (looking) look();
    isCommand = true;
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

  function watchForms(view) {
    replaceMethod(view.HTMLFormElement.prototype, 'submit', (native) => function submit() {
      const result = apply(native, this, arguments);
      depart(this, null);
      return result;
    });
  }

  // Settles a departing form: if the page is restored from the back/forward cache, the form has
  // been sent and the page accepts input again.
  function leave(event) {
    const view = events.currentTarget(event);
    const isWhole = view === window;
    if (departing && (isWhole || documents.defaultView(nodes.ownerDocument(departing)) === view)) {
      settleForm(departing, true);
      departing = null;
    }
    if (isWhole) thaw();
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
    // A request has been under way for long.
    stuck: {
      __proto__: null,
      ru:
        'Сохранение затянулось. Перезагрузите страницу, если оно не закончится, и продолжите обновление.',
      en: 'Saving is taking long. If it doesn’t end, reload the page, and continue the update.',
      es:
        'Se tarda mucho en guardar. Si no termina, recarga la página y continúa la actualización.',
      pt:
        'Está demorando para salvar. Se não terminar, recarregue a página e continue a atualização.',
      de:
        'Das Speichern dauert lange. Endet es nicht, lade die Seite neu und setze das Update fort.',
      fr:
        'L’enregistrement est long. S’il ne finit pas, rechargez la page et poursuivez la mise à jour.',
      ja:
        '保存に時間がかかっています。終わらない場合は、ページを再読み込みしてからアップデートを続けてください。',
    },
    // The guard would not notice that the user's input is saved.
    reload: {
      __proto__: null,
      ru: 'Убедитесь, что введённое сохранено, перезагрузите страницу и продолжите обновление.',
      en: 'Make sure that your changes are saved, reload the page, and continue the update.',
      es:
        'Comprueba que los cambios estén guardados, recarga la página y continúa la actualización.',
      pt: 'Verifique se as alterações foram salvas, recarregue a página e continue a atualização.',
      de:
        'Stelle sicher, dass alles gespeichert ist, lade die Seite neu und setze das Update fort.',
      fr: 'Vérifiez que tout est enregistré, rechargez la page et poursuivez la mise à jour.',
      ja:
        '入力内容が保存されていることを確認し、ページを再読み込みしてからアップデートを続けてください。',
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

  function requestObstacle() {
    if (undecided > 0 || departing) return 'request';
    let found = null;
    for (let index = 0; index < underWay.length; ++index) {
      const {since, action: began} = underWay[index];
      const isLate = milliseconds() - since > patience;
      // A connection that the page holds open from its start has nothing of the user's in it.
      if (isLate && began === 0) continue;
      if (!isLate) return 'request';
      found = 'stuck';
    }
    return found;
  }

  const urgency = {__proto__: null, text: 3, reload: 2, form: 1};

  function obstacle() {
    const ofRequest = requestObstacle();
    if (ofRequest) return ofRequest;
    armFrames(document);
    let found = hasDoubts() ? 'reload' : null;
    forEachRecord((record) => {
      const other = obstacleOf(record);
      if (other && (!found || urgency[other] > urgency[found])) found = other;
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
  const armed = new WeakSet();
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
      if (!isElement(element)) return;
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
      // Refuse a restart rather than risk losing a text.
      if (!frozen) attempt(() => doubt(event));
    }
  }

  function frameLoaded(event) {
    attempt(() => armFrame(innermost(event)));
  }

  function arm(view) {
    const page = view.document;
    for (let index = 0; index < inputs.length; ++index)
      listen(view, inputs[index], observe, {capture: true});
    for (let index = 0; index < scrolling.length; ++index) {
      listen(view, scrolling[index], observe, {capture: true, passive: true});
    }
    listen(view, 'pagehide', leave, {capture: true});
    listen(page, 'load', frameLoaded, {capture: true});
    if (!isIn(armed, page)) {
      addTo(armed, page);
      watchFetch(view);
      watchXMLHttpRequest(view);
      watchMessages(view);
      watchForms(view);
      // document.open() keeps the window but removes its listeners.
      watch(new types.MutationObserver(() => arm(view)), page, {childList: true});
    }
    armFrames(page);
  }

  // The application runs this script in the top frame only, which reaches the frames of its origin.
  function armFrames(page) {
    const all = documents.querySelectorAll(page, 'iframe, frame');
    for (let index = 0; index < all.length; ++index) attempt(() => armFrame(all[index]));
  }

  function armFrame(element) {
    const page = attempt(() => frames.contentDocument(element), null) ??
      attempt(() => oldFrames.contentDocument(element), null);
    const view = page && documents.defaultView(page);
    if (view) arm(view);
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
    let found = 'reload';
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

  arm(window);
  defineProperty(window, 'NavoraUpdateGuard', {
    value: freeze({prepare, resume: thaw}),
    writable: true,
    configurable: true,
    enumerable: true,
  });
})();
