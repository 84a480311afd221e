import {baseKeymap} from 'prosemirror-commands';
import {keymap} from 'prosemirror-keymap';
import {schema} from 'prosemirror-schema-basic';
import {EditorState} from 'prosemirror-state';
import {EditorView} from 'prosemirror-view';

window.editors = {
  prosemirror(mount) {
    const view = new EditorView(mount, {
      state: EditorState.create({schema, plugins: [keymap(baseKeymap)]}),
      attributes: {id: 'field'},
    });
    return {
      text: () => view.state.doc.textBetween(0, view.state.doc.content.size, '\n'),
      setText(value) {
        const {tr, doc} = view.state;
        const content = schema.node('paragraph', null, value ? schema.text(value) : null);
        view.dispatch(tr.replaceWith(0, doc.content.size, content));
      },
    };
  },
};
