#include "hosts/macos/application/AppKitMenus.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "app/NavoraMenus.h"
#include "fakes/LocaleScope.h"
#include "frameworks/AppKit/AppKitState.h"
#include "hosts/macos/system/Conversions.h"

// What has the keyboard: records the edit commands.
@interface RecordingResponder : NSObject
@property(nonatomic) std::string performed;
- (void)undo:(id)sender;
- (void)redo:(id)sender;
- (void)cut:(id)sender;
- (void)copy:(id)sender;
- (void)paste:(id)sender;
- (void)selectAll:(id)sender;
- (void)performMiniaturize:(id)sender;
- (void)performClose:(id)sender;
@end

@implementation RecordingResponder
- (void)undo:(id)sender {
  self.performed = "undo";
}
- (void)redo:(id)sender {
  self.performed = "redo";
}
- (void)cut:(id)sender {
  self.performed = "cut";
}
- (void)copy:(id)sender {
  self.performed = "copy";
}
- (void)paste:(id)sender {
  self.performed = "paste";
}
- (void)selectAll:(id)sender {
  self.performed = "selectAll";
}
- (void)performMiniaturize:(id)sender {
  self.performed = "performMiniaturize";
}
- (void)performClose:(id)sender {
  self.performed = "performClose";
}
@end

namespace navora {
namespace {

using doubles::AppKitState;
using testing::ElementsAre;
using testing::IsEmpty;

class RecordingMenuDelegate final : public MenuDelegate {
 public:
  std::vector<DelegateAction> performed;

  void performMenuAction(DelegateAction action) override { performed.push_back(action); }
};

class AppKitMenusTest : public testing::Test {
 protected:
  AppKitMenusTest() {
    target_.delegate = &delegate_;
    AppKitState::shared().firstResponder = responder_;
  }

  NSMenu* menuOf(const std::vector<MenuItem>& items) {
    return toNSMenu(Menu{.title = "Menu", .items = items}, target_);
  }
  // Presses a key in every menu of the application until one takes it.
  bool press(char key, NSEventModifierFlags modifiers) {
    for (const Menu& menu : NavoraMenus::mainMenu()) {
      NSEvent* event = doubles::makeCharacterEvent(key, modifiers);
      if ([toNSMenu(menu, target_) performKeyEquivalent:event]) return true;
    }
    return false;
  }

  LocaleScope locale_;
  RecordingMenuDelegate delegate_;
  NavoraMenuTarget* target_ = [[NavoraMenuTarget alloc] init];
  RecordingResponder* responder_ = [[RecordingResponder alloc] init];
};

TEST_F(AppKitMenusTest, GiveTheActionsOfTheCoreToTheDelegate) {
  const DelegateAction actions[] = {DelegateAction::about,
                                    DelegateAction::checkForUpdates,
                                    DelegateAction::enableNotifications,
                                    DelegateAction::quickCapture,
                                    DelegateAction::reload,
                                    DelegateAction::openInBrowser,
                                    DelegateAction::showWindow};
  for (const DelegateAction action : actions) {
    [menuOf({{"Item", action, std::nullopt}}) performActionForItemAtIndex:0];
    ASSERT_EQ(delegate_.performed.size(), 1U);
    EXPECT_EQ(delegate_.performed[0], action);
    delegate_.performed.clear();
  }
}

TEST_F(AppKitMenusTest, GiveEditAndWindowActionsToWhatHasTheKeyboard) {
  const std::pair<MenuAction, std::string> cases[] = {
      {EditAction::undo, "undo"},
      {EditAction::redo, "redo"},
      {EditAction::cut, "cut"},
      {EditAction::copy, "copy"},
      {EditAction::paste, "paste"},
      {EditAction::selectAll, "selectAll"},
      {WindowAction::performMiniaturize, "performMiniaturize"},
      {WindowAction::performClose, "performClose"},
  };
  for (const auto& [action, name] : cases) {
    [menuOf({{"Item", action, std::nullopt}}) performActionForItemAtIndex:0];
    EXPECT_EQ(responder_.performed, name);
  }
  EXPECT_THAT(delegate_.performed, IsEmpty());
}

TEST_F(AppKitMenusTest, GiveApplicationActionsToTheApplication) {
  NSMenu* menu = menuOf({{"Hide", ApplicationAction::hide, std::nullopt},
                         {"Quit", ApplicationAction::terminate, std::nullopt}});
  [menu performActionForItemAtIndex:0];
  [menu performActionForItemAtIndex:1];
  EXPECT_THAT(AppKitState::shared().applicationActions, ElementsAre("hide", "terminate"));
}

TEST_F(AppKitMenusTest, PerformTheirKeysWithTheExactModifiers) {
  EXPECT_TRUE(press('n', NSEventModifierFlagCommand));
  EXPECT_THAT(delegate_.performed, ElementsAre(DelegateAction::quickCapture));
  EXPECT_FALSE(press('n', 0));
  EXPECT_FALSE(press('n', NSEventModifierFlagCommand | NSEventModifierFlagShift));
  EXPECT_TRUE(press('z', NSEventModifierFlagCommand));
  EXPECT_EQ(responder_.performed, "undo");
  EXPECT_TRUE(press('z', NSEventModifierFlagCommand | NSEventModifierFlagShift));
  EXPECT_EQ(responder_.performed, "redo");
  EXPECT_TRUE(press('q', NSEventModifierFlagCommand));
  EXPECT_THAT(AppKitState::shared().applicationActions, ElementsAre("terminate"));
}

TEST_F(AppKitMenusTest, ShowTitlesSeparatorsAndInformation) {
  NSMenu* menu = menuOf({{"Größe", DelegateAction::about, std::nullopt},
                         MenuItem::separator(),
                         {"Information", std::nullopt, std::nullopt}});
  ASSERT_EQ(menu.numberOfItems, 3);
  EXPECT_EQ(toString(menu.title), "Menu");
  EXPECT_EQ(toString([menu itemAtIndex:0].title), "Größe");
  EXPECT_TRUE([menu itemAtIndex:0].enabled);
  EXPECT_TRUE([menu itemAtIndex:1].separatorItem);
  EXPECT_EQ(toString([menu itemAtIndex:2].title), "Information");
  EXPECT_FALSE([menu itemAtIndex:2].enabled);
}

TEST_F(AppKitMenusTest, DoNothingWithoutADelegateOrATarget) {
  NSMenu* menu = nil;
  @autoreleasepool {
    menu = menuOf({{"About", DelegateAction::about, std::nullopt}});
    target_.delegate = nullptr;
    [menu performActionForItemAtIndex:0];
    EXPECT_THAT(delegate_.performed, IsEmpty());
    target_ = nil;
  }
  EXPECT_FALSE([menu itemAtIndex:0].enabled);
  [menu performActionForItemAtIndex:0];
}

}  // namespace
}  // namespace navora
