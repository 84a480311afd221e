#include "app/NavoraMenus.h"

#include <optional>
#include <string>
#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

MenuItem item(std::string title, MenuAction action,
              std::optional<KeyEquivalent> key = std::nullopt) {
  return {std::move(title), action, key};
}

Menu applicationMenu() {
  return {
      L("Навора"),
      {item(L("О Наворе"), DelegateAction::about),
       item(L("Проверить обновления…"), DelegateAction::checkForUpdates), MenuItem::separator(),
       item(L("Включить уведомления…"), DelegateAction::enableNotifications),
       item(L("Новая запись"), DelegateAction::quickCapture, KeyEquivalent{'n'}),
       MenuItem::separator(), item(L("Скрыть Навору"), ApplicationAction::hide, KeyEquivalent{'h'}),
       item(L("Завершить Навору"), ApplicationAction::terminate, KeyEquivalent{'q'})}};
}

Menu editMenu() {
  return {L("Правка"),
          {item(L("Отменить"), EditAction::undo, KeyEquivalent{'z'}),
           item(L("Повторить"), EditAction::redo, KeyEquivalent{'z', true}),
           item(L("Вырезать"), EditAction::cut, KeyEquivalent{'x'}),
           item(L("Копировать"), EditAction::copy, KeyEquivalent{'c'}),
           item(L("Вставить"), EditAction::paste, KeyEquivalent{'v'}),
           item(L("Выбрать всё"), EditAction::selectAll, KeyEquivalent{'a'})}};
}

Menu viewMenu() {
  return {L("Вид"),
          {item(L("Обновить"), DelegateAction::reload, KeyEquivalent{'r'}),
           item(L("Открыть в браузере"), DelegateAction::openInBrowser, KeyEquivalent{'l'})}};
}

Menu windowMenu() {
  return {L("Окно"),
          {item(L("Показать Навору"), DelegateAction::showWindow, KeyEquivalent{'0'}),
           item(L("Свернуть"), WindowAction::performMiniaturize, KeyEquivalent{'m'}),
           item(L("Закрыть окно"), WindowAction::performClose, KeyEquivalent{'w'})},
          Menu::Role::windows};
}

}  // namespace

std::vector<Menu> NavoraMenus::mainMenu() {
  return {applicationMenu(), editMenu(), viewMenu(), windowMenu()};
}

Menu NavoraMenus::statusMenu() {
  return {L("Навора"),
          {item(L("Новая запись  ⌘⇧Пробел"), DelegateAction::quickCapture),
           item(L("Показать Навору"), DelegateAction::showWindow),
           item(L("Проверить обновления…"), DelegateAction::checkForUpdates),
           item(L("Включить уведомления…"), DelegateAction::enableNotifications),
           MenuItem::separator(), item(L("Завершить Навору"), ApplicationAction::terminate)}};
}

MenuItem NavoraMenus::shortcutTaken() {
  return {L("⌘⇧Пробел занят — используйте меню «Новая запись»"), std::nullopt, std::nullopt};
}

AboutPanelOptions NavoraMenus::about() {
  return {L("Навора"), L("⌘⇧Пробел — новая запись из любого приложения.\n"
                         "Уведомления приходят, пока Навора запущена.\n"
                         "Для работы требуется интернет.")};
}

}  // namespace navora
