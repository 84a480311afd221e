#include <gmock/gmock.h>

#include "linux/banner/UpdateBannerTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using Button = UpdateBannerButton;

class LinuxUpdateBannerAccessibilityTest : public UpdateBannerTest {
 protected:
  static AtkObject* accessible(Gtk::Widget& widget) {
    return gtk_widget_get_accessible(GTK_WIDGET(widget.gobj()));
  }
  static std::string name(Gtk::Widget& widget) {
    return stringFrom(atk_object_get_name(accessible(widget)));
  }
  static bool has(Gtk::Widget& widget, AtkStateType state) {
    AtkStateSet* states = atk_object_ref_state_set(accessible(widget));
    const bool contained = atk_state_set_contains_state(states, state) != FALSE;
    g_object_unref(states);
    return contained;
  }
};

TEST_F(LinuxUpdateBannerAccessibilityTest, NamesTheCardAndItsButtons) {
  ASSERT_TRUE(showBanner(offer()));
  EXPECT_EQ(atk_object_get_role(accessible(banner_->card())), ATK_ROLE_NOTIFICATION);
  EXPECT_EQ(name(banner_->card()), "Navora update");
  EXPECT_EQ(name(button(Button::close)), "Close until tomorrow");
  EXPECT_EQ(name(button(Button::primary)), "Update the app");
  EXPECT_EQ(atk_object_get_role(accessible(button(Button::close))), ATK_ROLE_PUSH_BUTTON);
  EXPECT_EQ(name(*labels()[0]), offer().title);
  EXPECT_EQ(name(*labels()[2]), offer().detail);

  auto content = offer();
  content.accessibilityLabel = "Обновление Наворы";
  content.button(Button::close).accessibilityLabel.clear();
  content.button(Button::primary).title = "Обновить";
  banner_->setContent(content);
  EXPECT_EQ(name(banner_->card()), "Обновление Наворы");
  EXPECT_EQ(name(button(Button::close)), "×");
  EXPECT_EQ(name(button(Button::primary)), "Обновить");
}

TEST_F(LinuxUpdateBannerAccessibilityTest, ReportsVisibleAndSensitiveWidgets) {
  ASSERT_TRUE(showBanner(offer()));
  EXPECT_TRUE(waitUntil([&] { return has(banner_->card(), ATK_STATE_SHOWING); }));
  EXPECT_TRUE(has(button(Button::secondary), ATK_STATE_SENSITIVE));
  auto content = offer();
  content.button(Button::secondary).enabled = false;
  content.button(Button::tertiary).visible = false;
  banner_->setContent(content);
  EXPECT_FALSE(has(button(Button::secondary), ATK_STATE_SENSITIVE));
  EXPECT_FALSE(has(button(Button::tertiary), ATK_STATE_VISIBLE));
  banner_->setHidden(true);
  EXPECT_FALSE(has(banner_->card(), ATK_STATE_SHOWING));
}

TEST_F(LinuxUpdateBannerAccessibilityTest, ButtonsHaveAnAction) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(atk_action_do_action(ATK_ACTION(accessible(button(Button::tertiary))), 0));
  ASSERT_TRUE(waitUntil([this] { return !delegateOfBanner_.presses.empty(); }));
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::tertiary));
}

TEST_F(LinuxUpdateBannerAccessibilityTest, ReportsTheProgress) {
  ASSERT_TRUE(showBanner(downloading()));
  banner_->setProgress(UpdateBannerProgress::ofFraction(0.4));
  AtkObject* bar = accessible(banner_->bar().widget());
  double value = 0;
  char* text = nullptr;
  atk_value_get_value_and_text(ATK_VALUE(bar), &value, &text);
  g_free(text);
  EXPECT_DOUBLE_EQ(value, 0.4);
  AtkRelationSet* relations = atk_object_ref_relation_set(bar);
  AtkRelation* label = atk_relation_set_get_relation_by_type(relations, ATK_RELATION_LABELLED_BY);
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(g_ptr_array_index(atk_relation_get_target(label), 0), accessible(*labels()[0]));
  g_object_unref(relations);
}

TEST_F(LinuxUpdateBannerAccessibilityTest, EmitsAnnouncements) {
  std::vector<std::string> heard;
  const bool polite = g_signal_lookup("notification", ATK_TYPE_OBJECT) != 0;
  const gulong handler =
      g_signal_connect(accessible(banner_->card()), polite ? "notification" : "announcement",
                       polite ? G_CALLBACK(+[](AtkObject*, const char* text, int, gpointer texts) {
                         static_cast<std::vector<std::string>*>(texts)->push_back(text);
                       })
                              : G_CALLBACK(+[](AtkObject*, const char* text, gpointer texts) {
                                  static_cast<std::vector<std::string>*>(texts)->push_back(text);
                                }),
                       &heard);
  ASSERT_NE(handler, 0U);
  ASSERT_TRUE(showBanner(offer()));
  banner_->announce("Navora 2.0 is available");
  banner_->announce("⌘⇧Space");
  EXPECT_THAT(heard, ElementsAre("Navora 2.0 is available", "Ctrl+Shift+Space"));
}

}  // namespace
}  // namespace navora
