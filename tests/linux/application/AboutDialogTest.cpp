#include <gtest/gtest.h>
#include <gtkmm/icontheme.h>

#include "fakes/LocaleScope.h"
#include "hosts/linux/application/AboutDialog.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

class AboutDialogTest : public WindowTest {
 protected:
  void SetUp() override { ASSERT_TRUE(show(*window_)); }

  testing::AssertionResult open() {
    panel_.show(&window_->native(), {"Navora", "⌘⇧Space writes a note.\nSecond <line> & more."});
    return waitUntil([this] { return isReadyForKeys(*panel_.native()); });
  }
  testing::AssertionResult waitUntilClosed() {
    return waitUntil([this] { return !panel_.native()->get_visible(); });
  }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  AboutDialog panel_;
};

TEST_F(AboutDialogTest, SaysWhatTheApplicationIs) {
  ASSERT_TRUE(open());
  const Gtk::AboutDialog& dialog = *panel_.native();
  EXPECT_EQ(dialog.get_program_name(), "Navora");
  EXPECT_EQ(dialog.get_title(), "Navora");
  EXPECT_EQ(dialog.get_version(), NAVORA_VERSION);
  EXPECT_EQ(dialog.get_comments(), "Ctrl+Shift+Space writes a note.\nSecond <line> & more.");
}

TEST_F(AboutDialogTest, LetsTheWindowBelowGoOnWorking) {
  ASSERT_TRUE(open());
  EXPECT_FALSE(panel_.native()->get_modal());
  EXPECT_EQ(panel_.native()->get_transient_for(), &window_->native());
}

TEST_F(AboutDialogTest, ClosesWithEscapeAndOpensAgain) {
  ASSERT_TRUE(open());
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntilClosed());
  ASSERT_TRUE(open());
  panel_.native()->close();
  ASSERT_TRUE(waitUntilClosed());
  ASSERT_TRUE(open());
  panel_.native()->response(Gtk::RESPONSE_CANCEL);
  ASSERT_TRUE(waitUntilClosed());
}

TEST_F(AboutDialogTest, IsThereOnceWithTheLatestTexts) {
  ASSERT_TRUE(open());
  const Gtk::AboutDialog* first = panel_.native();
  panel_.show(&window_->native(), {"Навора", "Other"});
  ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(*panel_.native()); }));
  EXPECT_EQ(panel_.native(), first);
  EXPECT_EQ(first->get_program_name(), "Навора");
  EXPECT_EQ(first->get_comments(), "Other");
}

TEST_F(AboutDialogTest, ClosesInTheLanguageOfTheInterface) {
  const auto title = [this] {
    return std::string(gtk_button_get_label(GTK_BUTTON(gtk_dialog_get_widget_for_response(
        GTK_DIALOG(panel_.native()->gobj()), GTK_RESPONSE_DELETE_EVENT))));
  };
  LocaleScope locale;
  locale.setCatalogs(R"({"de": {"Закрыть": "Schließen"}})");
  locale.prefer({"ru"});
  ASSERT_TRUE(open());
  EXPECT_EQ(title(), "Закрыть");
  locale.prefer({"de"});
  ASSERT_TRUE(open());
  EXPECT_EQ(title(), "Schließen");
}

TEST_F(AboutDialogTest, NeedsNoWindowBelow) {
  window_->orderOut();
  ASSERT_TRUE(open());
  EXPECT_EQ(panel_.native()->get_transient_for(), nullptr);
}

TEST_F(AboutDialogTest, ShowsTheIconOnlyWhereItIsInstalled) {
  constexpr const char* name = "example.navora.Navora";
  const auto theme = Gtk::IconTheme::get_default();
  ASSERT_FALSE(theme->has_icon(name)) << "the tests' desktop has it installed";
  ASSERT_TRUE(open());
  EXPECT_EQ(panel_.native()->get_logo_icon_name(), "");
  EXPECT_EQ(panel_.native()->get_logo()->get_width(), 1);
}

}  // namespace
}  // namespace navora
