#include "app/NavoraMenus.h"

#include <optional>
#include <string>
#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

MenuTarget targetOf(MenuAction action) {
  switch (action) {
    case MenuAction::hide:
    case MenuAction::terminate:
      return MenuTarget::application;
    case MenuAction::undo:
    case MenuAction::redo:
    case MenuAction::cut:
    case MenuAction::copy:
    case MenuAction::paste:
    case MenuAction::selectAll:
    case MenuAction::performMiniaturize:
    case MenuAction::performClose:
      return MenuTarget::responderChain;
    default:
      return MenuTarget::delegate;
  }
}

MenuItem item(std::string title, MenuAction action,
              std::optional<KeyEquivalent> key = std::nullopt) {
  return {std::move(title), action, key, targetOf(action)};
}

Menu applicationMenu() {
  return {L("Навора"),
          {item(L("О Наворе"), MenuAction::about),
           item(L("Проверить обновления…"), MenuAction::checkForUpdates), MenuItem::separator(),
           item(L("Включить уведомления…"), MenuAction::enableNotifications),
           item(L("Новая запись"), MenuAction::quickCapture, KeyEquivalent{'n'}),
           MenuItem::separator(), item(L("Скрыть Навору"), MenuAction::hide, KeyEquivalent{'h'}),
           item(L("Завершить Навору"), MenuAction::terminate, KeyEquivalent{'q'})}};
}

Menu editMenu() {
  return {L("Правка"),
          {item(L("Отменить"), MenuAction::undo, KeyEquivalent{'z'}),
           item(L("Повторить"), MenuAction::redo, KeyEquivalent{'z', true}),
           item(L("Вырезать"), MenuAction::cut, KeyEquivalent{'x'}),
           item(L("Копировать"), MenuAction::copy, KeyEquivalent{'c'}),
           item(L("Вставить"), MenuAction::paste, KeyEquivalent{'v'}),
           item(L("Выбрать всё"), MenuAction::selectAll, KeyEquivalent{'a'})}};
}

Menu viewMenu() {
  return {L("Вид"),
          {item(L("Обновить"), MenuAction::reload, KeyEquivalent{'r'}),
           item(L("Открыть в браузере"), MenuAction::openInBrowser, KeyEquivalent{'l'})}};
}

Menu windowMenu() {
  return {L("Окно"),
          {item(L("Показать Навору"), MenuAction::showWindow, KeyEquivalent{'0'}),
           item(L("Свернуть"), MenuAction::performMiniaturize, KeyEquivalent{'m'}),
           item(L("Закрыть окно"), MenuAction::performClose, KeyEquivalent{'w'})},
          Menu::Role::windows};
}

}  // namespace

std::vector<Menu> NavoraMenus::mainMenu() {
  return {applicationMenu(), editMenu(), viewMenu(), windowMenu()};
}

Menu NavoraMenus::statusMenu() {
  return {L("Навора"),
          {item(L("Новая запись  ⌘⇧Пробел"), MenuAction::quickCapture),
           item(L("Показать Навору"), MenuAction::showWindow),
           item(L("Проверить обновления…"), MenuAction::checkForUpdates),
           item(L("Включить уведомления…"), MenuAction::enableNotifications), MenuItem::separator(),
           item(L("Завершить Навору"), MenuAction::terminate)}};
}

MenuItem NavoraMenus::shortcutTaken() {
  return {L("⌘⇧Пробел занят — используйте меню «Новая запись»"), std::nullopt, std::nullopt,
          MenuTarget::delegate};
}

AboutPanelOptions NavoraMenus::about() {
  return {L("Навора"), L("⌘⇧Пробел — новая запись из любого приложения.\n"
                         "Уведомления приходят, пока Навора запущена.\n"
                         "Для работы требуется интернет.")};
}

}  // namespace navora
