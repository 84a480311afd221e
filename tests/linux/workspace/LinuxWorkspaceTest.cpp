#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtkmm/window.h>

#include "hosts/linux/workspace/LinuxWorkspace.h"
#include "linux/support/DebugLogRecorder.h"
#include "linux/support/MainLoop.h"
#include "linux/support/TestDesktop.h"
#include "linux/support/Widgets.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class LinuxWorkspaceTest : public testing::Test {
 protected:
  void SetUp() override { opened_.clear(); }

  testing::AssertionResult waitForCount(std::size_t count) {
    return waitUntil([&] { return opened_.all().size() >= count; });
  }

  driver::OpenedUrls& opened_ = TestDesktop::current().openedUrls();
  LinuxWorkspace workspace_;
};

TEST_F(LinuxWorkspaceTest, PassesTheAddressToItsHandlerUnchanged) {
  const std::string address = "https://navora.example/a%20b?q=%22x%22&y='z'#part";
  workspace_.open(*Url::parse(address));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_THAT(opened_.all(), ElementsAre(address));
}

TEST_F(LinuxWorkspaceTest, LeavesCharactersAsTheyWereParsed) {
  const std::string address = "https://navora.example/a[]=1|2?p=100%#/#room";
  workspace_.open(*Url::parse(address));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_THAT(opened_.all(), ElementsAre(address));
}

TEST_F(LinuxWorkspaceTest, OpensMailAndTelephoneAddressesToo) {
  workspace_.open(*Url::parse("mailto:someone@navora.example"));
  workspace_.open(*Url::parse("tel:+37100000000"));
  ASSERT_TRUE(waitForCount(2));
  EXPECT_THAT(opened_.all(),
              UnorderedElementsAre("mailto:someone@navora.example", "tel:+37100000000"));
}

TEST_F(LinuxWorkspaceTest, AnAddressWithoutAHandlerIsIgnored) {
  workspace_.open(*Url::parse("navora-unknown-scheme:something"));
  workspace_.open(*Url::parse("https://navora.example/marker"));
  ASSERT_TRUE(waitForCount(1));
  EXPECT_THAT(opened_.all(), ElementsAre("https://navora.example/marker"));
}

TEST_F(LinuxWorkspaceTest, ReportsInTheDebugLogThatNoProgramOpenedTheAddress) {
  DebugLogRecorder log("navora-navigation");
  workspace_.open(*Url::parse("navora-unknown-scheme:something"));
  ASSERT_TRUE(waitUntil([&] { return !log.lines().empty(); }));
  EXPECT_THAT(log.lines(),
              ElementsAre(StartsWith("No program opened navora-unknown-scheme:something: ")));
}

class FrontmostApplicationTest : public testing::Test {
 protected:
  static std::unique_ptr<Gtk::Window> makeWindow(const std::string& title) {
    auto window = std::make_unique<Gtk::Window>();
    window->set_title(title);
    window->set_default_size(300, 200);
    return window;
  }
  static testing::AssertionResult show(Gtk::Window& window) {
    window.present();
    TestDesktop::current().display().activate(infoOf(window).id);
    return becomesActive(window);
  }
  static testing::AssertionResult becomesActive(Gtk::Window& window) {
    return waitUntil([&] { return isReadyForKeys(window); });
  }

  LinuxWorkspace workspace_;
};

TEST_F(FrontmostApplicationTest, CanBeActivatedAgain) {
  const auto first = makeWindow("First");
  ASSERT_TRUE(show(*first));
  const auto frontmost = workspace_.frontmostApplication();
  ASSERT_NE(frontmost, nullptr);
  const auto second = makeWindow("Second");
  ASSERT_TRUE(show(*second));
  EXPECT_FALSE(first->is_active());
  frontmost->activate();
  EXPECT_TRUE(becomesActive(*first));
}

TEST_F(FrontmostApplicationTest, IsTerminatedWhenItsWindowIsDestroyed) {
  auto window = makeWindow("Short-lived");
  ASSERT_TRUE(show(*window));
  const auto frontmost = workspace_.frontmostApplication();
  ASSERT_NE(frontmost, nullptr);
  EXPECT_FALSE(frontmost->isTerminated());
  window.reset();
  EXPECT_TRUE(waitUntil([&] { return frontmost->isTerminated(); }));
  // Must not raise an X error.
  frontmost->activate();
  gdk_display_sync(gdk_display_get_default());
  EXPECT_TRUE(frontmost->isTerminated());
}

TEST_F(FrontmostApplicationTest, IsNullWithoutAnActiveWindow) {
  auto window = makeWindow("The only one");
  ASSERT_TRUE(show(*window));
  ASSERT_NE(workspace_.frontmostApplication(), nullptr);
  window.reset();
  EXPECT_TRUE(waitUntil([&] { return workspace_.frontmostApplication() == nullptr; }));
}

TEST_F(LinuxWorkspaceTest, ReturnsTheOnlyScreen) {
  const Screen whole{{0, 0, 1600, 1000}, {0, 0, 1600, 1000}};
  EXPECT_THAT(workspace_.screens(), ElementsAre(whole));
  EXPECT_EQ(workspace_.mainScreen(), whole);
}

TEST_F(LinuxWorkspaceTest, ExcludesPanelsFromTheWorkArea) {
  const Screen whole{{0, 0, 1600, 1000}, {0, 0, 1600, 1000}};
  Gtk::Window bar;
  bar.set_type_hint(Gdk::WINDOW_TYPE_HINT_DOCK);
  bar.set_default_size(1600, 40);
  gtk_widget_realize(GTK_WIDGET(bar.gobj()));
  // Reserves 40 points at the lower edge: left, right, top, bottom (EWMH _NET_WM_STRUT_PARTIAL).
  const unsigned long strut[] = {0, 0, 0, 40};
  gdk_property_change(bar.get_window()->gobj(), gdk_atom_intern("_NET_WM_STRUT", FALSE),
                      gdk_atom_intern("CARDINAL", FALSE), 32, GDK_PROP_MODE_REPLACE,
                      reinterpret_cast<const guchar*>(strut), 4);
  bar.show();
  const Screen reduced{whole.frame, {0, 40, 1600, 960}};
  EXPECT_TRUE(waitUntil([&] { return workspace_.mainScreen() == reduced; }));
  bar.hide();
  EXPECT_TRUE(waitUntil([&] { return workspace_.mainScreen() == whole; }));
}

TEST_F(LinuxWorkspaceTest, MeasuresTheMouseFromTheLowerLeftCorner) {
  auto& mouse = TestDesktop::current().mouse();
  const auto movesTo = [&](driver::Point pixel, Point expected) {
    mouse.moveTo(pixel);
    return waitUntil([&] { return workspace_.mouseLocation() == expected; });
  };
  EXPECT_TRUE(movesTo({100, 200}, {100.5, 799.5}));
  // The outermost pixels are on the screen.
  EXPECT_TRUE(movesTo({0, 0}, {0.5, 999.5}));
  EXPECT_TRUE(workspace_.screens().front().frame.contains(workspace_.mouseLocation()));
  EXPECT_TRUE(movesTo({1599, 999}, {1599.5, 0.5}));
  EXPECT_TRUE(workspace_.screens().front().frame.contains(workspace_.mouseLocation()));
}

}  // namespace
}  // namespace navora
