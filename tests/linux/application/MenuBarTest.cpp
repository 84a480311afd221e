#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/accellabel.h>
#include <gtkmm/box.h>
#include <gtkmm/clipboard.h>
#include <gtkmm/entry.h>
#include <gtkmm/separatormenuitem.h>
#include <gtkmm/textview.h>

#include "hosts/linux/application/MenuBar.h"
#include "hosts/linux/application/MenuCommands.h"
#include "linux/application/RecordingMenuDelegate.h"
#include "linux/capture/CapturePanelTest.h"
#include "linux/support/CyrillicLayout.h"
#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

MenuItem item(std::string title, MenuAction action) {
  return {std::move(title), action, std::nullopt};
}
MenuItem item(std::string title, MenuAction action, char key, bool shift = false) {
  return {std::move(title), action, KeyEquivalent{key, shift}};
}

std::vector<Menu> menus() {
  return {{"App",
           {item("About", DelegateAction::about),
            MenuItem::separator(),
            item("New_note_ ⌘⇧", DelegateAction::quickCapture, 'n'),
            {"Only a message", std::nullopt, std::nullopt},
            item("Hide", ApplicationAction::hide, 'h'),
            item("Quit", ApplicationAction::terminate, 'q')}},
          {"Edit",
           {item("Undo", EditAction::undo, 'z'), item("Redo", EditAction::redo, 'z', true),
            item("Cut", EditAction::cut, 'x'), item("Copy", EditAction::copy, 'c'),
            item("Paste", EditAction::paste, 'v'), item("Select All", EditAction::selectAll, 'a')}},
          {"View", {item("Reload", DelegateAction::reload, 'r')}},
          {"Window",
           {item("Show", DelegateAction::showWindow, '0'),
            item("Minimise", WindowAction::performMiniaturize, 'm'),
            item("Close", WindowAction::performClose, 'w')},
           Menu::Role::windows}};
}

class MenuBarTest : public WebViewTest {
 protected:
  MenuBarTest() {
    box_.pack_start(bar_.widget(), Gtk::PACK_SHRINK);
    window_.add(box_);
    window_.set_default_size(500, 400);
    window_.signal_delete_event().connect([this](GdkEventAny*) {
      ++closeRequests_;
      return true;
    });
    box_.show();
    bar_.addMainWindow(window_);
    bar_.setMenus(menus(), delegate_);
  }

  void addContent(GtkWidget* content) {
    gtk_box_pack_start(GTK_BOX(box_.gobj()), content, TRUE, TRUE, 0);
    gtk_widget_show(content);
    gtk_widget_grab_focus(content);
  }
  testing::AssertionResult show(Gtk::Window& window) {
    window.present();
    TestDesktop::current().display().activate(infoOf(window).id);
    return waitUntil([&] { return isReadyForKeys(window); });
  }
  // Shows a page with a focused text area that posts the code of each key it receives.
  testing::AssertionResult showPage() {
    server_.serveHtml("/text",
                      "<textarea id='text' autofocus></textarea><script>"
                      "addEventListener('keydown', event => {"
                      "  if (!['Control', 'Shift'].includes(event.key))"
                      "    webkit.messageHandlers.notes.postMessage(event.code);"
                      "});</script>");
    if (auto loaded = load("/text"); !loaded) return loaded;
    addContent(view_->widget());
    if (auto shown = show(window_); !shown) return shown;
    gtk_widget_grab_focus(view_->widget());
    return waitUntil([this] {
      return evaluate("document.hasFocus() && document.activeElement.id === 'text'") == true;
    });
  }
  testing::AssertionResult showPageAndType(const std::string& text) {
    if (auto shown = showPage(); !shown) return shown;
    keyboard_.type(text);
    return pageHas(text);
  }
  testing::AssertionResult pageHas(const std::string& text) {
    std::string last;
    auto has = waitUntil([&] {
      const Json value = evaluate("document.getElementById('text').value");
      last = value.is_string() ? value.get<std::string>() : value.dump();
      return last == text;
    });
    return has ? has : testing::AssertionFailure() << "the page has \"" << last << "\"";
  }
  testing::AssertionResult waitForActions(std::size_t count) {
    return waitUntil([&] { return delegate_.actions.size() >= count; });
  }

  std::vector<Gtk::MenuItem*> topLevelItems() {
    std::vector<Gtk::MenuItem*> items;
    for (Gtk::Widget* child : bar_.widget().get_children())
      items.push_back(dynamic_cast<Gtk::MenuItem*>(child));
    return items;
  }
  static std::vector<Gtk::MenuItem*> itemsOf(Gtk::MenuItem& top) {
    std::vector<Gtk::MenuItem*> items;
    for (Gtk::Widget* child : top.get_submenu()->get_children())
      items.push_back(dynamic_cast<Gtk::MenuItem*>(child));
    return items;
  }
  Gtk::MenuItem* itemNamed(const std::string& title) {
    for (Gtk::MenuItem* top : topLevelItems()) {
      for (Gtk::MenuItem* item : itemsOf(*top))
        if (item->get_label() == title) return item;
    }
    return nullptr;
  }
  // Opens the menu and clicks the item with the mouse.
  testing::AssertionResult choose(std::size_t menu, const std::string& title) {
    Gtk::MenuItem& top = *topLevelItems().at(menu);
    if (auto shown = waitUntil([&] { return isLaidOut(top); }); !shown) return shown;
    mouse_.click(onScreen(top).center());
    Gtk::MenuItem* item = itemNamed(title);
    // Its own reference: the item may replace the menus.
    const auto submenu = GObjectPtr<GtkWidget>::retain(GTK_WIDGET(top.get_submenu()->gobj()));
    const auto isOpen = [&] { return gtk_widget_get_mapped(submenu.get()) != FALSE; };
    const auto opened = waitUntil([&] { return isLaidOut(*item) && isOpen(); });
    if (!opened) return opened;
    runPendingEvents();
    mouse_.click(onScreen(*item).center());
    return waitUntil([&] { return !isOpen(); });
  }

  driver::Keyboard& keyboard_ = TestDesktop::current().keyboard();
  driver::Mouse& mouse_ = TestDesktop::current().mouse();
  RecordingMenuDelegate delegate_;
  int hides_ = 0;
  int terminations_ = 0;
  int closeRequests_ = 0;
  MenuBar bar_{{[this] { ++hides_; }, [this] { ++terminations_; }}};
  Gtk::Window window_;
  Gtk::Box box_{Gtk::ORIENTATION_VERTICAL};
};

TEST_F(MenuBarTest, ShowsTheMenusWithTheirItems) {
  std::vector<std::string> titles;
  for (Gtk::MenuItem* top : topLevelItems())
    titles.push_back(top->get_label());
  EXPECT_THAT(titles, ElementsAre("App", "Edit", "View", "Window"));
  const auto items = itemsOf(*topLevelItems()[0]);
  ASSERT_EQ(items.size(), 6U);
  EXPECT_EQ(items[0]->get_label(), "About");
  EXPECT_NE(dynamic_cast<Gtk::SeparatorMenuItem*>(items[1]), nullptr);
  // Underscores are literal, and the Mac's modifier symbols are replaced by key names.
  EXPECT_EQ(items[2]->get_label(), "New_note_ Ctrl+Shift+");
  EXPECT_FALSE(dynamic_cast<Gtk::Label*>(items[2]->get_child())->get_use_underline());
  EXPECT_TRUE(items[2]->get_sensitive());
  EXPECT_EQ(items[3]->get_label(), "Only a message");
  EXPECT_FALSE(items[3]->get_sensitive());
  EXPECT_EQ(items[0]->get_accessible()->get_name(), "About");
}

TEST_F(MenuBarTest, ShowsTheKeys) {
  const auto keyOf = [this](const std::string& title) {
    guint key = 0;
    GdkModifierType modifiers{};
    gtk_accel_label_get_accel(GTK_ACCEL_LABEL(itemNamed(title)->get_child()->gobj()), &key,
                              &modifiers);
    return stringFrom(GCharPtr(gtk_accelerator_name(key, modifiers)).get());
  };
  EXPECT_EQ(keyOf("About"), "");
  EXPECT_EQ(keyOf("New_note_ Ctrl+Shift+"), "<Primary>n");
  EXPECT_EQ(keyOf("Redo"), "<Primary><Shift>z");
  EXPECT_EQ(keyOf("Show"), "<Primary>0");
}

TEST_F(MenuBarTest, KeysActOnceAndDoNotReachTheFocusedPage) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+n");
  ASSERT_TRUE(waitForActions(1));
  keyboard_.chord("Control+r");
  keyboard_.chord("Control+0");
  ASSERT_TRUE(waitForActions(3));
  keyboard_.type("x");
  ASSERT_TRUE(pageHas("x"));
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::quickCapture, DelegateAction::reload,
                                             DelegateAction::showWindow));
  ASSERT_TRUE(waitForMessages());
  EXPECT_THAT(messages_.bodies(), ElementsAre("\"KeyX\""));
}

TEST_F(MenuBarTest, IgnoresKeysWithOtherModifiers) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+Shift+n");
  keyboard_.chord("Control+Alt+n");
  keyboard_.chord("Super+n");
  keyboard_.chord("Control+n");
  ASSERT_TRUE(waitForActions(1));
  runPendingEvents();
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::quickCapture));
}

TEST_F(MenuBarTest, HidesAndQuitsTheApplication) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+h");
  ASSERT_TRUE(waitUntil([&] { return hides_ == 1; }));
  keyboard_.chord("Control+q");
  ASSERT_TRUE(waitUntil([&] { return terminations_ == 1; }));
  EXPECT_EQ(hides_, 1);
  EXPECT_THAT(delegate_.actions, IsEmpty());
}

TEST_F(MenuBarTest, RequestsToCloseTheWindow) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+w");
  EXPECT_TRUE(waitUntil([&] { return closeRequests_ == 1; }));
}

TEST_F(MenuBarTest, MinimisesTheWindow) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("Control+m");
  EXPECT_TRUE(waitUntil(
      [&] { return (window_.get_window()->get_state() & Gdk::WINDOW_STATE_ICONIFIED) != 0; }));
}

TEST_F(MenuBarTest, ItemsActWhenTheyAreClicked) {
  ASSERT_TRUE(showPage());
  ASSERT_TRUE(choose(0, "About"));
  ASSERT_TRUE(waitForActions(1));
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::about));
  ASSERT_TRUE(choose(3, "Close"));
  EXPECT_TRUE(waitUntil([&] { return closeRequests_ == 1; }));
}

TEST_F(MenuBarTest, OpensOnF10) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("F10");
  ASSERT_TRUE(waitUntil([&] { return topLevelItems()[0]->get_submenu()->get_mapped(); }));
  keyboard_.chord("Down");
  keyboard_.chord("Return");
  ASSERT_TRUE(waitForActions(1));
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::about));
}

TEST_F(MenuBarTest, ThePageHandlesTheKeysOfItsEditor) {
  ASSERT_TRUE(showPageAndType("one"));
  keyboard_.chord("Control+a");
  keyboard_.chord("Control+c");
  keyboard_.chord("Control+v");
  keyboard_.chord("Control+v");
  ASSERT_TRUE(pageHas("oneone"));
  keyboard_.chord("Control+a");
  keyboard_.chord("Control+x");
  ASSERT_TRUE(pageHas(""));
  keyboard_.chord("Control+z");
  ASSERT_TRUE(pageHas("oneone"));
  keyboard_.chord("Control+z");
  ASSERT_TRUE(pageHas("one"));
  keyboard_.chord("Control+Shift+z");
  EXPECT_TRUE(pageHas("oneone"));
  ASSERT_TRUE(waitForMessages());
  const auto codes = messages_.bodies();
  EXPECT_EQ(std::ranges::count(codes, "\"KeyZ\""), 3) << "the page sees every key once";
}

TEST_F(MenuBarTest, APageMayPreventAnEditKey) {
  ASSERT_TRUE(showPageAndType("one"));
  run("addEventListener('keydown', event => { if (event.ctrlKey) event.preventDefault(); })");
  keyboard_.chord("Control+z");
  keyboard_.type("x");
  EXPECT_TRUE(pageHas("onex"));
}

TEST_F(MenuBarTest, EditItemsActOnTheEditorOfThePage) {
  ASSERT_TRUE(showPageAndType("one"));
  ASSERT_TRUE(choose(1, "Select All"));
  ASSERT_TRUE(choose(1, "Cut"));
  ASSERT_TRUE(pageHas(""));
  ASSERT_TRUE(choose(1, "Paste"));
  ASSERT_TRUE(pageHas("one"));
  ASSERT_TRUE(choose(1, "Undo"));
  ASSERT_TRUE(pageHas(""));
  ASSERT_TRUE(choose(1, "Redo"));
  ASSERT_TRUE(pageHas("one"));
  Gtk::Clipboard::get()->set_text("other");
  ASSERT_TRUE(choose(1, "Select All"));
  ASSERT_TRUE(choose(1, "Copy"));
  EXPECT_TRUE(waitUntil([] { return Gtk::Clipboard::get()->wait_for_text() == "one"; }));
}

TEST_F(MenuBarTest, KeysWorkUnderALayoutWithoutLatinLetters) {
  ASSERT_TRUE(showPageAndType("one"));
  {
    const CyrillicLayout layout;
    keyboard_.chord("Control+n");
    ASSERT_TRUE(waitForActions(1));
    keyboard_.chord("Control+a");
    keyboard_.chord("Control+x");
    ASSERT_TRUE(pageHas(""));
    keyboard_.chord("Control+v");
    ASSERT_TRUE(pageHas("one"));
    keyboard_.chord("Control+z");
    ASSERT_TRUE(pageHas(""));
    keyboard_.chord("Control+Shift+z");
    EXPECT_TRUE(pageHas("one"));
  }
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::quickCapture));
}

TEST_F(MenuBarTest, NativeFieldsHandleTheirKeysAndTheEditItems) {
  Gtk::Entry entry;
  addContent(GTK_WIDGET(entry.gobj()));
  ASSERT_TRUE(show(window_));
  entry.grab_focus();
  const auto has = [&](const std::string& text) {
    return waitUntil([&] { return entry.get_text() == text; });
  };
  keyboard_.type("one");
  keyboard_.chord("Control+a");
  keyboard_.chord("Control+c");
  keyboard_.chord("Control+v");
  keyboard_.chord("Control+v");
  ASSERT_TRUE(has("oneone"));
  ASSERT_TRUE(choose(1, "Select All"));
  ASSERT_TRUE(choose(1, "Cut"));
  ASSERT_TRUE(has(""));
  ASSERT_TRUE(choose(1, "Paste"));
  ASSERT_TRUE(has("oneone"));
  keyboard_.chord("Control+n");
  EXPECT_TRUE(waitForActions(1));
}

TEST_F(MenuBarTest, EditItemsActOnTextViewsAndLabels) {
  Gtk::TextView view;
  addContent(GTK_WIDGET(view.gobj()));
  view.get_buffer()->set_text("text");
  performEditAction(EditAction::selectAll, GTK_WIDGET(view.gobj()));
  performEditAction(EditAction::cut, GTK_WIDGET(view.gobj()));
  EXPECT_EQ(view.get_buffer()->get_text(), "");
  performEditAction(EditAction::paste, GTK_WIDGET(view.gobj()));
  EXPECT_TRUE(waitUntil([&] { return view.get_buffer()->get_text() == "text"; }));

  Gtk::Label label("label");
  label.set_selectable(true);
  addContent(GTK_WIDGET(label.gobj()));
  performEditAction(EditAction::selectAll, GTK_WIDGET(label.gobj()));
  performEditAction(EditAction::copy, GTK_WIDGET(label.gobj()));
  EXPECT_EQ(Gtk::Clipboard::get()->wait_for_text(), "label");
}

TEST_F(MenuBarTest, EditItemsIgnoreWidgetsWithoutText) {
  Gtk::Button button("Button");
  for (const EditAction action : {EditAction::undo, EditAction::redo, EditAction::cut,
                                  EditAction::copy, EditAction::paste, EditAction::selectAll}) {
    performEditAction(action, GTK_WIDGET(button.gobj()));
    performEditAction(action, nullptr);
  }
  EXPECT_EQ(button.get_label(), "Button");
}

TEST_F(MenuBarTest, SetMenusReplacesAllMenus) {
  ASSERT_TRUE(showPage());
  bar_.setMenus({{"Other", {item("Elsewhere", DelegateAction::openInBrowser, 'l')}}}, delegate_);
  ASSERT_EQ(topLevelItems().size(), 1U);
  EXPECT_TRUE(topLevelItems()[0]->get_visible());
  keyboard_.chord("Control+q");
  keyboard_.chord("Control+l");
  ASSERT_TRUE(waitForActions(1));
  EXPECT_THAT(delegate_.actions, ElementsAre(DelegateAction::openInBrowser));
  EXPECT_EQ(terminations_, 0);
  ASSERT_TRUE(choose(0, "Elsewhere"));
  EXPECT_TRUE(waitForActions(2));
}

TEST_F(MenuBarTest, ReplacedMenusAreDestroyed) {
  ASSERT_TRUE(showPage());
  int alive = 0;
  const auto watch = [&alive](Gtk::Widget& widget) {
    ++alive;
    g_object_weak_ref(
        G_OBJECT(widget.gobj()), [](gpointer count, GObject*) { --*static_cast<int*>(count); },
        &alive);
  };
  for (Gtk::MenuItem* top : topLevelItems()) {
    watch(*top);
    watch(*top->get_submenu());
    for (Gtk::MenuItem* item : itemsOf(*top))
      watch(*item);
  }
  ASSERT_GT(alive, 10);
  // A menu that has been open has a window of its own.
  ASSERT_TRUE(choose(0, "About"));
  bar_.setMenus(menus(), delegate_);
  EXPECT_TRUE(waitUntil([&] { return alive == 0; })) << alive;
}

TEST_F(MenuBarTest, ClosesAnOpenMenuWhenItIsReplaced) {
  ASSERT_TRUE(showPage());
  keyboard_.chord("F10");
  ASSERT_TRUE(waitUntil([&] { return topLevelItems()[0]->get_submenu()->get_mapped(); }));
  bar_.setMenus(menus(), delegate_);
  keyboard_.type("x");
  EXPECT_TRUE(pageHas("x"));
  ASSERT_TRUE(choose(0, "About"));
  EXPECT_TRUE(waitForActions(1));
}

TEST_F(MenuBarTest, AnItemMayReplaceTheMenus) {
  ASSERT_TRUE(showPage());
  delegate_.onAction = [this] { bar_.setMenus(menus(), delegate_); };
  keyboard_.chord("Control+n");
  ASSERT_TRUE(waitForActions(1));
  ASSERT_TRUE(choose(0, "About"));
  ASSERT_TRUE(waitForActions(2));
  keyboard_.chord("Control+n");
  ASSERT_TRUE(waitForActions(3));
}

// The menus' keys in the capture panel.
class MenuKeysInPanelTest : public CapturePanelTest {
 protected:
  void SetUp() override {
    CapturePanelTest::SetUp();
    bar_.setMenus(menus(), menuDelegate_);
    bar_.addPanel(panel_->native());
  }

  RecordingMenuDelegate menuDelegate_;
  int hides_ = 0;
  MenuBar bar_{{[this] { ++hides_; }, [] {}}};
};

TEST_F(MenuKeysInPanelTest, OnlyKeysThatConcernNeitherPageNorFrameWork) {
  ASSERT_TRUE(open());
  keyboard_.chord("Control+r");
  keyboard_.chord("Control+m");
  keyboard_.chord("Control+n");
  keyboard_.chord("Control+h");
  ASSERT_TRUE(waitUntil([&] { return hides_ == 1; }));
  EXPECT_THAT(menuDelegate_.actions, ElementsAre(DelegateAction::quickCapture));
  EXPECT_TRUE(panel_->isVisible());
}

TEST_F(MenuKeysInPanelTest, CloseDismissesThePanel) {
  ASSERT_TRUE(open());
  keyboard_.chord("Control+w");
  EXPECT_TRUE(waitUntil([&] {
    return !delegate_.keys.empty() && delegate_.keys.back() == KeyEvent{KeyEvent::escapeKey, 0};
  }));
}

TEST_F(MenuKeysInPanelTest, TheEditorHandlesItsOwnKeys) {
  for (const bool cyrillic : {false, true}) {
    ASSERT_TRUE(open());
    panel_->editor().clear();
    keyboard_.type("one two");
    ASSERT_TRUE(waitForText("one two"));
    const auto layout = cyrillic ? std::make_unique<CyrillicLayout>() : nullptr;
    keyboard_.chord("Control+z");
    EXPECT_TRUE(waitForText("one "));
    keyboard_.chord("Control+Shift+z");
    EXPECT_TRUE(waitForText("one two"));
    keyboard_.chord("Control+a");
    keyboard_.chord("Control+x");
    EXPECT_TRUE(waitForText(""));
    keyboard_.chord("Control+v");
    EXPECT_TRUE(waitForText("one two"));
  }
}

}  // namespace
}  // namespace navora
