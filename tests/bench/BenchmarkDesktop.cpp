#include "bench/BenchmarkDesktop.h"

#include <string>

#include "tests/support/Files.h"
#include "tests/support/Wait.h"

namespace navora::bench {

namespace {

constexpr const char* windowSizes = R"(
  <applications>
    <application class="Surf">
      <size>
        <width>1240</width>
        <height>820</height>
      </size>
    </application>
  </applications>
)";

driver::VirtualDesktop::Options withoutWindowManager(bool accessibility) {
  driver::VirtualDesktop::Options options;
  options.accessibility = accessibility;
  options.windowManager = false;
  return options;
}

void writeConfiguration(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::string text = readFile(from);
  const std::size_t end = text.rfind("</openbox_config>");
  if (end == std::string::npos) throw TestError("The window manager's configuration is missing");
  writeFile(to, text.insert(end, windowSizes));
}

}  // namespace

BenchmarkDesktop::BenchmarkDesktop(bool accessibility)
    : desktop_(withoutWindowManager(accessibility)) {
  const std::filesystem::path configuration = desktop_.root() / "openbox-benchmark.xml";
  writeConfiguration(desktop_.root() / "openbox.xml", configuration);
  windowManager_ = desktop_.start({"openbox", "--sm-disable", "--config-file", configuration});
  driver::XConnection& connection = desktop_.display().connection();
  waitUntil([&] { return connection.hasProperty(connection.root(), "_NET_SUPPORTING_WM_CHECK"); },
            "the window manager is ready", defaultTimeout(),
            [this] { return windowManager_->errorText(); });
  // Keep the pointer off the windows, so that no hover effect is measured.
  desktop_.mouse().moveTo({0, 0});
}

}  // namespace navora::bench
