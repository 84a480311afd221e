#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/NavoraMenus.h"
#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"

namespace navora {
namespace {

using testing::ElementsAre;

MenuItem item(std::string title, MenuAction action,
              std::optional<KeyEquivalent> key = std::nullopt) {
  return {std::move(title), action, key};
}

std::vector<std::string> titles(const std::vector<Menu>& menus) {
  std::vector<std::string> result;
  for (const Menu& menu : menus)
    result.push_back(menu.title);
  return result;
}

// Without catalogs, every text is its key.
class NavoraMenusTest : public testing::Test {
 protected:
  LocaleScope locale_;
};

TEST_F(NavoraMenusTest, HasFourMenusOfWhichTheLastHasTheWindowsRole) {
  const auto menus = NavoraMenus::mainMenu();
  EXPECT_THAT(titles(menus), ElementsAre("Навора", "Правка", "Вид", "Окно"));
  for (const Menu& menu : menus)
    EXPECT_EQ(menu.role == Menu::Role::windows, menu.title == "Окно") << menu.title;
}

TEST_F(NavoraMenusTest, HasTheApplicationsActionsInTheFirstMenu) {
  EXPECT_THAT(
      NavoraMenus::mainMenu()[0].items,
      ElementsAre(
          item("О Наворе", DelegateAction::about),
          item("Проверить обновления…", DelegateAction::checkForUpdates), MenuItem::separator(),
          item("Включить уведомления…", DelegateAction::enableNotifications),
          item("Новая запись", DelegateAction::quickCapture, KeyEquivalent{'n'}),
          MenuItem::separator(), item("Скрыть Навору", ApplicationAction::hide, KeyEquivalent{'h'}),
          item("Завершить Навору", ApplicationAction::terminate, KeyEquivalent{'q'})));
}

TEST_F(NavoraMenusTest, HasRedoRightAfterUndo) {
  EXPECT_THAT(NavoraMenus::mainMenu()[1].items,
              ElementsAre(item("Отменить", EditAction::undo, KeyEquivalent{'z'}),
                          item("Повторить", EditAction::redo, KeyEquivalent{'z', true}),
                          item("Вырезать", EditAction::cut, KeyEquivalent{'x'}),
                          item("Копировать", EditAction::copy, KeyEquivalent{'c'}),
                          item("Вставить", EditAction::paste, KeyEquivalent{'v'}),
                          item("Выбрать всё", EditAction::selectAll, KeyEquivalent{'a'})));
}

TEST_F(NavoraMenusTest, HasThePagesActionsInTheThirdMenu) {
  EXPECT_THAT(
      NavoraMenus::mainMenu()[2].items,
      ElementsAre(item("Обновить", DelegateAction::reload, KeyEquivalent{'r'}),
                  item("Открыть в браузере", DelegateAction::openInBrowser, KeyEquivalent{'l'})));
}

TEST_F(NavoraMenusTest, HasTheWindowsActionsInTheLastMenu) {
  EXPECT_THAT(NavoraMenus::mainMenu()[3].items,
              ElementsAre(item("Показать Навору", DelegateAction::showWindow, KeyEquivalent{'0'}),
                          item("Свернуть", WindowAction::performMiniaturize, KeyEquivalent{'m'}),
                          item("Закрыть окно", WindowAction::performClose, KeyEquivalent{'w'})));
}

TEST_F(NavoraMenusTest, HasAShortStatusMenuWithoutKeys) {
  EXPECT_THAT(
      NavoraMenus::statusMenu().items,
      ElementsAre(item("Новая запись  ⌘⇧Пробел", DelegateAction::quickCapture),
                  item("Показать Навору", DelegateAction::showWindow),
                  item("Проверить обновления…", DelegateAction::checkForUpdates),
                  item("Включить уведомления…", DelegateAction::enableNotifications),
                  MenuItem::separator(), item("Завершить Навору", ApplicationAction::terminate)));
}

TEST_F(NavoraMenusTest, DisablesTheLineAboutATakenShortcut) {
  const MenuItem line = NavoraMenus::shortcutTaken();
  EXPECT_EQ(line.title, "⌘⇧Пробел занят — используйте меню «Новая запись»");
  EXPECT_FALSE(line.action);
  EXPECT_FALSE(line.keyEquivalent);
  EXPECT_FALSE(line.isSeparator());
}

TEST_F(NavoraMenusTest, DescribesTheApplicationInThreeLines) {
  const auto about = NavoraMenus::about();
  EXPECT_EQ(about.applicationName, "Навора");
  EXPECT_EQ(std::ranges::count(about.credits, '\n'), 2);
  EXPECT_EQ(about.credits.find("⌘⇧Пробел — новая запись"), 0U);
}

TEST_F(NavoraMenusTest, UsesEveryKeyOnce) {
  std::vector<KeyEquivalent> keys;
  for (const Menu& menu : NavoraMenus::mainMenu()) {
    for (const MenuItem& each : menu.items) {
      if (!each.keyEquivalent) continue;
      EXPECT_EQ(std::ranges::count(keys, *each.keyEquivalent), 0) << each.title;
      keys.push_back(*each.keyEquivalent);
    }
  }
  EXPECT_EQ(keys.size(), 14U);
}

TEST_F(NavoraMenusTest, UsesTheRequestedLanguageAndRussianForMissingTexts) {
  locale_.setCatalogs(R"({"en": {"Правка": "Edit", "Вырезать": "Cut"}})");
  DesktopLocale::requested = "en";
  const Menu edit = NavoraMenus::mainMenu()[1];
  EXPECT_EQ(edit.title, "Edit");
  EXPECT_EQ(edit.items[0].title, "Отменить");
  EXPECT_EQ(edit.items[2].title, "Cut");
}

}  // namespace
}  // namespace navora
