#include <gtest/gtest.h>
#include <gtkmm/icontheme.h>

#include "fakes/LocaleScope.h"
#include "hosts/linux/application/AboutDialog.h"
#include "hosts/linux/system/ApplicationId.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

class AboutDialogTest : public WindowTest {
 protected:
  void SetUp() override { ASSERT_TRUE(show(*window_)); }

  testing::AssertionResult open() {
    dialog_.show(&window_->native(), {"Navora", "⌘⇧Space writes a note.\nSecond <line> & more."});
    return waitUntil([this] { return isReadyForKeys(*dialog_.native()); });
  }
  testing::AssertionResult waitUntilClosed() {
    return waitUntil([this] { return !dialog_.native()->get_visible(); });
  }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  AboutDialog dialog_;
};

TEST_F(AboutDialogTest, ShowsNameVersionAndCredits) {
  ASSERT_TRUE(open());
  const Gtk::AboutDialog& dialog = *dialog_.native();
  EXPECT_EQ(dialog.get_program_name(), "Navora");
  EXPECT_EQ(dialog.get_version(), NAVORA_VERSION);
  EXPECT_EQ(dialog.get_comments(), "Ctrl+Shift+Space writes a note.\nSecond <line> & more.");
}

TEST_F(AboutDialogTest, IsTransientForTheWindowButNotModal) {
  ASSERT_TRUE(open());
  EXPECT_FALSE(dialog_.native()->get_modal());
  EXPECT_EQ(dialog_.native()->get_transient_for(), &window_->native());
}

TEST_F(AboutDialogTest, ClosesOnEscapeAndOpensAgain) {
  ASSERT_TRUE(open());
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntilClosed());
  ASSERT_TRUE(open());
  dialog_.native()->close();
  ASSERT_TRUE(waitUntilClosed());
  ASSERT_TRUE(open());
  dialog_.native()->response(Gtk::RESPONSE_CANCEL);
  ASSERT_TRUE(waitUntilClosed());
}

TEST_F(AboutDialogTest, IsReusedWithTheLatestTexts) {
  ASSERT_TRUE(open());
  const Gtk::AboutDialog* first = dialog_.native();
  dialog_.show(&window_->native(), {"Навора", "Other"});
  ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(*dialog_.native()); }));
  EXPECT_EQ(dialog_.native(), first);
  EXPECT_EQ(first->get_program_name(), "Навора");
  EXPECT_EQ(first->get_comments(), "Other");
}

TEST_F(AboutDialogTest, HasATitleInTheInterfaceLanguage) {
  LocaleScope locale;
  locale.setCatalogs(R"({"de": {"О Наворе": "Über Navora"}})");
  locale.prefer({"ru"});
  ASSERT_TRUE(open());
  EXPECT_EQ(dialog_.native()->get_title(), "О Наворе");
  locale.prefer({"de"});
  ASSERT_TRUE(open());
  EXPECT_EQ(dialog_.native()->get_title(), "Über Navora");
}

TEST_F(AboutDialogTest, LabelsTheCloseButtonInTheInterfaceLanguage) {
  const auto title = [this] {
    return std::string(gtk_button_get_label(GTK_BUTTON(gtk_dialog_get_widget_for_response(
        GTK_DIALOG(dialog_.native()->gobj()), GTK_RESPONSE_DELETE_EVENT))));
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

TEST_F(AboutDialogTest, OpensWithoutAParent) {
  window_->orderOut();
  ASSERT_TRUE(open());
  EXPECT_EQ(dialog_.native()->get_transient_for(), nullptr);
}

TEST_F(AboutDialogTest, HasAnEmptyLogoWithoutAnIcon) {
  ASSERT_FALSE(Gtk::IconTheme::get_default()->has_icon(applicationId))
      << "the tests' desktop has it installed";
  ASSERT_TRUE(open());
  EXPECT_EQ(dialog_.native()->get_logo_icon_name(), "");
  EXPECT_EQ(dialog_.native()->get_logo()->get_width(), 1);
}

}  // namespace
}  // namespace navora
