// Controlled fields: React writes the value into the attribute, too, at every key.
import {createElement, useState} from 'react';
import {flushSync} from 'react-dom';
import {createRoot} from 'react-dom/client';

function controlled(kind) {
  return (mount) => {
    let text = '';
    let setText = null;
    const Field = () => {
      [text, setText] = useState('');
      return createElement(
        kind, {id: 'field', value: text, onChange: (event) => setText(event.target.value)});
    };
    flushSync(() => createRoot(mount).render(createElement(Field)));
    return {text: () => text, setText: (value) => flushSync(() => setText(value))};
  };
}

window.editors = {
  'react-input': controlled('input'),
  'react-textarea': controlled('textarea'),
};
