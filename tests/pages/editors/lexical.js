import {registerPlainText} from '@lexical/plain-text';
import {$createParagraphNode, $createTextNode, $getRoot, createEditor} from 'lexical';

window.editors = {
  lexical(mount) {
    const field = document.createElement('div');
    field.id = 'field';
    field.contentEditable = 'true';
    mount.append(field);
    const editor = createEditor({
      onError(error) {
        throw error;
      },
    });
    editor.setRootElement(field);
    registerPlainText(editor);
    return {
      text: () => editor.getEditorState().read(() => $getRoot().getTextContent()),
      setText(value) {
        const replace = () => {
          const paragraph = $createParagraphNode();
          if (value) paragraph.append($createTextNode(value));
          $getRoot().clear().append(paragraph);
        };
        editor.update(replace, {discrete: true});
      },
    };
  },
};
