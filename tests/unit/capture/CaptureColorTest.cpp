#include <string>

#include <gtest/gtest.h>

#include "capture/CaptureAppearance.h"

namespace navora {
namespace {

std::optional<Color> color(const Json& value) {
  return CaptureAppearance::color(value);
}

TEST(CaptureColor, ReadsHexadecimalForms) {
  EXPECT_EQ(color("#000000"), (Color{0, 0, 0, 1}));
  EXPECT_EQ(color("#FF8000"), (Color{1, 128 / 255.0, 0, 1}));
  EXPECT_EQ(color("#ffffff80"), (Color{1, 1, 1, 128 / 255.0}));
  EXPECT_EQ(color(" #FFFFFF\n"), (Color{1, 1, 1, 1}));
}

TEST(CaptureColor, ReadsFunctionalForms) {
  EXPECT_EQ(color("rgb(255,255,255)"), (Color{1, 1, 1, 1}));
  EXPECT_EQ(color("rgba(0, 0, 0, 0.5)"), (Color{0, 0, 0, 0.5}));
  EXPECT_EQ(color("rgb(1, 2, 3, 0.5)"), (Color{1 / 255.0, 2 / 255.0, 3 / 255.0, 0.5}));
  EXPECT_EQ(color("rgba(1,\t2 , 3)"), (Color{1 / 255.0, 2 / 255.0, 3 / 255.0, 1}));
  EXPECT_EQ(color("rgb(127.5, 1e1, 0)"), (Color{0.5, 10 / 255.0, 0, 1}));
}

TEST(CaptureColor, RejectsOtherTexts) {
  for (const char* text : {"",
                           "#",
                           "#fff",
                           "#ffff",
                           "#fffff",
                           "#fffffg",
                           "#ffffff8",
                           "#+fffff",
                           "# fffff",
                           "ffffff",
                           "white",
                           "transparent",
                           "hsl(0, 0, 0)",
                           "rgb",
                           "rgb()",
                           "rgb(0,0)",
                           "rgb(0,0,0,0,0)",
                           "RGB(0,0,0)",
                           "rgb (0,0,0)",
                           "rgb(0,0,0",
                           "rgb(0 0 0)",
                           "rgb(0,0,0) x",
                           "rgb(0,,0)",
                           "rgb(256,0,0)",
                           "rgb(-1,0,0)",
                           "rgb(0,0,255.01)",
                           "rgba(0,0,0,2)",
                           "rgba(0,0,0,-0.1)",
                           "rgb(nan,0,0)",
                           "rgb(inf,0,0)",
                           "rgb(1e999,0,0)",
                           "rgb(0x10,0,0)",
                           "rgb(10%,0,0)",
                           "rgb(1_0,0,0)",
                           "rgb(0,0,0\n,0)",
                           "rgb(0,0,(0))",
                           "color(srgb 1 1 1)"}) {
    EXPECT_EQ(color(text), std::nullopt) << text;
  }
}

TEST(CaptureColor, RejectsAnythingButText) {
  for (const Json& value :
       {Json(), Json(0xffffff), Json(true), Json::array({"#ffffff"}), Json{{"color", "#ffffff"}}}) {
    EXPECT_EQ(color(value), std::nullopt) << value;
  }
}

TEST(CaptureColor, RejectsMoreThanEightyCharactersIncludingWhiteSpace) {
  const std::string written = "#ffffff";
  EXPECT_TRUE(color(std::string(80 - written.size(), ' ') + written));
  EXPECT_FALSE(color(std::string(81 - written.size(), ' ') + written));
}

}  // namespace
}  // namespace navora
