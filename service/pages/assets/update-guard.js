// Reports unsaved input that only the page knows of when the desktop application is about to
// restart for an update: the draft, which may come from an earlier visit, and a note that is being
// saved. The application's own guard detects everything else and freezes the page. Without that
// guard this script installs none, so that the page does not report itself ready.
import {editorText, isSending} from './today.js';

const reasons = {
  ru: {
    sending: 'Дождитесь сохранения записи, затем продолжите обновление.',
    draft: 'Сохраните или удалите начатую запись, затем продолжите обновление.',
  },
  en: {
    sending: 'Wait until your note has been saved, then continue the update.',
    draft: 'Save or delete the note you’re writing, then continue the update.',
  },
  es: {
    sending: 'Espera a que se guarde la nota y después continúa la actualización.',
    draft: 'Guarda o borra la nota que estás escribiendo y después continúa la actualización.',
  },
  'pt-BR': {
    sending: 'Aguarde até que a nota seja salva e depois continue a atualização.',
    draft: 'Salve ou apague a nota que você está escrevendo e depois continue a atualização.',
  },
  de: {
    sending: 'Warte, bis deine Notiz gespeichert ist, und setze dann das Update fort.',
    draft: 'Speichere oder lösche die angefangene Notiz und setze dann das Update fort.',
  },
  fr: {
    sending: 'Attendez que la note soit enregistrée, puis poursuivez la mise à jour.',
    draft: 'Enregistrez ou supprimez la note que vous écrivez, puis poursuivez la mise à jour.',
  },
  ja: {
    sending: 'メモの保存が終わるのを待ってから、アップデートを続けてください。',
    draft: '書きかけのメモを保存または削除してから、アップデートを続けてください。',
  },
};

function reason() {
  const known = reasons[document.documentElement.lang] ?? reasons.en;
  if (isSending()) return known.sending;
  return editorText() ? known.draft : null;
}

const guard = window.NavoraUpdateGuard;
if (guard) {
  window.NavoraUpdateGuard = Object.freeze({
    prepare() {
      const waiting = reason();
      if (waiting === null) return guard.prepare();
      guard.resume();
      return waiting;
    },
    resume: guard.resume,
  });
}
