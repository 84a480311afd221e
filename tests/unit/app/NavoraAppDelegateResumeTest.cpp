#include <chrono>

#include <gmock/gmock.h>

#include "app/DesktopTimeZone.h"
#include "unit/app/AppDelegateTest.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* resumeScript = "window.dispatchEvent(new Event('tolvin:resume'));";

class NavoraAppDelegateResumeTest : public AppDelegateTest {
 protected:
  Url page() const { return testUrl("https://navora.example/"); }
  Url foreignPage() const { return testUrl("https://tolvin.example/"); }
};

TEST_F(NavoraAppDelegateResumeTest, PublishesTheTimeZoneBeforeTheResumeEventWhenItBecomesActive) {
  launchShowing(page());
  delegate_->applicationDidBecomeActive();
  EXPECT_THAT(webView().scripts(),
              ElementsAre(DesktopTimeZone::script("Europe/Moscow"), resumeScript));
}

TEST_F(NavoraAppDelegateResumeTest, DoesTheSameWhenTheSystemWakesUp) {
  launchShowing(page());
  system().wake();
  EXPECT_THAT(webView().scripts(),
              ElementsAre(DesktopTimeZone::script("Europe/Moscow"), resumeScript));
}

TEST_F(NavoraAppDelegateResumeTest, PublishesTheCurrentZone) {
  launchShowing(page());
  system().timeZone = "Asia/Tokyo";
  delegate_->applicationDidBecomeActive();
  EXPECT_EQ(webView().scripts().front(), DesktopTimeZone::script("Asia/Tokyo"));
}

TEST_F(NavoraAppDelegateResumeTest, LoadsNothing) {
  launchShowing(page());
  delegate_->applicationDidBecomeActive();
  EXPECT_THAT(webView().loads(), testing::SizeIs(1)) << "the login page of the launch";
}

TEST_F(NavoraAppDelegateResumeTest, SendsNothingToAForeignPage) {
  launchShowing(foreignPage());
  delegate_->applicationDidBecomeActive();
  system().wake();
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateResumeTest, SendsNothingIfNoPageIsShown) {
  launchShowing(std::nullopt);
  delegate_->applicationDidBecomeActive();
  system().wake();
  EXPECT_THAT(log().take(), IsEmpty());
}

// A desktop may activate an application before it has finished launching.
TEST_F(NavoraAppDelegateResumeTest, IsHarmlessBeforeTheWindowExists) {
  create();
  delegate_->applicationDidBecomeActive();
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateResumeTest, PublishesAChangedTimeZoneWithoutTheResumeEvent) {
  launchShowing(page());
  system().changeTimeZone("America/New_York");
  EXPECT_THAT(webView().scripts(), ElementsAre(DesktopTimeZone::script("America/New_York")));
}

TEST_F(NavoraAppDelegateResumeTest, PublishesTheIdentifierExactlyAsTheSystemReportsIt) {
  launchShowing(page());
  system().changeTimeZone("Nowhere/\"Quoted\"");
  EXPECT_THAT(webView().scripts(),
              ElementsAre("window.NavoraSystemTimeZone = \"Nowhere/\\\"Quoted\\\"\"; "
                          "window.dispatchEvent(new CustomEvent('tolvin:systemtimezonechange'));"));
}

TEST_F(NavoraAppDelegateResumeTest, PublishesAnUnchangedZoneToo) {
  launchShowing(page());
  system().changeTimeZone("Europe/Moscow");
  system().changeTimeZone("Europe/Moscow");
  EXPECT_THAT(webView().scripts(), testing::SizeIs(2));
}

TEST_F(NavoraAppDelegateResumeTest, ChangesNothingInAForeignPageWhenTheTimeZoneChanges) {
  launchShowing(foreignPage());
  system().changeTimeZone("America/New_York");
  EXPECT_THAT(log().take(), IsEmpty());
}

TEST_F(NavoraAppDelegateResumeTest, OffersAPostponedUpdateWhoseTimeCameDuringSleep) {
  platform_.userDefaults().setValue(
      "navora.updateReminder.pending",
      {{"version", "2.0"}, {"deadline", secondsSince1970(system().time + 1h)}});
  launchShowing(page());
  system().time += 9h;
  log().take();
  system().wake();
  platform_.mainQueue().advance(100ms);
  EXPECT_THAT(log().take(), Contains("updater.checkInBackground"));
}

TEST_F(NavoraAppDelegateResumeTest, StopsObservingTheSystemWhenItIsDestroyed) {
  launchShowing(page());
  EXPECT_EQ(system().timeZoneObserverCount(), 1U);
  EXPECT_EQ(system().wakeObserverCount(), 1U);
  delegate_.reset();
  EXPECT_EQ(system().timeZoneObserverCount(), 0U);
  EXPECT_EQ(system().wakeObserverCount(), 0U);
}

}  // namespace
}  // namespace navora
