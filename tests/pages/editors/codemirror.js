import {defaultKeymap} from '@codemirror/commands';
import {EditorView, keymap} from '@codemirror/view';

window.editors = {
  codemirror(parent) {
    const view = new EditorView({
      parent,
      extensions: [keymap.of(defaultKeymap), EditorView.contentAttributes.of({id: 'field'})],
    });
    return {
      text: () => view.state.doc.toString(),
      setText(insert) {
        view.dispatch({changes: {from: 0, to: view.state.doc.length, insert}});
      },
    };
  },
};
