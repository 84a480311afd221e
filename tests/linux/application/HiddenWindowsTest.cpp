#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include "hosts/linux/application/HiddenWindows.h"
#include "linux/support/MainLoop.h"

namespace navora {
namespace {

class HiddenWindowsTest : public testing::Test {
 protected:
  HiddenWindowsTest() {
    main_.show();
    first_.show();
    second_.show();
  }

  GtkWidget* widgetOf(Gtk::Window& window) { return GTK_WIDGET(window.gobj()); }

  Gtk::Window main_;
  Gtk::Window first_;
  Gtk::Window second_;
  Gtk::Window closed_;
  HiddenWindows hidden_;
};

TEST_F(HiddenWindowsTest, HidesTheWindowsOnTheScreenAndShowsThemAgain) {
  hidden_.hideAllBut({nullptr, widgetOf(main_)});
  EXPECT_TRUE(main_.get_visible());
  EXPECT_FALSE(first_.get_visible());
  EXPECT_FALSE(second_.get_visible());
  hidden_.showAgain();
  EXPECT_TRUE(first_.get_visible());
  EXPECT_TRUE(second_.get_visible());
  EXPECT_FALSE(closed_.get_visible());
}

TEST_F(HiddenWindowsTest, ShowsThemAgainOnce) {
  hidden_.hideAllBut({});
  hidden_.showAgain();
  first_.hide();
  hidden_.showAgain();
  EXPECT_FALSE(first_.get_visible());
}

TEST_F(HiddenWindowsTest, KeepsThoseOfAnEarlierTimeHidden) {
  hidden_.hideAllBut({widgetOf(second_)});
  hidden_.hideAllBut({});
  EXPECT_FALSE(second_.get_visible());
  hidden_.showAgain();
  EXPECT_TRUE(main_.get_visible());
  EXPECT_TRUE(first_.get_visible());
  EXPECT_TRUE(second_.get_visible());
}

TEST_F(HiddenWindowsTest, LeavesOutADestroyedWindow) {
  GtkWidget* dialog = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_widget_show(dialog);
  hidden_.hideAllBut({widgetOf(main_), widgetOf(first_), widgetOf(second_)});
  gtk_widget_destroy(dialog);
  hidden_.showAgain();
  runPendingEvents();
  GList* windows = gtk_window_list_toplevels();
  EXPECT_EQ(g_list_find(windows, dialog), nullptr);
  g_list_free(windows);
}

TEST_F(HiddenWindowsTest, LeavesPopupsToTheirOwners) {
  Gtk::Window popup(Gtk::WINDOW_POPUP);
  popup.show();
  hidden_.hideAllBut({});
  EXPECT_TRUE(popup.get_visible());
}

}  // namespace
}  // namespace navora
