// Reports the appearance of the page's editor to the application, whose capture panel adopts it.
// Posts a message once the editor exists, and again whenever its appearance has changed.
//
// A page needs no more than an editor with the id "capture-input"; its card and its button are
// found around it. A page may state its colours in custom properties of the card
// ("--capture-surface", "--capture-focus" and so on). All others are read from the computed styles,
// or, for states that the editor is not in (focused, hovered, empty), from the rules of the style
// sheets.
(() => {
  'use strict';
  const themes = ['system', 'light', 'dark'];
  const mark = Symbol.for('navora.captureAppearance');
  const patience = 1000;  // ms, for transitions that do not end
  const clamp = (number, least, most) => Math.min(Math.max(number || 0, least), most);
  let darkScheme = null;
  let brush = null;
  let attributes = null;
  let nodes = null;
  let root = null;
  let editor = {};      // The card, input and submit control that are observed.
  let styleRules = [];  // Those that may concern the editor, during a report.
  const selectorLists = new Map();
  let posted = '';
  let pending = false;
  let waitingSince = null;

  // Swallows exceptions: a page whose appearance cannot be read leaves the panel unchanged and sees
  // no error.
  const quietly = (work) => (...parameters) => {
    try {
      work(...parameters);
    } catch {
      // See above.
    }
  };

  // Splits at every separator outside parentheses and brackets, and trims the pieces.
  function split(text, separator) {
    const pieces = [''];
    let depth = 0;
    for (const character of text) {
      if (character === '(' || character === '[') ++depth;
      if (character === ')' || character === ']') --depth;
      if (depth === 0 && character === separator) pieces.push('');
      else pieces[pieces.length - 1] += character;
    }
    return pieces.map((piece) => piece.trim()).filter(Boolean);
  }

  // Finds the first use of a function whose name matches the pattern. Returns null if there is
  // none.
  function findCall(text, pattern) {
    const found = new RegExp(`(${pattern})\\(`, 'i').exec(text);
    if (!found) return null;
    const start = found.index + found[0].length;
    let end = start;
    for (let depth = 1; depth && end < text.length; ++end) {
      if (text[end] === '(') ++depth;
      if (text[end] === ')') --depth;
    }
    return {
      name: found[1].toLowerCase(),
      before: text.slice(0, found.index),
      inner: text.slice(start, end - 1),
      after: text.slice(end)
    };
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

  const transparent = [0, 0, 0, 0];

  const over =
    (above, below) => [0, 1, 2]
                        .map((index) => above[index] * above[3] + below[index] * (1 - above[3]))
                        .concat(1);

  // Returns the mean of colours, each weighted by its alpha.
  function mean(colors) {
    const alpha = colors.reduce((sum, each) => sum + each[3], 0);
    if (!alpha) return transparent;
    return [0, 1, 2]
      .map((index) => colors.reduce((sum, each) => sum + each[index] * each[3], 0) / alpha)
      .concat(alpha / colors.length);
  }

  // Relative luminance and contrast as WCAG 2 defines them.
  function luminance(opaque) {
    const [red, green, blue] = opaque.map(
      (channel) => channel <= 10 ? channel / 3295 : ((channel / 255 + 0.055) / 1.055) ** 2.4);
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
  }

  function contrast(one, other) {
    const [darker, lighter] = [luminance(one), luminance(other)].sort((a, b) => a - b);
    return (lighter + 0.05) / (darker + 0.05);
  }

  // Returns whether an element's colour scheme is dark.
  function usesDarkScheme(style) {
    const dark = /\bdark\b/.test(style.colorScheme);
    return /\blight\b/.test(style.colorScheme) ? dark && darkScheme.matches : dark;
  }

  // Replaces the custom properties in the specified value of a rule.
  function substituted(text, style) {
    // The limit ends a value that mentions itself.
    for (let count = 0; count < 100; ++count) {
      const use = findCall(text, '\\bvar');
      if (!use) return text;
      const [property, ...fallback] = split(use.inner, ',');
      text = use.before + (style.getPropertyValue(property) || fallback.join(', ')) + use.after;
    }
    return '';
  }

  // Returns the first colour in the specified value of a rule or a custom property, or null.
  function statedColor(text, style) {
    const pieces = (argument) => split(argument, ',').flatMap((layer) => split(layer, ' '));
    const resolved = (argument) => pieces(argument).reduce((found, piece) => {
      if (found) return found;
      const use = findCall(piece, '^light-dark');
      if (use) return resolved(split(use.inner, ',')[usesDarkScheme(style) ? 1 : 0] || '');
      return color(/^currentcolor$/i.test(piece) ? style.color : piece);
    }, null);
    return resolved(substituted(text, style));
  }

  // Returns the colours of the first gradient in the specified or computed value.
  function gradientColors(text, style) {
    const gradient = findCall(substituted(text, style), '(?:linear|radial|conic)-gradient');
    if (!gradient) return [];
    return split(gradient.inner, ',').map((stop) => statedColor(stop, style)).filter(Boolean);
  }

  // ---- Colours that the style sheets specify for states that an element may not be in.

  const states =
    [':focus-within', ':focus-visible', ':focus', ':hover', ':active', ':disabled', ':empty'];

  // Rewrites a selector so that it matches as if the element were in the assumed states and in no
  // other.
  function inStates(selector, assumed) {
    const replaced = (text, state, holds) => text.replace(
      new RegExp(`(^|[^\\\\])${state}(?![\\w-])`, 'g'), holds ? '$1:is(*)' : '$1:not(*)');
    return states.reduce((text, state) => replaced(text, state, assumed.includes(state)),
      replaced(selector, ':enabled', !assumed.includes(':disabled')));
  }

  // Returns a selector's specificity as one number.
  function specificity(selector) {
    let weight = 0;
    let rest = selector.replace(/\\./g, '_');
    for (let use = findCall(rest, ':[\\w-]+'); use; use = findCall(rest, ':[\\w-]+')) {
      if (/^:(is|not|has)$/.test(use.name)) {
        weight += Math.max(0, ...split(use.inner, ',').map(specificity));
      } else if (use.name !== ':where') {
        weight += 1000;
      }
      rest = use.before + use.after;
    }
    const count = (pattern) => (rest.match(pattern) || []).length;
    return weight + count(/#[\w-]+/g) * 1e6 +
      count(/\.[\w-]+|\[[^\]]*\]|(?:^|[^:]):[\w-]+/g) * 1000 +
      count(/(?:^|[\s>+~(])[a-z]|::[a-z]/gi);
  }

  // The order of a cascade layer: the positions of its ancestors and itself among their siblings.
  // Rules outside a layer come after those in it.
  function laterLayer(one, other) {
    for (let depth = 0;; ++depth) {
      const [first = Infinity, second = Infinity] = [one[depth], other[depth]];
      if (first !== second) return first > second ? 1 : -1;
      if (first === Infinity) return 0;
    }
  }

  // Returns the layer of a name with dots, or a new one if it has none.
  function layerWithin(parent, name) {
    return (name ? name.split('.') : [Symbol('anonymous')]).reduce((layer, part) => {
      if (!layer.inner.has(part)) {
        layer.inner.set(part, {order: [...layer.order, layer.inner.size], inner: new Map()});
      }
      return layer.inner.get(part);
    }, parent);
  }

  // Returns a list's selectors, each with what its subject must have; null in place of that if it
  // is too hard to tell. Style sheets are long and the editor is small: this spares the engine most
  // of the selectors.
  function selectorsOf(list) {
    return split(list, ',').map((selector) => {
      if (/[^ -~]|\\/.test(selector)) return {selector, subject: null};
      let plain = selector.replace(/\[[^\]]*\]/g, '');
      for (let before = ''; plain !== before;) {
        before = plain;
        plain = plain.replace(/\([^()]*\)/g, '');
      }
      const [, name, rest] = /([\w-]*)([^\s>+~|]*)$/.exec(plain.replace(/:[\w-]*/g, ':'));
      const all = (pattern) => [...rest.matchAll(pattern)].map(([, found]) => found);
      return {
        selector,
        subject: {name: name.toLowerCase(), ids: all(/#([\w-]+)/g), classes: all(/\.([\w-]+)/g)}
      };
    });
  }

  function mayMatch({subject}, element) {
    if (!subject) return true;
    const {name, ids, classes} = subject;
    return (!name || name === element.localName) && ids.every((id) => id === element.id) &&
      classes.every((each) => element.classList.contains(each));
  }

  // Returns the selectors of a list that may match a part of the editor.
  function relevantSelectors(list) {
    if (!selectorLists.has(list)) selectorLists.set(list, selectorsOf(list));
    const parts = [editor.card, editor.input, editor.submit].filter(Boolean);
    return selectorLists.get(list)
      .filter((each) => parts.some((part) => mayMatch(each, part)))
      .map(({selector}) => selector);
  }

  function nestedIn(parent, list) {
    if (!parent) return list;
    const scope = `:is(${parent})`;
    const nested = (each) => each.includes('&') ? each.split('&').join(scope) : `${scope} ${each}`;
    return split(list, ',').map(nested).join(', ');
  }

  const is = (rule, type) => typeof window[type] === 'function' && rule instanceof window[type];
  const holds = (condition) => !condition || CSS.supports(condition);
  const isDisplayed = ({mediaText}) => !mediaText || matchMedia(mediaText).matches;

  // Adds the style rules that may concern the editor and whose conditions hold to `found`. `place`
  // is where they are: the selectors of the rule around them, their layer, and the conditions of
  // the container queries around them.
  function addStyleRules(rules, place, found) {
    const add = (style, list) => {
      const selectors = relevantSelectors(list);
      const {layer: {order: layer}, containers} = place;
      if (selectors.length) found.push({style, selectors, layer, containers, answers: new Map()});
    };
    for (const rule of rules) {
      if (rule.type === CSSRule.STYLE_RULE) {
        const list = nestedIn(place.list, rule.selectorText);
        add(rule.style, list);
        if (rule.cssRules?.length) addStyleRules(rule.cssRules, {...place, list}, found);
      } else if (rule.type === CSSRule.MEDIA_RULE) {
        if (isDisplayed(rule.media)) addStyleRules(rule.cssRules, place, found);
      } else if (rule.type === CSSRule.SUPPORTS_RULE) {
        if (holds(rule.conditionText)) addStyleRules(rule.cssRules, place, found);
      } else if (rule.type === CSSRule.IMPORT_RULE) {
        if (!rule.styleSheet || !isDisplayed(rule.media) || !holds(rule.supportsText)) continue;
        const isLayered = typeof rule.layerName === 'string';
        const layer = isLayered ? layerWithin(place.layer, rule.layerName) : place.layer;
        addSheet(rule.styleSheet, {...place, layer}, found);
      } else if (is(rule, 'CSSNestedDeclarations')) {
        add(rule.style, place.list);
      } else if (is(rule, 'CSSLayerStatementRule')) {
        rule.nameList.forEach((name) => layerWithin(place.layer, name));
      } else if (is(rule, 'CSSLayerBlockRule')) {
        addStyleRules(rule.cssRules, {...place, layer: layerWithin(place.layer, rule.name)}, found);
      } else if (is(rule, 'CSSContainerRule')) {
        const containers = [...place.containers, rule.conditionText];
        addStyleRules(rule.cssRules, {...place, containers}, found);
      }
    }
  }

  function addSheet(sheet, place, found) {
    if (sheet.disabled || !isDisplayed(sheet.media)) return;
    try {
      addStyleRules(sheet.cssRules, place, found);
    } catch {
      // The rules of another origin's style sheet are not accessible.
    }
  }

  function readStyleSheets() {
    if (selectorLists.size > 1e5) selectorLists.clear();
    const found = [];
    const place = {list: '', layer: {order: [], inner: new Map()}, containers: []};
    for (const sheet of [...document.styleSheets, ...(document.adoptedStyleSheets || [])])
      addSheet(sheet, place, found);
    return found;
  }

  // Returns whether the conditions of container queries hold for an element. No function tells; a
  // style sheet that is adopted while the element's style is computed does.
  function containersHold(element, conditions) {
    if (!conditions.length) return true;
    // Safari before 16.4 makes no style sheets; there these rules are left out.
    if (!CSSStyleSheet.prototype.replaceSync) return false;
    const probe = new CSSStyleSheet();
    // Stated for every element of the name, so that none inherits it.
    const answer = (word) => `${element.localName} { --navora-probe: ${word} }`;
    const asked =
      conditions.reduceRight((inner, each) => `@container ${each} { ${inner} }`, answer('yes'));
    probe.replaceSync(`${answer('no')} ${asked}`);
    const adopted = [...document.adoptedStyleSheets];
    document.adoptedStyleSheets = [...adopted, probe];
    try {
      return getComputedStyle(element).getPropertyValue('--navora-probe').trim() === 'yes';
    } finally {
      document.adoptedStyleSheets = adopted;
    }
  }

  function matchesSafely(element, selector) {
    try {
      return element.matches(selector);
    } catch {
      return false;
    }
  }

  // Returns the specificity of a rule for an element in the assumed states, or null if it does not
  // match.
  function weightFor(element, rule, assumed, pseudoElement) {
    let weight = null;
    for (const selector of rule.selectors) {
      if (!selector.endsWith(pseudoElement) || (!pseudoElement && selector.includes('::')))
        continue;
      const plain = selector.slice(0, selector.length - pseudoElement.length) || '*';
      if (!matchesSafely(element, inStates(plain, assumed))) continue;
      weight = Math.max(weight, specificity(selector));
    }
    return weight;
  }

  // Returns a positive number if the first declaration overrides the second one in the cascade.
  function compareDeclarations(one, other) {
    const sign = one.important ? -1 : 1;
    return one.important - other.important || one.attached - other.attached ||
      sign * laterLayer(one.layer, other.layer) || one.weight - other.weight;
  }

  // Returns the specified value of the first of the properties that each rule has, from the rule
  // that wins the cascade for an element in the assumed states; null if there is none.
  function ruleText(element, properties, assumed, pseudoElement = '') {
    const attribute =
      {style: element.style, attached: true, layer: [], answers: new Map([[element, true]])};
    let best = null;
    for (const rule of pseudoElement ? styleRules : [...styleRules, attribute]) {
      const property = properties.find((name) => rule.style.getPropertyValue(name));
      if (!property) continue;
      const weight = rule.attached ? 0 : weightFor(element, rule, assumed, pseudoElement);
      if (weight === null) continue;
      const declaration = {
        text: rule.style.getPropertyValue(property),
        important: rule.style.getPropertyPriority(property) ? 1 : 0,
        attached: rule.attached ? 1 : 0,
        layer: rule.layer,
        weight
      };
      if (best && compareDeclarations(declaration, best) < 0) continue;
      if (!rule.answers.has(element))
        rule.answers.set(element, containersHold(element, rule.containers));
      if (rule.answers.get(element)) best = declaration;
    }
    // The computed value knows what these refer to.
    return best && !/^(inherit|unset|revert|revert-layer)$/.test(best.text) ? best.text : null;
  }

  function ruleColor(element, properties, assumed, pseudoElement = '') {
    const text = ruleText(element, properties, assumed, pseudoElement);
    return text && statedColor(text, getComputedStyle(element));
  }

  // Returns the colour of an element's fill in the assumed states; of a gradient, its mean.
  function fillColor(element, assumed) {
    const style = getComputedStyle(element);
    const stated = ruleText(element, ['background-color', 'background'], assumed);
    const plain =
      (stated === null ? color(style.backgroundColor) : statedColor(stated, style)) || transparent;
    const image =
      ruleText(element, ['background-image', 'background'], assumed) ?? style.backgroundImage;
    const stops = gradientColors(image, style);
    if (!stops.length) return plain;
    return mean(plain[3] < 1 ? stops : stops.map((stop) => over(stop, plain)));
  }

  const isLine = (text) => /\b(solid|dashed|dotted|double|groove|ridge|inset|outset)\b/.test(text);
  const isNoWidth = (text) => split(text, ' ').some((piece) => /^0+(\.0*)?[a-z]*$/.test(piece));

  // Returns the colour of the card's border in the assumed states, or null if it has none.
  function borderColor(card, assumed) {
    const style = getComputedStyle(card);
    const stated = (detail, inWhich = assumed) => {
      const names = [`border-top-${detail}`, `border-${detail}`, 'border-top', 'border'];
      const text = ruleText(card, names, inWhich);
      return text === null ? null : substituted(text, style);
    };
    const line = stated('style');
    // The computed border may be that of another state.
    if (line === null && stated('style', states) !== null) return null;
    if (!isLine(line ?? style.borderTopStyle)) return null;
    if (isNoWidth(stated('width') ?? style.borderTopWidth)) return null;
    return statedColor(stated('color') ?? '', style) || color(style.borderTopColor);
  }

  // ---- The parts of the editor.

  // Returns the control that submits the input's text, or null if the page has none near it.
  function submitOf(input) {
    const named = document.querySelector('#capture-submit');
    if (named) return named;
    const form = input.closest('form');
    const submitting = ({type, hidden}) => (type === 'submit' || type === 'image') && !hidden;
    const own = form && [...form.elements].find(submitting);
    if (own) return own;
    const buttons =
      'button, input[type=submit], input[type=image], input[type=button], [role=button]';
    for (let scope = input.parentElement; scope; scope = scope.parentElement) {
      const near = [...scope.querySelectorAll(buttons)].filter(
        (button) => !button.hidden && !input.contains(button));
      if (near.length) return near[near.length - 1];
      if (scope.matches('form, dialog, section, article, main')) return null;
    }
    return null;
  }

  // Returns what an element paints over `below`: the mean of a gradient, else its plain colour.
  function painted(element, below) {
    const style = getComputedStyle(element);
    const plain = over(color(style.backgroundColor) || transparent, below);
    const stops = gradientColors(style.backgroundImage, style);
    return stops.length ? over(mean(stops), plain) : plain;
  }

  // Returns the opaque colour that is seen behind an element.
  function groundBehind(element) {
    const canvas = usesDarkScheme(getComputedStyle(root)) ? [30, 30, 30, 1] : [255, 255, 255, 1];
    const ancestors = [];
    for (let node = element.parentElement; node; node = node.parentElement) ancestors.push(node);
    return ancestors.reduceRight((below, ancestor) => painted(ancestor, below), canvas);
  }

  const isFilled = (element) => {
    const ground = groundBehind(element);
    return getComputedStyle(element).backgroundImage !== 'none' ||
      painted(element, ground).some((channel, index) => Math.abs(channel - ground[index]) >= 1);
  };

  function isFramed(element) {
    const style = getComputedStyle(element);
    const {borderTopColor, borderTopStyle, borderTopWidth} = style;
    return style.boxShadow !== 'none' ||
      (isLine(borderTopStyle) && parseFloat(borderTopWidth) > 0 && color(borderTopColor)?.[3] > 0);
  }

  // Returns the element whose look the panel adopts: the nearest one at or above the input with a
  // fill of its own, or with a border or a shadow around input and submit control. A page without
  // one has the nearest frame around the input, else the nearest element with both in it.
  function cardOf(input, submit) {
    const named = input.closest('.capture-editor');
    if (named) return named;
    const holds = (element) => !submit || element.contains(submit);
    let framed = null;
    let holder = null;
    for (let element = input; element && element !== root; element = element.parentElement) {
      if (holds(element) && element !== input) holder = holder || element;
      // Around them is the page.
      if (element.matches('body, main')) continue;
      if (isFilled(element) || (holds(element) && isFramed(element))) return element;
      if (isFramed(element)) framed = framed || element;
    }
    return framed || holder || input;
  }

  // Returns both end colours of the card's background as displayed: translucent ones are composited
  // over what is behind it.
  function surfaces(card) {
    const style = getComputedStyle(card);
    const plain = over(color(style.backgroundColor) || transparent, groundBehind(card));
    let stops = gradientColors(style.backgroundImage, style);
    if (stops.length && !/^(repeating-)?linear-gradient/.test(style.backgroundImage))
      stops = [mean(stops)];
    return [stops[0] || plain, stops[stops.length - 1] || plain].map((end) => over(end, plain));
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
    if ('placeholder' in input) {
      return ruleColor(input, ['color'], [], '::placeholder') ||
        color(getComputedStyle(input, '::placeholder').color);
    }
    const before = getComputedStyle(input, '::before');
    if (!['none', 'normal', ''].includes(before.content)) return color(before.color);
    return ruleColor(input, ['color'], [':empty'], '::before');
  }

  // Returns the theme that the page names, or the one that it shows: text that is lighter than its
  // surface is dark.
  function themeOf(style, ink, surface) {
    const named = root.dataset.theme;
    if (themes.includes(named)) {
      return {theme: named, dark: named === 'system' ? darkScheme.matches : named === 'dark'};
    }
    const text = over(ink, surface);
    const dark =
      contrast(text, surface) < 1.2 ? usesDarkScheme(style) : luminance(text) > luminance(surface);
    return {theme: dark ? 'dark' : 'light', dark};
  }

  // Returns the colours of the button. One that cannot be seen on the surface, or that does not
  // exist, has those of the text.
  function buttonColors(submit, own, ink, surface) {
    const button = own('button') || (submit ? fillColor(submit, []) : transparent);
    const buttonInk = own('button-ink') ||
      (submit ? ruleColor(submit, ['color'], []) || color(getComputedStyle(submit).color) :
                surface);
    const disc = over(button, surface);
    if (contrast(disc, surface) < 1.05 && contrast(over(buttonInk, disc), disc) < 1.2) {
      return {button: ink, buttonHover: ink, buttonInk: surface};
    }
    const buttonHover =
      own('button-hover') || (submit && !own('button') ? fillColor(submit, [':hover']) : button);
    return {button, buttonHover, buttonInk};
  }

  function appearance({card, input, submit}) {
    const cardStyle = getComputedStyle(card);
    const inputStyle = getComputedStyle(input);
    const own = (name) => {
      const text = cardStyle.getPropertyValue(`--capture-${name}`).trim();
      return text && statedColor(text, cardStyle);
    };
    const [first, last] = surfaces(card);
    const surface = own('surface') || first;
    const ink = color(inputStyle.color);
    const border = own('border') || borderColor(card, []) || transparent;
    const focused = [':focus-within', ':focus', ':focus-visible'];
    const colors = {
      surface,
      surfaceEnd: own('surface-end') || last,
      border,
      focus: own('focus') || borderColor(card, focused) || border,
      ink,
      caret: own('caret') || color(inputStyle.caretColor) || ink,
      placeholderColor: own('placeholder') || placeholderColor(input) || ink,
      muted: own('muted') || statedColor('var(--muted)', cardStyle) || ink,
      ...buttonColors(submit, own, ink, over(surface, first)),
    };
    return {
      ...themeOf(inputStyle, ink, over(surface, first)),
      ...Object.fromEntries(Object.entries(colors).map(([name, value]) => [name, written(value)])),
      radius: clamp(parseFloat(cardStyle.borderTopLeftRadius), 0, 48),
      padding:
        clamp(parseFloat(cardStyle.paddingLeft) || parseFloat(inputStyle.paddingLeft), 8, 48),
      fontSize: clamp(parseFloat(inputStyle.fontSize), 10, 32),
      lineHeight: clamp(lineHeight(inputStyle), 10, 64),
      font: fontKind(inputStyle.fontFamily),
      placeholder: placeholder(input),
    };
  }

  // ---- When to report.

  // Returns the transitions under way that change the editor: of its parts and of what is around
  // them.
  function runningTransitions({input, submit}) {
    const around = (element) => element && (element.contains(input) || element.contains(submit));
    return document.getAnimations().filter((animation) => animation instanceof CSSTransition &&
        animation.playState === 'running' && around(animation.effect?.target));
  }

  // Returns whether to wait for transitions: in the middle of one between themes, a colour belongs
  // to neither. Those that keep restarting are reported all the same, but not in every frame.
  function isChanging(parts) {
    const changing = runningTransitions(parts);
    if (changing.length) {
      Promise.allSettled(changing.map((animation) => animation.finished)).then(look);
      if (waitingSince === null) {
        waitingSince = performance.now();
        setTimeout(look, patience);
      }
      if (performance.now() - waitingSince < patience) return true;
    }
    waitingSince = null;
    return false;
  }

  function report() {
    pending = false;
    const input = document.querySelector('#capture-input');
    if (!input || document.hidden) return;
    const submit = submitOf(input);
    const parts = {card: cardOf(input, submit), input, submit};
    watch(parts);
    if (isChanging(parts)) return;
    styleRules = readStyleSheets();
    const message = appearance(parts);
    styleRules = [];
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

  // Observes the attributes of the editor's parts and of everything around them.
  function watch(parts) {
    if (Object.keys(parts).every((name) => parts[name] === editor[name])) return;
    editor = parts;
    attributes.disconnect();
    const attributeFilter =
      ['class', 'style', 'placeholder', 'data-placeholder', 'aria-placeholder'];
    for (const part of [parts.input, parts.submit].filter(Boolean)) {
      attributes.observe(part, {attributes: true, attributeFilter});
      for (let node = part.parentElement; node; node = node.parentElement)
        attributes.observe(node, {attributes: true});
    }
  }

  const isStyle = (node) => node.localName === 'style' || node.localName === 'link';
  // Returns whether the change of a list of nodes may concern the editor.
  function concerns({target, addedNodes, removedNodes}) {
    if (isStyle(target)) return true;
    const {card, input} = editor;
    return [...addedNodes, ...removedNodes].some((node) => isStyle(node) || node.contains(input) ||
        (node.nodeType === Node.ELEMENT_NODE && card.contains(target) && !input.contains(target)));
  }
  const restyled = quietly((records) => {
    if (document.documentElement !== root) begin();
    const connected = [editor.input, editor.submit].every((part) => !part || part.isConnected);
    if (!editor.input || !connected || records.some(concerns)) look();
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
    editor = {};
    attributes.disconnect();
    darkScheme.addEventListener('change', look);
    attributes.observe(root, {attributes: true});
    nodes.observe(document, {childList: true, subtree: true});
    document.addEventListener('load', loaded, true);
    document.addEventListener('visibilitychange', look);
    document.fonts.addEventListener('loadingdone', look);
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
