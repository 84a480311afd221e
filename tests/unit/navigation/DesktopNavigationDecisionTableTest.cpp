#include <ostream>
#include <tuple>

#include <gmock/gmock.h>

#include "unit/navigation/DesktopNavigationTest.h"

// Checks every combination of a navigation decision's inputs against an independent formulation of
// the rules.
namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

enum class Source { main, mainOfOtherPort, foreignMain, sub, foreignSub, mainWithoutUrl, unknown };

FrameInfo frameOf(Source source) {
  switch (source) {
    case Source::main:
      return mainFrame("https://navora.example/today");
    case Source::mainOfOtherPort:
      return mainFrame("https://navora.example:444/today");
    case Source::foreignMain:
      return mainFrame("https://remote.example/");
    case Source::sub:
      return subframe("https://navora.example/today");
    case Source::foreignSub:
      return subframe("https://remote.example/");
    case Source::mainWithoutUrl:
      return {true, std::nullopt};
    case Source::unknown:
      break;
  }
  return {};
}

struct Destination {
  std::string url;
  bool opensExternally;
};

enum class Target { none, mainFrame, subframe };

std::optional<FrameInfo> frameOf(Target target) {
  switch (target) {
    case Target::mainFrame:
      return mainFrame("https://navora.example/today");
    case Target::subframe:
      return subframe("https://navora.example/today");
    case Target::none:
      break;
  }
  return std::nullopt;
}

const auto allTypes = testing::Values(NavigationType::linkActivated, NavigationType::formSubmitted,
                                      NavigationType::backForward, NavigationType::reload,
                                      NavigationType::formResubmitted, NavigationType::other);

// Inputs that each test iterates over instead of being a parameter.
struct Circumstances {
  Source source;
  Target target;
  bool download;
};

void PrintTo(const Circumstances& circumstances, std::ostream* stream) {
  *stream << "source " << static_cast<int>(circumstances.source) << ", target "
          << static_cast<int>(circumstances.target) << ", download " << circumstances.download;
}

std::vector<Circumstances> allCircumstances() {
  std::vector<Circumstances> all;
  for (const Source source :
       {Source::main, Source::mainOfOtherPort, Source::foreignMain, Source::sub, Source::foreignSub,
        Source::mainWithoutUrl, Source::unknown}) {
    for (const Target target : {Target::none, Target::mainFrame, Target::subframe}) {
      for (const bool download : {false, true})
        all.push_back({source, target, download});
    }
  }
  return all;
}

NavigationAction makeAction(const std::string& url, NavigationType type,
                            const Circumstances& circumstances) {
  NavigationAction action;
  action.url = testUrl(url);
  action.type = type;
  action.sourceFrame = frameOf(circumstances.source);
  action.targetFrame = frameOf(circumstances.target);
  action.shouldPerformDownload = circumstances.download;
  action.request = std::make_shared<FakeRequest>(*action.url);
  return action;
}

class ForeignNavigationTest
    : public DesktopNavigationTest,
      public testing::WithParamInterface<std::tuple<Destination, NavigationType>> {};

TEST_P(ForeignNavigationTest, IsCancelledAndOpensTheBrowserOnlyForTheTrustedMainFrame) {
  const auto& [destination, type] = GetParam();
  for (const Circumstances& circumstances : allCircumstances()) {
    SCOPED_TRACE(testing::PrintToString(circumstances));
    const auto action = makeAction(destination.url, type, circumstances);

    EXPECT_EQ(decide(action), NavigationPolicy::cancel);

    const bool clickedOrNewWindow =
        type == NavigationType::linkActivated || circumstances.target == Target::none;
    const bool trusted = circumstances.source == Source::main;
    if (clickedOrNewWindow && trusted && destination.opensExternally) {
      EXPECT_THAT(log().take(), ElementsAre("workspace.open " + action.url->string()));
    } else {
      EXPECT_THAT(log().take(), IsEmpty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, ForeignNavigationTest,
    testing::Combine(testing::Values(Destination{"https://remote.example/page", true},
                                     Destination{"http://navora.example/", true},
                                     Destination{"https://navora.example:444/", true},
                                     Destination{"mailto:someone@remote.example", true},
                                     Destination{"TEL:+1", true},
                                     Destination{"https://user@navora.example/", false},
                                     Destination{"javascript:alert(1)", false},
                                     Destination{"file:///tmp/data", false},
                                     Destination{"data:text/html,test", false},
                                     Destination{"about:blank", false},
                                     Destination{"custom:payload", false}),
                     allTypes));

class OriginNavigationTest : public DesktopNavigationTest,
                             public testing::WithParamInterface<NavigationType> {};

TEST_P(OriginNavigationTest, StaysInTheSameView) {
  for (const Circumstances& circumstances : allCircumstances()) {
    SCOPED_TRACE(testing::PrintToString(circumstances));
    const auto action = makeAction("https://navora.example/circles", GetParam(), circumstances);

    const auto policy = decide(action);

    const auto opened = log().take();
    if (circumstances.download) {
      EXPECT_EQ(policy, NavigationPolicy::download);
      EXPECT_THAT(opened, IsEmpty());
    } else if (circumstances.target == Target::none) {
      EXPECT_EQ(policy, NavigationPolicy::cancel);
      EXPECT_THAT(opened, ElementsAre("webView.loadRequest https://navora.example/circles"));
    } else {
      EXPECT_EQ(policy, NavigationPolicy::allow);
      EXPECT_THAT(opened, IsEmpty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllTypes, OriginNavigationTest, allTypes);

}  // namespace
}  // namespace navora
