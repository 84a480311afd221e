#include <cstdlib>

#include "pages/PageTest.h"
#include "tests/support/Files.h"

namespace navora::driver {
namespace {

using testing::IsEmpty;

// NAVORA_HISTORIES asks for another number of histories. The guard never reports a page ready while
// a text is unsent, and blocks without need only in the cases that the model in histories.js lists.
class RestartGuardHistoriesTest : public PageTest {};

TEST_F(RestartGuardHistoriesTest, GuardAgreesWithAModelOfWhatTheUserTyped) {
  const char* wanted = std::getenv("NAVORA_HISTORIES");
  const int histories = wanted ? std::stoi(wanted) : 400;
  constexpr int perCall = 100;
  constexpr int steps = 16;
  open("/__test/pages/histories.html");
  page().evaluate("window.guard = " + Json(readFile(RESTART_GUARD_SCRIPT)).dump());
  for (int first = 1; first <= histories; first += perCall) {
    const Json result =
        page().evaluate("return await runHistories(guard, " + std::to_string(first) + ", " +
                        std::to_string(perCall) + ", " + std::to_string(steps) + ")");
    const std::vector<std::string> problems = result["problems"];
    ASSERT_THAT(problems, IsEmpty());
    if (first + perCall > histories) std::cout << result.dump() << "\n";
  }
}

}  // namespace
}  // namespace navora::driver
