#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

#include "app/NavoraIcon.h"
#include "hosts/linux/graphics/LinuxImaging.h"
#include "hosts/linux/tray/LinuxStatusItem.h"
#include "hosts/linux/tray/StatusIcon.h"
#include "hosts/linux/window/ColorScheme.h"
#include "linux/application/RecordingMenuDelegate.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/FakeSettingsPortal.h"
#include "linux/support/FakeTray.h"
#include "linux/support/MainLoop.h"
#include "tests/support/Files.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

Menu statusMenu() {
  const auto item = [](std::string title, MenuAction action) {
    return MenuItem{std::move(title), action, std::nullopt};
  };
  return {"Navora",
          {item("New note  ⌘⇧Space", DelegateAction::quickCapture),
           item("Show_it", DelegateAction::showWindow), MenuItem::separator(),
           item("Hide", ApplicationAction::hide), item("Quit", ApplicationAction::terminate)}};
}
const MenuItem information{"Only a message", std::nullopt, std::nullopt};

class LinuxStatusItemTest : public testing::Test {
 protected:
  void TearDown() override { item_.reset(); }

  std::unique_ptr<LinuxStatusItem> makeItem() {
    return std::make_unique<LinuxStatusItem>(
        StatusItemDescription{NavoraIcon::menuBarTemplate(imaging_, 18), "Navora", statusMenu()},
        delegate_, ApplicationCommands{[this] { ++hides_; }, [this] { ++terminations_; }},
        colorScheme_, missingTray_, iconThemes_.path());
  }
  // Makes the item and waits until it is in the tray.
  testing::AssertionResult showItem() {
    item_ = makeItem();
    return waitUntil([this] { return tray_.has(item_->busName()); });
  }
  BusAnswer ask(const char* path, const char* interface, const char* method, GVariant* parameters) {
    return tray_.ask(item_->busName(), path, interface, method, parameters);
  }
  BusAnswer askItem(const char* method, GVariant* parameters) {
    return ask(itemPath, itemInterface, method, parameters);
  }
  BusAnswer askMenu(const char* method, GVariant* parameters) {
    return ask(DBusMenu::path, menuInterface, method, parameters);
  }
  GVariantPtr itemProperty(const char* name) {
    return tray_.property(item_->busName(), itemPath, itemInterface, name);
  }
  FakeTray::Layout layout() { return tray_.layout(item_->busName(), DBusMenu::path); }
  std::vector<std::string> labels() {
    std::vector<std::string> texts;
    for (const auto& entry : layout().entries)
      texts.push_back(entry.label);
    return texts;
  }
  BusAnswer click(std::int32_t id, const char* event = "clicked") {
    return askMenu("Event", g_variant_new("(isvu)", id, event, g_variant_new_int32(0), 0));
  }
  BusAnswer clickAll(const std::vector<std::int32_t>& ids) {
    GVariantBuilder events;
    g_variant_builder_init(&events, G_VARIANT_TYPE("a(isvu)"));
    for (const std::int32_t id : ids)
      g_variant_builder_add(&events, "(isvu)", id, "clicked", g_variant_new_int32(0), 0);
    return askMenu("EventGroup", g_variant_new("(a(isvu))", &events));
  }

  LinuxImaging imaging_;
  ColorScheme colorScheme_;
  MissingTrayWarning missingTray_;
  RecordingMenuDelegate delegate_;
  int hides_ = 0;
  int terminations_ = 0;
  FakeTray tray_;
  TemporaryDirectory iconThemes_;
  std::unique_ptr<LinuxStatusItem> item_;
};

TEST_F(LinuxStatusItemTest, HasTheItemsProperties) {
  ASSERT_TRUE(showItem());
  EXPECT_THAT(item_->busName(),
              StartsWith("org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-"));
  const auto text = [this](const char* name) {
    const auto value = itemProperty(name);
    return value ? stringFrom(g_variant_get_string(value.get(), nullptr))
                 : "no " + std::string(name);
  };
  EXPECT_EQ(text("Category"), "ApplicationStatus");
  EXPECT_EQ(text("Id"), "example.navora.Navora");
  EXPECT_EQ(text("Title"), "Navora");
  EXPECT_EQ(text("Status"), "Active");
  EXPECT_EQ(text("IconName"), "") << "an icon that is not installed";
  EXPECT_EQ(text("IconThemePath"), iconThemes_.path().string());
  EXPECT_EQ(text("Menu"), DBusMenu::path);
  EXPECT_FALSE(g_variant_get_boolean(itemProperty("ItemIsMenu").get()));
  const char* title = nullptr;
  const auto toolTip = itemProperty("ToolTip");
  g_variant_get(toolTip.get(), "(&s@a(iiay)&s&s)", nullptr, nullptr, &title, nullptr);
  EXPECT_STREQ(title, "Navora");
}

TEST_F(LinuxStatusItemTest, NamesItsSymbolicIcon) {
  const auto folder = iconThemes_.path() / "hicolor/symbolic/apps";
  std::filesystem::create_directories(folder);
  writeFile(folder / "example.navora.Navora-symbolic.svg", "<svg/>");
  ASSERT_TRUE(showItem());
  EXPECT_STREQ(g_variant_get_string(itemProperty("IconName").get(), nullptr),
               "example.navora.Navora-symbolic");
  EXPECT_NE(g_variant_n_children(itemProperty("IconPixmap").get()), 0U);
}

TEST_F(LinuxStatusItemTest, ReturnsAllProperties) {
  ASSERT_TRUE(showItem());
  const auto all = ask(itemPath, "org.freedesktop.DBus.Properties", "GetAll",
                       g_variant_new("(s)", itemInterface));
  ASSERT_TRUE(all.value) << all.error;
  const GVariantPtr values(g_variant_get_child_value(all.value.get(), 0));
  EXPECT_EQ(g_variant_n_children(values.get()), 16U);
}

TEST_F(LinuxStatusItemTest, ShowsTheWindowWhenActivated) {
  ASSERT_TRUE(showItem());
  EXPECT_EQ(askItem("Activate", g_variant_new("(ii)", 10, 10)).error, "");
  EXPECT_EQ(askItem("SecondaryActivate", g_variant_new("(ii)", 10, 10)).error, "");
  EXPECT_THAT(delegate_.actions,
              ElementsAre(DelegateAction::showWindow, DelegateAction::showWindow));
  EXPECT_EQ(askItem("ContextMenu", g_variant_new("(ii)", 10, 10)).error, "");
  EXPECT_EQ(askItem("Scroll", g_variant_new("(is)", 1, "vertical")).error, "");
  EXPECT_EQ(delegate_.actions.size(), 2U);
}

TEST_F(LinuxStatusItemTest, ReturnsTheMenusLayout) {
  ASSERT_TRUE(showItem());
  const auto shown = layout();
  ASSERT_EQ(shown.entries.size(), 5U);
  EXPECT_THAT(labels(), ElementsAre("New note  Ctrl+Shift+Space", "Show__it", "", "Hide", "Quit"));
  EXPECT_EQ(shown.entries[2].type, "separator");
  EXPECT_EQ(shown.entries[0].type, "standard");
  EXPECT_TRUE(std::ranges::all_of(shown.entries, &FakeTray::Entry::enabled));
}

TEST_F(LinuxStatusItemTest, PerformsTheActionOfAClickedItem) {
  ASSERT_TRUE(showItem());
  const auto entries = layout().entries;
  for (const std::size_t index : {0U, 1U, 3U, 4U})
    EXPECT_EQ(click(entries[index].id).error, "");
  EXPECT_THAT(delegate_.actions,
              ElementsAre(DelegateAction::quickCapture, DelegateAction::showWindow));
  EXPECT_EQ(hides_, 1);
  EXPECT_EQ(terminations_, 1);
}

TEST_F(LinuxStatusItemTest, IgnoresOtherEventsAndItemsWithoutAnAction) {
  ASSERT_TRUE(showItem());
  item_->insertMenuItem(0, information);
  const auto entries = layout().entries;
  for (const char* event : {"hovered", "opened", "closed", "x-other"})
    EXPECT_EQ(click(entries[1].id, event).error, "");
  EXPECT_EQ(click(0).error, "") << "the menu itself";
  EXPECT_EQ(click(0, "opened").error, "");
  EXPECT_EQ(click(entries[0].id).error, "");
  EXPECT_EQ(click(entries[3].id).error, "") << "the separator";
  EXPECT_THAT(delegate_.actions, IsEmpty());
}

TEST_F(LinuxStatusItemTest, AnnouncesAnInsertedItem) {
  ASSERT_TRUE(showItem());
  const auto before = layout();
  item_->insertMenuItem(0, information);
  ASSERT_TRUE(waitUntil([this] { return tray_.heard("LayoutUpdated") == 1; }));
  const auto after = layout();
  EXPECT_GT(after.revision, before.revision);
  ASSERT_EQ(after.entries.size(), 6U);
  EXPECT_EQ(after.entries[0].label, "Only a message");
  EXPECT_FALSE(after.entries[0].enabled);
  // The other items keep their ids.
  for (std::size_t index = 0; index < before.entries.size(); ++index)
    EXPECT_EQ(after.entries[index + 1].id, before.entries[index].id);
  EXPECT_EQ(std::ranges::count(before.entries, after.entries[0].id, &FakeTray::Entry::id), 0);
}

TEST_F(LinuxStatusItemTest, AcceptsItemsBeforeItIsOnTheBus) {
  item_ = makeItem();
  item_->insertMenuItem(0, information);
  item_->insertMenuItem(100, information);
  ASSERT_TRUE(waitUntil([this] { return tray_.has(item_->busName()); }));
  const auto shown = labels();
  ASSERT_EQ(shown.size(), 7U);
  EXPECT_EQ(shown.front(), "Only a message");
  EXPECT_EQ(shown.back(), "Only a message");
}

TEST_F(LinuxStatusItemTest, ReturnsThePropertiesOfItems) {
  ASSERT_TRUE(showItem());
  const auto entries = layout().entries;
  const auto count = [this](std::vector<std::int32_t> ids) {
    const auto answer = askMenu(
        "GetGroupProperties",
        g_variant_new("(@aias)",
                      g_variant_new_fixed_array(G_VARIANT_TYPE_INT32, ids.data(), ids.size(), 4),
                      nullptr));
    if (!answer.value) return std::size_t{0};
    const GVariantPtr list(g_variant_get_child_value(answer.value.get(), 0));
    return static_cast<std::size_t>(g_variant_n_children(list.get()));
  };
  EXPECT_EQ(count({entries[0].id, entries[4].id, 9999}), 2U);
  EXPECT_EQ(count({}), 6U) << "all items and the menu itself";
  const auto property = [this](std::int32_t id, const char* name) {
    const auto answer = askMenu("GetProperty", g_variant_new("(is)", id, name));
    if (!answer.value) return answer.error;
    const GVariantPtr wrapped(g_variant_get_child_value(answer.value.get(), 0));
    const GVariantPtr value(g_variant_get_variant(wrapped.get()));
    return stringFrom(GCharPtr(g_variant_print(value.get(), FALSE)).get());
  };
  EXPECT_EQ(property(entries[0].id, "label"), "'New note  Ctrl+Shift+Space'");
  EXPECT_EQ(property(entries[0].id, "enabled"), "true");
  EXPECT_EQ(property(entries[2].id, "type"), "'separator'");
  EXPECT_EQ(property(0, "children-display"), "'submenu'");
  EXPECT_THAT(property(entries[0].id, "colour"), HasSubstr("InvalidArgs"));
}

TEST_F(LinuxStatusItemTest, NeedsNoRefreshBeforeItsMenuIsShown) {
  ASSERT_TRUE(showItem());
  const auto answer = askMenu("AboutToShow", g_variant_new("(i)", 0));
  ASSERT_TRUE(answer.value) << answer.error;
  gboolean needsUpdate = TRUE;
  g_variant_get(answer.value.get(), "(b)", &needsUpdate);
  EXPECT_FALSE(needsUpdate);
}

TEST_F(LinuxStatusItemTest, RejectsInvalidCalls) {
  ASSERT_TRUE(showItem());
  const auto invalid = HasSubstr("InvalidArgs");
  EXPECT_THAT(click(9999).error, invalid);
  EXPECT_THAT(click(-1).error, invalid);
  EXPECT_THAT(clickAll({9999}).error, invalid);
  EXPECT_THAT(askMenu("GetLayout", g_variant_new("(iias)", 9999, -1, nullptr)).error, invalid);
  EXPECT_THAT(askMenu("GetProperty", g_variant_new("(is)", 9999, "label")).error, invalid);
  EXPECT_THAT(askMenu("AboutToShow", g_variant_new("(i)", 9999)).error, invalid);
  // Arguments of other types.
  EXPECT_THAT(askMenu("GetLayout", g_variant_new("(s)", "0")).error, invalid);
  EXPECT_THAT(askMenu("Event", g_variant_new("(ss)", "1", "clicked")).error, invalid);
  EXPECT_THAT(askMenu("EventGroup", nullptr).error, invalid);
  EXPECT_THAT(askItem("Activate", g_variant_new("(s)", "here")).error, invalid);
  EXPECT_THAT(askItem("Explode", nullptr).error, HasSubstr("UnknownMethod"));
  EXPECT_THAT(askMenu("Explode", nullptr).error, HasSubstr("UnknownMethod"));
  EXPECT_FALSE(itemProperty("Colour"));
  EXPECT_EQ(labels().size(), 5U);
  EXPECT_THAT(delegate_.actions, IsEmpty());
}

TEST_F(LinuxStatusItemTest, HandlesAGroupOfEvents) {
  ASSERT_TRUE(showItem());
  const auto entries = layout().entries;
  const auto answer = clickAll({entries[0].id, 9999, entries[1].id});
  ASSERT_TRUE(answer.value) << answer.error;
  EXPECT_EQ(stringFrom(GCharPtr(g_variant_print(answer.value.get(), FALSE)).get()), "([9999],)");
  EXPECT_THAT(delegate_.actions,
              ElementsAre(DelegateAction::quickCapture, DelegateAction::showWindow));
}

TEST_F(LinuxStatusItemTest, MayBeDestroyedByItsOwnEvent) {
  delegate_.onAction = [this] { item_.reset(); };
  ASSERT_TRUE(showItem());
  auto entries = layout().entries;
  EXPECT_EQ(tray_
                .ask(item_->busName(), DBusMenu::path, menuInterface, "Event",
                     g_variant_new("(isvu)", entries[0].id, "clicked", g_variant_new_int32(0), 0))
                .error,
            "");
  ASSERT_TRUE(waitUntil([this] { return item_ == nullptr; }));
  ASSERT_TRUE(showItem());
  entries = layout().entries;
  clickAll({entries[0].id, entries[1].id});
  ASSERT_TRUE(waitUntil([this] { return item_ == nullptr; }));
  ASSERT_TRUE(showItem());
  askItem("Activate", g_variant_new("(ii)", 0, 0));
  ASSERT_TRUE(waitUntil([this] { return item_ == nullptr; }));
  EXPECT_EQ(delegate_.actions.size(), 3U);
}

TEST_F(LinuxStatusItemTest, LeavesTheTrayWhenDestroyed) {
  ASSERT_TRUE(showItem());
  const std::string name = item_->busName();
  item_.reset();
  ASSERT_TRUE(waitUntil([&] { return !tray_.isOnBus(name); }));
}

TEST_F(LinuxStatusItemTest, MayBeReplacedWithinOneTurnOfTheMainLoop) {
  ASSERT_TRUE(showItem());
  const std::string old = item_->busName();
  item_ = makeItem();
  EXPECT_NE(item_->busName(), old);
  ASSERT_TRUE(waitUntil([&] { return tray_.has(item_->busName()) && !tray_.isOnBus(old); }));
  EXPECT_EQ(labels().size(), 5U);
}

TEST_F(LinuxStatusItemTest, MayBeDestroyedBeforeItIsOnTheBus) {
  const std::string name = makeItem()->busName();
  runPendingEvents();
  ASSERT_TRUE(showItem());
  EXPECT_FALSE(tray_.has(name));
}

// Starts without a tray.
class StatusItemWithoutTrayTest : public testing::Test {
 protected:
  void makeItem() {
    item_ = std::make_unique<LinuxStatusItem>(
        StatusItemDescription{NavoraIcon::menuBarTemplate(imaging_, 18), "Navora", statusMenu()},
        delegate_, ApplicationCommands{[] {}, [] {}}, colorScheme_, missingTray_,
        std::filesystem::path());
  }
  // Waits until standard error contains the text; appends everything written meanwhile to `log`.
  static testing::AssertionResult waitForError(const std::string& text, std::string& log) {
    return waitUntil([&] {
      std::cerr.flush();
      log += testing::internal::GetCapturedStderr();
      testing::internal::CaptureStderr();
      return log.find(text) != std::string::npos;
    });
  }

  LinuxImaging imaging_;
  ColorScheme colorScheme_;
  MissingTrayWarning missingTray_;
  RecordingMenuDelegate delegate_;
  std::unique_ptr<LinuxStatusItem> item_;
};

TEST_F(StatusItemWithoutTrayTest, LogsOnceAndRegistersWithEveryTrayThatStarts) {
  testing::internal::CaptureStderr();
  makeItem();
  std::string log;
  const auto logged = waitForError("no tray", log);
  bool inEveryTray = true;
  for (int start = 0; start < 3; ++start) {
    const FakeTray tray;
    inEveryTray = inEveryTray && waitUntil([&] { return tray.has(item_->busName()); });
  }
  makeItem();
  {
    const FakeTray tray;
    inEveryTray = inEveryTray && waitUntil([&] { return tray.has(item_->busName()); });
  }
  log += testing::internal::GetCapturedStderr();
  ASSERT_TRUE(logged) << log;
  EXPECT_TRUE(inEveryTray);
  EXPECT_EQ(log, "Navora: the desktop has no tray for status items\n");
}

// Runs in a process of its own, because a process keeps its first connection to the session bus.
TEST(StatusItemDeathTest, LogsOnceThatThereIsNoTrayWithoutASessionBus) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const EnvironmentVariable nowhere("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        testing::internal::CaptureStderr();
        LinuxImaging imaging;
        ColorScheme colorScheme;
        MissingTrayWarning missingTray;
        RecordingMenuDelegate delegate;
        const auto make = [&] {
          return std::make_unique<LinuxStatusItem>(
              StatusItemDescription{NavoraIcon::menuBarTemplate(imaging, 18), "Navora",
                                    statusMenu()},
              delegate, ApplicationCommands{[] {}, [] {}}, colorScheme, missingTray,
              std::filesystem::path());
        };
        // The first is destroyed before the bus is found missing.
        make().reset();
        const auto item = make();
        const auto next = make();
        std::string log;
        const bool logged = static_cast<bool>(waitUntil([&] {
          std::cerr.flush();
          log += testing::internal::GetCapturedStderr();
          testing::internal::CaptureStderr();
          return log.find("no tray") != std::string::npos;
        }));
        runPendingEvents();
        log += testing::internal::GetCapturedStderr();
        const bool once = log == "Navora: the desktop has no tray for status items\n";
        std::cerr << log;
        std::exit(logged && once ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(StatusItemWithoutTrayTest, LogsThatATrayRefusesIt) {
  FakeTray tray(FakeTray::Manner::refusing);
  testing::internal::CaptureStderr();
  makeItem();
  std::string log;
  const auto logged = waitForError("the tray refuses the status item", log);
  testing::internal::GetCapturedStderr();
  EXPECT_TRUE(logged) << log;
}

// One entry of an IconPixmap property.
struct Pixmap {
  int size = 0;
  std::vector<std::array<int, 4>> pixels;  // alpha, red, green, blue

  const std::array<int, 4>& at(int x, int y) const {
    return pixels.at(static_cast<std::size_t>(y * size + x));
  }
};

std::vector<Pixmap> pixmapsFrom(GVariant* value) {
  std::vector<Pixmap> pixmaps;
  for (gsize index = 0; index < g_variant_n_children(value); ++index) {
    Pixmap pixmap;
    int height = 0;
    GVariant* bytes = nullptr;
    g_variant_get_child(value, index, "(ii@ay)", &pixmap.size, &height, &bytes);
    const GVariantPtr owner(bytes);
    EXPECT_EQ(pixmap.size, height);
    gsize count = 0;
    const auto* data =
        static_cast<const std::uint8_t*>(g_variant_get_fixed_array(bytes, &count, 1));
    EXPECT_EQ(count, static_cast<gsize>(pixmap.size * height * 4));
    for (gsize byte = 0; byte + 3 < count; byte += 4)
      pixmap.pixels.push_back({data[byte], data[byte + 1], data[byte + 2], data[byte + 3]});
    pixmaps.push_back(std::move(pixmap));
  }
  return pixmaps;
}

std::vector<Pixmap> pixmapsOf(const Image& image, bool dark) {
  return pixmapsFrom(GVariantPtr(g_variant_ref_sink(statusIconPixmaps(image, dark))).get());
}

TEST(StatusIconTest, PaintsATemplateWhiteOrBlack) {
  LinuxImaging imaging;
  const auto image = NavoraIcon::menuBarTemplate(imaging, 18);
  for (const bool dark : {false, true}) {
    const int tint = dark ? 255 : 0;
    const auto pixmaps = pixmapsOf(*image, dark);
    ASSERT_EQ(pixmaps.size(), 5U);
    for (const Pixmap& pixmap : pixmaps) {
      // A leg, the space between the legs, and a corner.
      EXPECT_THAT(pixmap.at(pixmap.size * 20 / 64, pixmap.size * 40 / 64),
                  ElementsAre(testing::Gt(200), tint, tint, tint));
      EXPECT_EQ(pixmap.at(pixmap.size / 2, pixmap.size * 50 / 64)[0], 0);
      EXPECT_EQ(pixmap.at(0, 0)[0], 0);
    }
  }
}

TEST(StatusIconTest, KeepsTheColoursOfOtherImages) {
  LinuxImaging imaging;
  const auto bitmap = imaging.makeBitmap(64, 64);
  bitmap->draw(1, [](Canvas& canvas) {
    const Color orange{1, 0.5, 0, 1};
    canvas.fillRoundedRectangle({0, 0, 64, 32}, 0, {{{0, orange}, {1, orange}}, 0});
  });
  const auto image = imaging.makeImage({18, 18});
  image->addRepresentation(bitmap);
  const auto pixmaps = pixmapsOf(*image, true);
  EXPECT_THAT(pixmaps.back().at(10, 50), ElementsAre(255, 255, testing::AnyOf(127, 128), 0));
  EXPECT_EQ(pixmaps.back().at(10, 10)[0], 0);
  // The largest of several bitmaps is used.
  const auto odd = imaging.makeBitmap(3, 3);
  odd->draw(1, [](Canvas& canvas) { canvas.fillOval({0, 0, 3, 3}, {0, 0, 1, 1}); });
  image->addRepresentation(odd);
  EXPECT_THAT(pixmapsOf(*image, true).back().at(10, 50)[1], 255);
}

TEST(StatusIconTest, IsEmptyForAnEmptyImage) {
  LinuxImaging imaging;
  EXPECT_TRUE(pixmapsOf(*imaging.makeImage({18, 18}), true).empty());
}

class StatusItemColorSchemeTest : public testing::Test {
 protected:
  // Returns the red component of a pixel of the mark.
  static int redOf(GVariant* pixmaps) {
    const auto all = pixmapsFrom(pixmaps);
    return all.empty() ? -1 : all.back().at(20, 40)[1];
  }
};

TEST_F(StatusItemColorSchemeTest, FollowsTheColourScheme) {
  guint32 choice = 2;
  FakeSettingsPortal portal([&] { return g_variant_new_uint32(choice); });
  FakeTray tray;
  LinuxImaging imaging;
  ColorScheme colorScheme;
  MissingTrayWarning missingTray;
  RecordingMenuDelegate delegate;
  ASSERT_TRUE(waitUntil([&] { return portal.reads() > 0; }));
  LinuxStatusItem item({NavoraIcon::menuBarTemplate(imaging, 18), "Navora", statusMenu()}, delegate,
                       {[] {}, [] {}}, colorScheme, missingTray, std::filesystem::path());
  ASSERT_TRUE(waitUntil([&] { return tray.has(item.busName()); }));
  const auto red = [&] {
    return redOf(tray.property(item.busName(), itemPath, itemInterface, "IconPixmap").get());
  };
  EXPECT_EQ(red(), 0);
  portal.announce(FakeSettingsPortal::appearance, "color-scheme", g_variant_new_uint32(1));
  ASSERT_TRUE(waitUntil([&] { return tray.heard("NewIcon") == 1; }));
  EXPECT_EQ(red(), 255);
  portal.announce(FakeSettingsPortal::appearance, "color-scheme", g_variant_new_uint32(2));
  ASSERT_TRUE(waitUntil([&] { return tray.heard("NewIcon") == 2; }));
  EXPECT_EQ(red(), 0);
}

}  // namespace
}  // namespace navora
