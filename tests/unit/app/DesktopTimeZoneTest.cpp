#include <gtest/gtest.h>

#include "app/DesktopTimeZone.h"

namespace navora {
namespace {

constexpr const char* announcement =
    "; window.dispatchEvent(new CustomEvent('tolvin:systemtimezonechange'));";

TEST(DesktopTimeZone, PublishesTheIdentifierAndAnnouncesIt) {
  EXPECT_EQ(DesktopTimeZone::script("Europe/Moscow"),
            std::string("window.NavoraSystemTimeZone = \"Europe/Moscow\"") + announcement);
}

TEST(DesktopTimeZone, UsesTheIdentifierWithoutMappingOrValidation) {
  for (const std::string identifier : {"GMT", "Asia/Calcutta", "Mars/Olympus", "+03", " x "}) {
    EXPECT_EQ(DesktopTimeZone::script(identifier),
              "window.NavoraSystemTimeZone = \"" + identifier + "\"" + announcement);
  }
  EXPECT_EQ(DesktopTimeZone::script(""),
            std::string("window.NavoraSystemTimeZone = \"\"") + announcement);
}

TEST(DesktopTimeZone, EscapesAnIdentifierThatContainsCode) {
  EXPECT_EQ(DesktopTimeZone::script("\"; alert(1); //\\\n\xE2\x80\xA8</script>"),
            std::string("window.NavoraSystemTimeZone = "
                        "\"\\\"; alert(1); //\\\\\\n\\u2028<\\/script>\"") +
                announcement);
}

TEST(DesktopTimeZoneDeathTest, AbortsOnAnIdentifierThatCannotBeEncoded) {
  EXPECT_DEATH(DesktopTimeZone::script("Europe/\xFF"), "Fatal error: .* \\(TimeZone:5\\)");
}

}  // namespace
}  // namespace navora
