import Quill from 'quill';

window.editors = {
  quill(mount) {
    const quill = new Quill(mount);
    quill.root.id = 'field';
    return {
      text: () => quill.getText().trimEnd(),
      setText: (value) => quill.setText(value ? `${value}\n` : ''),
    };
  },
};
