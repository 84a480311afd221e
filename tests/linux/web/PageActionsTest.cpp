#include <chrono>
#include <string>

#include <gtest/gtest.h>

#include "hosts/linux/web/PageActions.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using Kind = PageAction::Kind;

Url url(const std::string& text) {
  return *Url::parse(text);
}

PageAction action(Kind kind, const std::string& address, bool mainFrame = true) {
  return {kind, FrameInfo{mainFrame, url("https://navora.example/page")}, url(address)};
}

PageAction actionWithId(const std::string& id, const std::string& address) {
  PageAction result = action(Kind::link, address);
  result.id = id;
  return result;
}

PageAction fileChooser(bool directories, bool mainFrame = true) {
  PageAction result{Kind::chooseFiles, FrameInfo{mainFrame, url("https://navora.example/page")},
                    std::nullopt};
  result.directories = directories;
  return result;
}

class PageActionsTest : public testing::Test {
 protected:
  std::chrono::steady_clock::time_point now_{};
  PageActions actions_{[this] { return now_; }};
};

TEST_F(PageActionsTest, AnActionMatchesItsUrlOnce) {
  const PageAction link = action(Kind::link, "https://navora.example/a");
  actions_.add(link);
  EXPECT_EQ(actions_.takeNavigation(url("https://navora.example/a")), link);
  EXPECT_EQ(actions_.takeNavigation(url("https://navora.example/a")), std::nullopt);
}

TEST_F(PageActionsTest, OnlyTheExactUrlMatches) {
  actions_.add(action(Kind::link, "https://navora.example/a?x=1"));
  for (const char* other : {"https://navora.example/a", "https://navora.example/a?x=2",
                            "https://navora.example/a?x=1#f", "http://navora.example/a?x=1",
                            "https://navora.example/a?x=1&y"}) {
    EXPECT_EQ(actions_.takeNavigation(url(other)), std::nullopt) << other;
  }
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a?x=1")));
}

TEST_F(PageActionsTest, ActionsOfEveryKindMatchNavigations) {
  for (const Kind kind : {Kind::link, Kind::contextMenu, Kind::form, Kind::openWindow}) {
    actions_.add(action(kind, "https://navora.example/a"));
    if (kind == Kind::contextMenu) actions_.contextMenuLinkChosen();
    const auto taken = actions_.takeNavigation(url("https://navora.example/a"));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->kind, kind);
  }
}

TEST_F(PageActionsTest, AnActionExpires) {
  actions_.add(actionWithId("1", "https://navora.example/a"));
  actions_.add(actionWithId("2", "https://navora.example/b"));
  actions_.eventOver("1");
  actions_.eventOver("2");
  now_ += PageActions::lifetime;
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
  now_ += 1ns;
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/b")));
}

TEST_F(PageActionsTest, TheNewestActionMatches) {
  actions_.add(action(Kind::link, "https://navora.example/a", true));
  now_ += 1ms;
  actions_.add(action(Kind::link, "https://navora.example/a", false));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a"))->frame.isMainFrame);
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a"))->frame.isMainFrame);
}

TEST_F(PageActionsTest, TheOldestIsDroppedAboveTheLimit) {
  for (std::size_t index = 0; index <= PageActions::maximumCount; ++index)
    actions_.add(action(Kind::link, "https://navora.example/" + std::to_string(index)));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/0")));
  for (std::size_t index = 1; index <= PageActions::maximumCount; ++index)
    EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/" + std::to_string(index))));
}

TEST_F(PageActionsTest, AnActionDoesNotExpireDuringItsEvent) {
  actions_.add(actionWithId("1", "https://navora.example/a"));
  actions_.eventOver("2");
  now_ += 1h;
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, AnEndedActionMatchesNoMore) {
  actions_.add(actionWithId("1", "https://navora.example/a"));
  actions_.add(actionWithId("2", "https://navora.example/a"));
  actions_.end("2");
  EXPECT_EQ(actions_.takeNavigation(url("https://navora.example/a")),
            actionWithId("1", "https://navora.example/a"));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, AnEndForgetsNoOtherAction) {
  actions_.add(actionWithId("1", "https://navora.example/a"));
  for (const char* id : {"2", "", "11"})
    actions_.end(id);
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, AContextMenuMatchesOnlyWhenItsLinkIsChosen) {
  actions_.add(action(Kind::contextMenu, "https://navora.example/a"));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
  // It may stay open.
  now_ += 1h;
  actions_.contextMenuLinkChosen();
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/b")));
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, AChosenLinkExpires) {
  actions_.add(action(Kind::contextMenu, "https://navora.example/a"));
  actions_.contextMenuLinkChosen();
  now_ += PageActions::lifetime + 1ns;
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, ALinkOfTheContextMenuIsChosenOnce) {
  actions_.contextMenuLinkChosen();
  actions_.add(action(Kind::contextMenu, "https://navora.example/a"));
  actions_.contextMenuLinkChosen();
  actions_.contextMenuLinkChosen();
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
}

TEST_F(PageActionsTest, ANewContextMenuReplacesTheOld) {
  actions_.add(action(Kind::contextMenu, "https://navora.example/a"));
  actions_.add(action(Kind::contextMenu, "https://navora.example/b"));
  actions_.contextMenuLinkChosen();
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/b")));
}

TEST_F(PageActionsTest, AFormMatchesUpToTheQuery) {
  const auto leadsTo = [&](const std::string& address) {
    actions_.clear();
    actions_.add(action(Kind::form, "https://navora.example/search?old=1"));
    return actions_.takeNavigation(url(address)).has_value();
  };
  EXPECT_TRUE(leadsTo("https://navora.example/search?q=note"));
  EXPECT_TRUE(leadsTo("https://navora.example/search?old=1"));
  EXPECT_TRUE(leadsTo("https://navora.example/search"));
  EXPECT_FALSE(leadsTo("https://navora.example/searching?q=note"));
  EXPECT_FALSE(leadsTo("https://navora.example:444/search?q=note"));
  EXPECT_FALSE(leadsTo("https://tolvin.example/search?q=note"));
}

TEST_F(PageActionsTest, AFormWithoutAUrlMatchesNothing) {
  actions_.add({Kind::form, FrameInfo{true, std::nullopt}, std::nullopt});
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/")));
}

TEST_F(PageActionsTest, FileChoosersAndNavigationsAreSeparate) {
  actions_.add(action(Kind::link, "https://navora.example/a"));
  EXPECT_FALSE(actions_.takeFileChooser(false));
  actions_.add(fileChooser(true));
  EXPECT_TRUE(actions_.takeNavigation(url("https://navora.example/a")));
  EXPECT_EQ(actions_.takeFileChooser(false), fileChooser(true));
  EXPECT_FALSE(actions_.takeFileChooser(false));
}

TEST_F(PageActionsTest, AChooserOfSeveralFilesIsAnotherThanOneOfASingleFile) {
  PageAction several = fileChooser(false);
  several.multiple = true;
  actions_.add(several);
  EXPECT_FALSE(actions_.takeFileChooser(false));
  EXPECT_EQ(actions_.takeFileChooser(true), several);
}

TEST_F(PageActionsTest, AFileChooserExpires) {
  PageAction chooser = fileChooser(false);
  chooser.id = "1";
  actions_.add(chooser);
  actions_.eventOver("1");
  now_ += PageActions::lifetime + 1ns;
  EXPECT_FALSE(actions_.takeFileChooser(false));
}

TEST_F(PageActionsTest, ClearForgetsAllActions) {
  actions_.add(action(Kind::link, "https://navora.example/a"));
  actions_.add(action(Kind::contextMenu, "https://navora.example/b"));
  actions_.add(fileChooser(false));
  actions_.clear();
  actions_.contextMenuLinkChosen();
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/a")));
  EXPECT_FALSE(actions_.takeNavigation(url("https://navora.example/b")));
  EXPECT_FALSE(actions_.takeFileChooser(false));
}

}  // namespace
}  // namespace navora
