// Reports the appearance of the page's editor to the application, whose capture panel adopts it.
// Posts a message once the editor exists, and again whenever its appearance has changed.
//
// A page may state its colours in custom properties ("--capture-surface", "--capture-focus" and so
// on). All others are read from the computed styles, or, for states that the editor is not in
// (focused, hovered, empty), from the rules of the style sheets.
(() => {
  'use strict';
  const themes = ['system', 'light', 'dark'];
  const mark = Symbol.for('navora.captureAppearance');
  const clamp = (number, least, most) => Math.min(Math.max(number || 0, least), most);
  let darkScheme = null;
  let brush = null;
  let attributes = null;
  let nodes = null;
  let root = null;
  let editor = null;
  let posted = '';
  let pending = false;

  // Swallows exceptions: a page whose appearance cannot be read leaves the panel unchanged and sees
  // no error.
  const quietly = (work) => (...parameters) => {
    try {
      work(...parameters);
    } catch {
      // See above.
    }
  };

  // Splits at every separator outside parentheses, and trims the pieces.
  function split(text, separator) {
    const pieces = [''];
    let depth = 0;
    for (const character of text) {
      if (character === '(') ++depth;
      if (character === ')') --depth;
      if (depth === 0 && character === separator) pieces.push('');
      else pieces[pieces.length - 1] += character;
    }
    return pieces.map((piece) => piece.trim()).filter(Boolean);
  }

  // ---- Colours: arrays [red, green, blue, alpha], with alpha up to 1 and the others up to 255.

  function numbers(text) {
    const hex = /^#([0-9a-f]{2})([0-9a-f]{2})([0-9a-f]{2})$/i.exec(text);
    if (hex) return [...hex.slice(1).map((digits) => parseInt(digits, 16)), 1];
    const list = /^rgba?\(([\d.]+), ([\d.]+), ([\d.]+)(?:, ([\d.e-]+))?\)$/.exec(text);
    return list && list.slice(1).map((number) => (number === undefined ? 1 : Number(number)));
  }

  // Parses a colour of any CSS notation by painting it, which converts it to sRGB. Returns null for
  // anything else.
  function color(text) {
    const simple = numbers(text);
    if (simple || !brush) return simple;
    const accepted = ['#000001', '#000002'].map((before) => {
      brush.fillStyle = before;
      brush.fillStyle = text;
      return brush.fillStyle;
    });
    if (accepted[0] !== accepted[1]) return null;
    const known = numbers(accepted[0]);
    if (known) return known;
    brush.clearRect(0, 0, 1, 1);
    brush.fillRect(0, 0, 1, 1);
    const [red, green, blue, alpha] = brush.getImageData(0, 0, 1, 1).data;
    return [red, green, blue, alpha / 255];
  }

  function written([red, green, blue, alpha]) {
    const channels = [red, green, blue].map((channel) => Math.round(clamp(channel, 0, 255)));
    if (alpha < 1) return `rgba(${channels.join(', ')}, ${Number(clamp(alpha, 0, 1).toFixed(4))})`;
    return `#${channels.map((channel) => channel.toString(16).padStart(2, '0')).join('')}`;
  }

  const over =
    (above, below) => [0, 1, 2]
                        .map((index) => above[index] * above[3] + below[index] * (1 - above[3]))
                        .concat(1);

  // Returns the first colour in the specified value of a rule or a custom property.
  function statedColor(text, style) {
    const resolved = (argument) => split(argument, ' ').reduce((found, piece) => {
      if (found) return found;
      const [, name, inner] = /^([\w-]+)\((.*)\)$/s.exec(piece) || [];
      if (name === 'var') {
        const [property, ...rest] = split(inner, ',');
        return resolved(style.getPropertyValue(property) || rest.join(', '));
      }
      if (name === 'light-dark') {
        const choices = split(inner, ',');
        const both = /\blight\b/.test(style.colorScheme) && /\bdark\b/.test(style.colorScheme);
        const dark = both ? darkScheme.matches : /\bdark\b/.test(style.colorScheme);
        return resolved(choices[dark ? 1 : 0] || '');
      }
      return color(/^currentcolor$/i.test(piece) ? style.color : piece);
    }, null);
    return resolved(text);
  }

  // ---- Colours that the style sheets specify for states that an element may not be in.

  const states =
    [':focus-within', ':focus-visible', ':focus', ':hover', ':active', ':disabled', ':empty'];

  // Rewrites a selector so that it matches as if the element were in the assumed states. Returns
  // null if it requires another state.
  function inStates(selector, assumed) {
    let rest = selector;
    for (const state of states) {
      const name = `${state}(?![\\w-])`;
      const denied = new RegExp(`:not\\(\\s*${name}\\s*\\)`, 'g');
      if (assumed.includes(state) ? denied.test(rest) :
                                    new RegExp(name).test(rest.replace(denied, '')))
        return null;
      rest = rest.replace(denied, '').replace(new RegExp(name, 'g'), ':is(*)');
    }
    return rest;
  }

  function specificity(selector) {
    const count = (pattern) => (selector.match(pattern) || []).length;
    return count(/#[\w-]+/g) * 10000 + count(/\.[\w-]+|\[[^\]]*\]|[^:]:[\w-]+/g) * 100 +
      count(/(?:^|[\s>+~(])[a-z]/gi);
  }

  function* styleRules(rules) {
    for (const rule of rules) {
      if (rule.type === 1) yield rule;
      else if (rule.media && !matchMedia(rule.media.mediaText).matches) continue;
      else if (rule.styleSheet) yield* sheetRules(rule.styleSheet);
      else if (rule.cssRules && !rule.name) yield* styleRules(rule.cssRules);
    }
  }

  function* sheetRules(sheet) {
    if (sheet.disabled || !matchMedia(sheet.media.mediaText).matches) return;
    try {
      yield* styleRules(sheet.cssRules);
    } catch {
      // The rules of another origin's style sheet are not accessible.
    }
  }

  function ruleColor(element, properties, assumed, pseudoElement = '') {
    let best = null;
    for (const sheet of [...document.styleSheets, ...(document.adoptedStyleSheets || [])]) {
      for (const rule of sheetRules(sheet)) {
        const property = properties.find((name) => rule.style.getPropertyValue(name));
        if (!property) continue;
        for (const selector of split(rule.selectorText, ',')) {
          if (!selector.endsWith(pseudoElement) || (!pseudoElement && selector.includes('::')))
            continue;
          const plain =
            inStates(selector.slice(0, selector.length - pseudoElement.length) || '*', assumed);
          const weight =
            specificity(selector) + (rule.style.getPropertyPriority(property) ? 1e9 : 0);
          if (!plain || (best && weight < best.weight) || !matchesSafely(element, plain)) continue;
          best = {weight, text: rule.style.getPropertyValue(property)};
        }
      }
    }
    return best && statedColor(best.text, getComputedStyle(element));
  }

  function matchesSafely(element, selector) {
    try {
      return element.matches(selector);
    } catch {
      return false;
    }
  }

  // ---- The parts of the editor.

  function gradientEnds(image) {
    const inner = /^(?:repeating-)?linear-gradient\((.*)\)$/s.exec(split(image, ',')[0] || '');
    const stops =
      inner ? split(inner[1], ',').map((stop) => color(split(stop, ' ')[0])).filter(Boolean) : [];
    return stops.length ? [stops[0], stops[stops.length - 1]] : null;
  }

  // Returns both end colours of the card's background as displayed: translucent ones are composited
  // over the backgrounds of the ancestors.
  function surfaces(card, dark) {
    const style = getComputedStyle(card);
    const plain = color(style.backgroundColor) || [0, 0, 0, 0];
    const layers = [plain];
    for (let behind = card.parentElement; behind; behind = behind.parentElement) {
      layers.push(color(getComputedStyle(behind).backgroundColor) || [0, 0, 0, 0]);
    }
    layers.push(dark ? [30, 30, 30, 1] : [255, 255, 255, 1]);
    const ground = layers.reduceRight((below, layer) => over(layer, below));
    return (gradientEnds(style.backgroundImage) || [
      ground, ground
    ]).map((end) => over(end, ground));
  }

  function fontKind(families) {
    for (const family of families.toLowerCase().split(',').map(
           (name) => name.trim().replace(/["']/g, ''))) {
      if (/^(ui-)?monospace$|\bmono\b|courier|consolas|menlo|monaco/.test(family)) return 'mono';
      if (/sans|^system-ui$|^ui-rounded$/.test(family)) return 'sans';
      if (/^(ui-)?serif$|\bserif\b|georgia|times|palatino|garamond|iowan|charter/.test(family))
        return 'serif';
    }
    return 'sans';
  }

  function lineHeight(style) {
    const stated = parseFloat(style.lineHeight);
    if (stated || !brush) return stated || parseFloat(style.fontSize) * 1.2;
    brush.font = `${style.fontSize} ${style.fontFamily}`;
    const size = brush.measureText('x');
    return size.fontBoundingBoxAscent + size.fontBoundingBoxDescent;
  }

  function placeholder(input) {
    const names = ['placeholder', 'data-placeholder', 'aria-placeholder'];
    const whole = names.map((name) => input.getAttribute(name)).find(Boolean) || '';
    let text = '';
    let count = 0;
    for (const {segment} of new Intl.Segmenter(undefined, {granularity: 'grapheme'})
           .segment(whole.slice(0, 8000))) {
      if (++count > 200) break;
      text += segment;
    }
    return text.toWellFormed ? text.toWellFormed() : text;
  }

  function placeholderColor(input) {
    if ('placeholder' in input) return color(getComputedStyle(input, '::placeholder').color);
    const before = getComputedStyle(input, '::before');
    if (!['none', 'normal', ''].includes(before.content)) return color(before.color);
    return ruleColor(input, ['color'], [':empty'], '::before');
  }

  function appearance(card, input, submit) {
    const named = root.dataset.theme;
    const theme = themes.includes(named) ? named : 'system';
    const dark = theme === 'system' ? darkScheme.matches : theme === 'dark';
    const styles = {
      card: getComputedStyle(card),
      input: getComputedStyle(input),
      submit: getComputedStyle(submit)
    };
    const own = (name) => {
      const text = styles.card.getPropertyValue(`--capture-${name}`).trim();
      return text && statedColor(text, styles.card);
    };
    const border = ['border-top-color', 'border-color', 'border-top', 'border'];
    const fill = ['background-color', 'background'];
    const [surface, surfaceEnd] = surfaces(card, dark);
    const ink = color(styles.input.color);
    const edge = own('border') || ruleColor(card, border, []) || color(styles.card.borderTopColor);
    const button =
      own('button') || ruleColor(submit, fill, []) || color(styles.submit.backgroundColor);
    const colors = {
      surface: own('surface') || surface,
      surfaceEnd: own('surface-end') || surfaceEnd,
      border: edge,
      focus: own('focus') ||
        ruleColor(card, border, [':focus-within', ':focus', ':focus-visible']) || edge,
      ink,
      caret: own('caret') || color(styles.input.caretColor) || ink,
      placeholderColor: own('placeholder') || placeholderColor(input) || ink,
      muted: own('muted') || statedColor('var(--muted)', styles.card) || ink,
      button,
      buttonHover: own('button-hover') || ruleColor(submit, fill, [':hover']) || button,
      buttonInk:
        own('button-ink') || ruleColor(submit, ['color'], []) || color(styles.submit.color),
    };
    return {
      dark,
      theme,
      ...Object.fromEntries(Object.entries(colors).map(([name, value]) => [name, written(value)])),
      radius: clamp(parseFloat(styles.card.borderTopLeftRadius), 0, 48),
      padding:
        clamp(parseFloat(styles.card.paddingLeft) || parseFloat(styles.input.paddingLeft), 8, 48),
      fontSize: clamp(parseFloat(styles.input.fontSize), 10, 32),
      lineHeight: clamp(lineHeight(styles.input), 10, 64),
      font: fontKind(styles.input.fontFamily),
      placeholder: placeholder(input),
    };
  }

  // ---- When to report.

  function report() {
    pending = false;
    const card = document.querySelector('.capture-editor');
    const input = card && card.querySelector('#capture-input');
    const submit = card && card.querySelector('#capture-submit');
    if (!input || !submit || document.hidden) return;
    if (card !== editor) watchEditor(card, [input, submit]);
    const changing = card.getAnimations({subtree: true})
                       .filter((animation) => animation instanceof CSSTransition &&
                           animation.playState === 'running');
    if (changing.length) {
      // In the middle of a transition between themes, a colour belongs to neither.
      Promise.allSettled(changing.map((animation) => animation.finished)).then(look);
      return;
    }
    const message = appearance(card, input, submit);
    const serialized = JSON.stringify(message);
    if (serialized === posted) return;
    window.webkit.messageHandlers.navoraCaptureAppearance.postMessage(message);
    posted = serialized;
  }

  // Schedules a report: at most one per frame, and none while the page is hidden.
  const look = quietly(() => {
    if (pending || document.hidden) return;
    requestAnimationFrame(quietly(report));
    pending = true;
  });

  function watchEditor(card, parts) {
    editor = card;
    attributes.disconnect();
    for (let node = card; node; node = node.parentElement)
      attributes.observe(node, {attributes: true});
    const attributeFilter =
      ['class', 'style', 'placeholder', 'data-placeholder', 'aria-placeholder'];
    for (const part of parts) attributes.observe(part, {attributes: true, attributeFilter});
  }

  const isStyle = (node) => node.localName === 'style' || node.localName === 'link';
  const restyled = quietly((records) => {
    if (document.documentElement !== root) begin();
    const styled = (record) =>
      isStyle(record.target) || [...record.addedNodes, ...record.removedNodes].some(isStyle);
    if (!editor || !editor.isConnected || records.some(styled)) look();
  });
  const loaded = quietly((event) => {
    if (isStyle(event.target)) look();
  });

  // Called again after document.open(), which keeps the window but removes the document's
  // listeners.
  function begin() {
    root = document.documentElement;
    if (!root || root[mark]) return;
    Object.defineProperty(root, mark, {value: true});
    editor = null;
    attributes.disconnect();
    attributes.observe(root, {attributes: true});
    nodes.observe(document, {childList: true, subtree: true});
    document.addEventListener('load', loaded, true);
    document.addEventListener('visibilitychange', look);
    document.fonts.addEventListener('loadingdone', look);
    darkScheme.addEventListener('change', look);
    for (const type of ['pageshow', 'focus', 'resize']) window.addEventListener(type, look);
    look();
  }

  quietly(() => {
    darkScheme = matchMedia('(prefers-color-scheme: dark)');
    const canvas = document.createElement('canvas');
    canvas.width = canvas.height = 1;
    brush = canvas.getContext('2d', {willReadFrequently: true});
    attributes = new MutationObserver(look);
    nodes = new MutationObserver(restyled);
    begin();
  })();
})();
