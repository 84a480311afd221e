// An editor that cancels `beforeinput` and changes its content itself, so that there are no `input`
// events.
window.editors = {
  'self-made'(mount) {
    const field = document.createElement('div');
    field.id = 'field';
    field.contentEditable = 'true';
    mount.append(field);
    let text = '';
    const show = () => {
      field.textContent = text;
      const caret = field.firstChild ?? field;
      getSelection().collapse(caret, text.length);
    };
    field.addEventListener('beforeinput', (event) => {
      event.preventDefault();
      const isAll = getSelection().toString() === text;
      switch (event.inputType) {
        case 'insertText':
          text += event.data;
          break;
        case 'insertFromPaste':
          text += event.dataTransfer.getData('text/plain');
          break;
        case 'deleteContentBackward':
          text = isAll ? '' : text.slice(0, -1);
          break;
      }
      show();
    });
    return {
      text: () => text,
      setText(value) {
        text = value;
        show();
      },
    };
  },
};
