// Random histories of editing and sending, each with a guard of its own in a frame of its own,
// against a model of what the user has typed and the page has not taken. Events of the engine
// come from document.execCommand, from focus() and from requestSubmit(); the network and the
// clock are played.

function randomNumbers(seed) {
  let state = seed;
  return (limit) => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return Math.floor(state / 4294967296 * limit);
  };
}

class History {
  constructor(guard, seed) {
    this.pick = randomNumbers(seed);
    this.frame = document.createElement('iframe');
    document.body.append(this.frame);
    this.view = this.frame.contentWindow;
    this.page = this.view.document;
    this.page.open();
    this.page.write(
      `<!doctype html><form id="first"><textarea id="controlled" name="note"></textarea>
      <input id="line" name="reply"></form>
      <form id="second"><input id="other" name="reply"><div id="rich" contenteditable></div></form>
      <div id="loose" contenteditable></div><input id="search">`);
    this.page.close();
    this.later = [];
    this.view.setTimeout = (work) => this.later.push(work);
    this.view.fetch = () => new Promise((resolve, reject) => {
      this.answer = (arrived) =>
        arrived ? resolve(new this.view.Response('', {status: 200})) : reject(new Error('offline'));
    });
    this.view.eval(guard);
    this.fields = new Map();
    for (const id of ['controlled', 'line', 'other', 'rich', 'loose']) {
      // `doubt` is the case, if any, in which the guard may take a text for unsent.
      this.fields.set(
        id, {element: this.page.getElementById(id), isUnsent: false, doubt: null, taken: null});
    }
    this.mirror(this.fields.get('controlled').element);
    this.steps = [];
  }

  // As frameworks do that control a field.
  mirror(element) {
    element.addEventListener('input', () => {
      element.defaultValue = element.value;
    });
  }

  read({element}) {
    return element.value ?? element.textContent;
  }

  // The page's own change.
  write({element}, text) {
    if ('value' in element) element.value = text;
    else element.textContent = text;
    if (element.id === 'controlled') element.defaultValue = text;
  }

  async settle() {
    await null;
    await null;
    await null;
    while (this.later.length > 0) this.later.shift()();
    await null;
  }

  some() {
    const shown = [...this.fields.values()].filter((field) => field.element.isConnected);
    const field = shown[this.pick(shown.length)];
    this.steps.push(`${this.steps.pop()} ${field.element.id}`);
    return field;
  }

  select({element}, isAll) {
    element.focus();
    if ('value' in element) {
      element.setSelectionRange(isAll ? 0 : element.value.length, element.value.length);
      return;
    }
    this.view.getSelection().selectAllChildren(element);
    if (!isAll) this.view.getSelection().collapseToEnd();
  }

  async request(body, arrives, duringIt = () => {}) {
    const end = this.view.fetch('/api', {method: 'POST', body: JSON.stringify(body)});
    duringIt();
    this.answer(arrives);
    await end.catch(() => {});
  }

  operations = {
    type() {
      const field = this.some();
      const word = ['ok', 'thanks', 'hello world', 'Übung 7', '👍'][this.pick(5)];
      this.select(field, false);
      this.page.execCommand('insertText', false, word);
      field.isUnsent = true;
      field.doubt = null;
    },
    erase() {
      const field = this.some();
      if (!this.read(field)) return;
      this.select(field, true);
      this.page.execCommand('delete');
      field.isUnsent = false;
      field.doubt = null;
    },
    blur() {
      this.page.activeElement?.blur();
    },
    // The page submits a form by a request of its own.
    async submit() {
      const form = this.page.getElementById(['first', 'second'][this.pick(2)]);
      const inside = [...this.fields.values()].filter(({element}) => form.contains(element));
      const arrives = this.pick(3) > 0;
      const empties = arrives && this.pick(2) > 0;
      const body = inside.map((field) => this.read(field));
      let end = null;
      const send = (event) => {
        event.preventDefault();
        end = this.request(body, arrives);
      };
      form.addEventListener('submit', send, {once: true});
      form.requestSubmit();
      await end;
      for (const field of inside) {
        if (arrives) field.isUnsent = false;
        if (empties) this.write(field, '');
      }
    },
    // The page stores one field under its name, or under a name that says nothing.
    async store() {
      const field = this.some();
      const text = this.read(field);
      const name = field.element.id;
      const arrives = this.pick(3) > 0;
      await this.request({[name]: text}, arrives);
      if (arrives && text.trim()) field.isUnsent = false;
    },
    async storeByName() {
      const field = this.some();
      const name = field.element.getAttribute('name');
      const text = this.read(field);
      if (!name || !text.trim()) return;
      await this.request({[name]: text}, true);
      // Which of two fields with the name and the words was sent is not known.
      const isAmbiguous = [...this.fields.values()].some((other) => other !== field &&
          other.element.getAttribute('name') === name && this.read(other) === text);
      if (isAmbiguous && field.isUnsent) field.doubt = 'ambiguous';
      field.isUnsent = false;
    },
    async check() {
      await this.request({words: this.read(this.some()), status: 'ok'}, true);
    },
    async checkHalf() {
      const field = this.some();
      const text = this.read(field);
      await this.request({[field.element.id]: text.slice(0, text.length / 2)}, true);
    },
    take() {
      const field = this.some();
      const text = this.read(field);
      if (text) field.taken = {text, isUnsent: field.isUnsent};
      this.write(field, '');
      field.isUnsent = false;
      field.doubt = null;
    },
    giveBack() {
      const field = this.some();
      if (!field.taken || this.read(field)) return;
      this.write(field, field.taken.text);
      field.isUnsent = field.taken.isUnsent;
      // It was sent, but the user has typed and erased other words since.
      if (!field.isUnsent) field.doubt = 'sent text that came back';
    },
    reset() {
      const form = this.page.getElementById(['first', 'second'][this.pick(2)]);
      form.reset();
      for (const field of this.fields.values()) {
        const isReset = form.contains(field.element) && 'value' in field.element;
        if (isReset && !this.read(field)) field.isUnsent = false;
      }
    },
    // The page shows another view, and comes back with the draft or without.
    leave() {
      if ([...this.fields.values()].filter(({element}) => element.isConnected).length < 2) return;
      const field = this.some();
      // Stands for the click of the user, which no script can make.
      this.page.getElementById('search').focus();
      this.page.execCommand('insertText', false, 'x');
      this.page.execCommand('delete');
      if (this.pick(2) === 0) this.write(field, '');
      // What it had emptied in the same moment may be a draft as well.
      field.draft = field.element.isConnected ? this.read(field) : '';
      field.home = {parent: field.element.parentNode, next: field.element.nextSibling};
      if (!field.draft && field.isUnsent) field.doubt = 'emptied and removed at once';
      field.element.remove();
      if (!field.draft) field.isUnsent = false;
    },
    comeBack() {
      const away = [...this.fields.values()].find((field) => !field.element.isConnected);
      if (!away) return;
      const made = away.element.cloneNode(false);
      const {parent, next} = away.home;
      parent.insertBefore(made, next?.parentNode === parent ? next : null);
      away.element = made;
      if (made.id === 'controlled') this.mirror(made);
      const isRestored = this.pick(2) > 0;
      this.write(away, isRestored ? away.draft : '');
      if (!isRestored) away.isUnsent = false;
      if (isRestored && away.draft && !away.isUnsent) away.doubt ??= 'sent text that came back';
      if (!isRestored) away.doubt = null;
    },
  };

  async run(length) {
    const names = Object.keys(this.operations);
    for (let count = 0; count < length; ++count) {
      // Typing is more frequent: otherwise there is little to lose.
      const name = this.pick(4) === 0 ? 'type' : names[this.pick(names.length)];
      this.steps.push(name);
      await this.operations[name].call(this);
      await this.settle();
      const problem = this.compare();
      if (problem) return problem;
    }
    return null;
  }

  compare() {
    const guard = this.view.NavoraUpdateGuard;
    const reason = guard.prepare() ?? null;
    guard.resume();
    const fields = [...this.fields.values()];
    const isUnsent =
      fields.some((field) => field.isUnsent && field.element.isConnected ? this.read(field).trim() :
                                                                           field.isUnsent);
    ++History.answers[isUnsent ? 'unsent' : 'taken'];
    if (isUnsent) return reason === null ? 'ready with unsent text' : null;
    if (reason === null) return null;
    const doubt = fields.find((field) => field.doubt)?.doubt;
    if (!doubt) return `blocked without need: ${reason}`;
    History.doubts.set(doubt, (History.doubts.get(doubt) ?? 0) + 1);
    return null;
  }
}
History.doubts = new Map();
History.answers = {
  unsent: 0,
  taken: 0
};

// Runs histories, and resolves to a description of each that contradicts the model, and to how
// often each doubt kept a page blocked.
window.runHistories = async (guard, first, count, length) => {
  const problems = [];
  for (let seed = first; seed < first + count && problems.length < 3; ++seed) {
    const history = new History(guard, seed);
    const problem = await history.run(length);
    history.frame.remove();
    if (!problem) continue;
    const fields = [...history.fields.values()].map(
      ({element, ...field}) => JSON.stringify(
        {id: element.id, text: history.read({element}), shown: element.isConnected, ...field}));
    problems.push(`${seed}: ${problem} after ${history.steps.join(', ')}: ${fields.join(' ')}`);
  }
  return {problems, answers: History.answers, doubts: Object.fromEntries(History.doubts)};
};
