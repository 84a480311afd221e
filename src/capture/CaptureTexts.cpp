#include "capture/CaptureTexts.h"

#include "locale/DesktopLocale.h"

namespace navora {

std::string CaptureTexts::title() {
  return L("Быстрая запись — Навора");
}

std::string CaptureTexts::editorLabel() {
  return L("Новая запись");
}

std::string CaptureTexts::placeholder() {
  return L("Какая мысль зацепила?");
}

std::string CaptureTexts::submitToolTip() {
  return L("Сохранить запись — {CAPTURE_MOD}+Enter", {{"CAPTURE_MOD", "⌘"}});
}

std::string CaptureTexts::submitLabel() {
  return L("Сохранить запись");
}

std::string CaptureTexts::hint() {
  return L("⌘+Enter — отправить, Enter — новая строка");
}

std::string CaptureTexts::tooLong() {
  return L("В записи может быть не больше 10 000 символов.");
}

std::string CaptureTexts::saving() {
  return L("Сохраняем запись…");
}

std::string CaptureTexts::unconfirmedText() {
  return L(
      "Сначала нужно подтвердить прежнюю отправку. Верните исходный текст для безопасного "
      "повтора.");
}

std::string CaptureTexts::loginDone() {
  return L("Вход выполнен.") + " " + submitToolTip();
}

CaptureMessage CaptureTexts::failure(const CaptureError& error, bool unconfirmed) {
  switch (error.kind) {
    case CaptureError::Kind::message:
      return error.text;
    case CaptureError::Kind::login:
      return [] { return L("Войдите в Навору. Черновик останется здесь."); };
    case CaptureError::Kind::changedAccount:
      return [] {
        return L(
            "Учётная запись изменилась. Вернитесь в прежнюю учётную запись для отправки этого "
            "черновика.");
      };
    case CaptureError::Kind::network:
      break;
  }
  if (unconfirmed) return [] { return L("Сервер не подтвердил сохранение. Повторите отправку."); };
  return [] { return L("Нет связи с сервером. Черновик сохранён — попробуйте ещё раз."); };
}

}  // namespace navora
