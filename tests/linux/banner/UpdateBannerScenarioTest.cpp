#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>

#include "fakes/LocaleScope.h"
#include "hosts/linux/banner/LinuxUpdateBanner.h"
#include "hosts/linux/keyboard/ModifierNames.h"
#include "linux/support/Widgets.h"
#include "linux/web/WebViewTest.h"
#include "linux/window/WindowTest.h"
#include "support/Json.h"
#include "tests/support/Files.h"
#include "tests/support/UpdateBannerScenarios.h"

namespace navora {
namespace {

using Button = UpdateBannerButton;
using Kind = UpdateBannerProgress::Kind;
using Scenario = UpdateBannerScenario;

constexpr const char* page = R"(<!doctype html><meta charset=utf-8><style>
  :root { color-scheme: light dark }
  body { margin: 0; font: 15px sans-serif; background: canvas; color: canvastext }
  header { padding: 22px 32px; border-bottom: 1px solid color-mix(in srgb, gray 40%, canvas) }
  article { margin: 24px 32px; padding: 18px 22px; border-radius: 12px;
            background: color-mix(in srgb, gray 14%, canvas) }
</style><header><b>Today</b> · Circles · Calendar · Settings</header>
<article>Call the workshop about the bicycle: they wanted to look at the rear wheel again before the
weekend, and the invoice of the last repair is still missing.</article>
<article>Notes from the walk along the river, with the list of the birds that we have seen.</article>
<article>Groceries: bread, lentils, tomatoes, coffee.</article>)";

struct Variant {
  std::string language;
  WindowAppearance appearance;

  std::string name() const {
    return language + (appearance == WindowAppearance::dark ? "-dark" : "-light");
  }
};

// Shows every state of an update over a real page. If NAVORA_BANNER_PICTURES names a folder, saves
// a picture of the window there for each.
class UpdateBannerScenarioTest : public WebViewTest, public testing::WithParamInterface<Variant> {
 protected:
  void SetUp() override {
    const auto catalog = readFile(NAVORA_CATALOG);
    catalog_ = parseJson(catalog).value_or(Json());
    ASSERT_TRUE(catalog_.is_object());
    locale_.setCatalogs(catalog);
    locale_.prefer({GetParam().language});
    colorScheme_.setAppearance(GetParam().appearance);

    ASSERT_TRUE(loadHtml(page));
    window_.setContentView(view_);
    auto view = std::make_unique<LinuxUpdateBanner>();
    bannerView_ = view.get();
    view->card().signal_draw().connect([this](const Cairo::RefPtr<Cairo::Context>&) {
      drawn_ = true;
      return false;
    });
    banner_.emplace(std::move(view));
    banner_->attach(window_);
    window_.makeKeyAndOrderFront();
    ASSERT_TRUE(waitUntil([this] { return isReadyForKeys(window_.native()); }));
    ASSERT_TRUE(waitUntil([this] { return isPagePainted(); }));
  }
  void TearDown() override { colorScheme_.setAppearance(WindowAppearance::system); }

  bool isDark() const { return GetParam().appearance == WindowAppearance::dark; }
  // Returns whether the page is painted in the current colour scheme.
  bool isPagePainted() {
    const auto shot = display_.screenshot(onScreen(window_.overlay()));
    const auto corner = shot.pixel({shot.width() / 2, shot.height() - 10});
    return isDark() ? corner.red < 60 : corner.red > 240;
  }

  // Returns the key's text as the banner shows it in the language of this test.
  std::string text(const std::string& key) {
    std::string shown = key;
    if (GetParam().language != "ru") {
      const auto& translations = catalog_.at(GetParam().language);
      if (!key.empty() && translations.contains(key)) {
        shown = translations.at(key).get<std::string>();
      } else if (!key.empty()) {
        ADD_FAILURE() << "no translation of " << key;
      }
    }
    const std::string placeholder = "{version}";
    if (const auto place = shown.find(placeholder); place != std::string::npos)
      shown.replace(place, placeholder.size(), Scenario::displayVersion);
    return withModifierNames(shown);
  }

  void expectShown(const Scenario& scenario) {
    const Scenario::Shown& shown = scenario.shown;
    std::vector<std::string> expected{text(shown.heading)};
    if (shown.close) expected.push_back("×");
    for (const auto& key : {shown.detail, shown.primary, shown.secondary, shown.tertiary})
      if (!key.empty()) expected.push_back(text(key));
    EXPECT_EQ(texts(), expected);
    for (const auto& [which, key] :
         std::vector<std::pair<Button, std::string>>{{Button::primary, shown.primary},
                                                     {Button::secondary, shown.secondary},
                                                     {Button::tertiary, shown.tertiary},
                                                     {Button::close, shown.close ? "×" : ""}}) {
      auto& button = bannerView_->button(which).widget();
      EXPECT_EQ(button.get_mapped(), !key.empty());
      if (!key.empty()) {
        EXPECT_TRUE(button.is_sensitive()) << key;
      }
    }
    auto& bar = bannerView_->bar();
    EXPECT_EQ(bar.widget().get_mapped(), shown.progress.kind != Kind::hidden);
    EXPECT_EQ(bar.isAnimating(), shown.progress.kind == Kind::indeterminate && !scenario.progress);
    if (scenario.progress) {
      EXPECT_DOUBLE_EQ(bar.widget().get_fraction(), *scenario.progress);
    }
  }

  // Checks that no text is cut and every widget lies within the card's insets.
  void expectNothingClipped() {
    auto& card = bannerView_->card();
    EXPECT_EQ(card.get_allocated_width(), 480);
    const auto inside = onScreen(card);
    for (Gtk::Label* label : visibleWidgetsOf<Gtk::Label>(card)) {
      int width = 0;
      int height = 0;
      label->get_layout()->get_pixel_size(width, height);
      EXPECT_FALSE(label->get_layout()->is_ellipsized()) << label->get_text();
      if (label->get_text() == "×")
        continue;  // Its line is higher than the button (see BannerStyle).
      EXPECT_LE(width, label->get_allocated_width()) << label->get_text();
      EXPECT_LE(height, label->get_allocated_height()) << label->get_text();
    }
    for (Gtk::Widget* widget : visibleWidgets(card)) {
      if (widget == &card || dynamic_cast<Gtk::Label*>(widget) != nullptr) continue;
      const auto place = onScreen(*widget);
      EXPECT_GE(place.x, inside.x + 16) << widget->get_name();
      EXPECT_GE(place.y, inside.y + 14) << widget->get_name();
      EXPECT_LE(place.x + place.width, inside.x + inside.width - 16) << widget->get_name();
      EXPECT_LE(place.y + place.height, inside.y + inside.height - 14) << widget->get_name();
    }
  }

  std::vector<std::string> texts() {
    std::vector<std::string> shown;
    for (const Gtk::Label* label : visibleWidgetsOf<Gtk::Label>(bannerView_->card()))
      shown.push_back(label->get_text());
    return shown;
  }

  // Returns whether the screen shows the card with its final height: painted down to its lower edge
  // and no further.
  bool isDrawn() {
    auto& card = bannerView_->card();
    int minimum = 0;
    int wanted = 0;
    card.get_preferred_height_for_width(480, minimum, wanted);
    if (!drawn_ || !isLaidOut(card) || card.get_allocated_height() != wanted) return false;
    // Waits until the X server has processed the drawing.
    card.get_display()->sync();
    const auto shot = display_.screenshot(onScreen(window_.overlay()));
    const auto place = onScreen(card);
    const auto origin = onScreen(window_.overlay());
    const driver::Point beside{place.x - origin.x + 240, place.y - origin.y + 6};
    const int bottom = place.y - origin.y + place.height;
    const auto plate = shot.pixel(beside);
    return shot.pixel({beside.x, bottom - 6}) == plate &&
           shot.pixel({beside.x, bottom + 3}) != plate;
  }

  // Returns whether the page's plain background is visible where the card was.
  bool isPageBare() {
    const auto shot = display_.screenshot(onScreen(window_.overlay()));
    const auto background = shot.pixel({shot.width() / 2, shot.height() - 10});
    return shot.pixel({shot.width() - 25, 30}) == background &&
           shot.pixel({shot.width() - 250, 75}) == background;
  }

  void savePicture(const std::string& name) {
    const char* folder = std::getenv("NAVORA_BANNER_PICTURES");
    if (folder == nullptr) return;
    display_.screenshot(onScreen(window_.overlay()))
        .save(std::filesystem::path(folder) / (name + "-" + GetParam().name() + ".png"));
  }

  driver::Display& display_ = TestDesktop::current().display();
  LocaleScope locale_;
  Json catalog_;
  FakeMainWindowDelegate windowDelegate_;
  MemoryUserDefaults defaults_;
  ColorScheme colorScheme_;
  LinuxMainWindow window_{
      {"Navora", {1100, 760}, {700, 500}, "Window"}, windowDelegate_, defaults_, colorScheme_};
  std::optional<UpdateBanner> banner_;
  LinuxUpdateBanner* bannerView_ = nullptr;
  bool drawn_ = false;
};

TEST_P(UpdateBannerScenarioTest, ShowsEveryState) {
  ASSERT_EQ(updateBannerScenarios().size(), std::variant_size_v<UpdateBannerState::Value>);
  for (const Scenario& scenario : updateBannerScenarios()) {
    SCOPED_TRACE(scenario.name);
    drawn_ = false;
    scenario.present(*banner_);
    ASSERT_TRUE(waitUntil([this] { return isDrawn(); }));
    expectShown(scenario);
    expectNothingClipped();
    savePicture(scenario.name);
  }
  banner_->hide();
  EXPECT_TRUE(waitUntil([this] { return isPageBare(); }));
}

INSTANTIATE_TEST_SUITE_P(
    All, UpdateBannerScenarioTest,
    testing::Values(Variant{"ru", WindowAppearance::light}, Variant{"ru", WindowAppearance::dark},
                    Variant{"en", WindowAppearance::light}, Variant{"en", WindowAppearance::dark},
                    Variant{"de", WindowAppearance::light}, Variant{"de", WindowAppearance::dark}),
    [](const auto& tested) {
      return tested.param.language +
             (tested.param.appearance == WindowAppearance::dark ? "Dark" : "Light");
    });

}  // namespace
}  // namespace navora
