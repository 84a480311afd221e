#include "service/ServiceOptions.h"

#include <charconv>
#include <functional>
#include <optional>

namespace navora::service {
namespace {

// Stores an option's value. Returns what is wrong with it, or an empty string.
using Take = std::function<std::string(ServiceOptions&, const std::string&)>;

template <typename Number>
std::string takeNumber(const std::string& text, Number most, Number& target) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end || number < 0 || number > most) {
    return "must be a number from 0 to " + std::to_string(most);
  }
  target = number;
  return {};
}

std::string takeDirectory(const std::string& text, std::filesystem::path& target) {
  std::error_code error;
  if (!std::filesystem::is_directory(text, error)) return "must be a directory";
  target = text;
  return {};
}

std::string takeHost(ServiceOptions& options, const std::string& text) {
  if (text == "localhost" || text == "127.0.0.1") {
    options.host = "127.0.0.1";
  } else if (text == "::1") {
    options.host = text;
  } else {
    return "must be a loopback address: 127.0.0.1, localhost or ::1";
  }
  return {};
}

std::string takeAccount(ServiceOptions& options, const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == 0 || colon == std::string::npos || colon + 1 == text.size()) {
    return "must be NAME:PASSWORD";
  }
  options.accounts[text.substr(0, colon)] = text.substr(colon + 1);
  return {};
}

const std::map<std::string, Take>& valueOptions() {
  constexpr Milliseconds hour = 3600000;
  static const std::map<std::string, Take> all{
      {"--port", [](auto& options, auto& text) { return takeNumber(text, 65535, options.port); }},
      {"--host", takeHost},
      {"--database",
       [](auto& options, auto& text) {
         options.database = text;
         return std::string(text.empty() ? "must name a file" : "");
       }},
      {"--pages", [](auto& options, auto& text) { return takeDirectory(text, options.pages); }},
      {"--account", takeAccount},
      {"--job-delay",
       [](auto& options, auto& text) { return takeNumber(text, hour, options.jobDelay); }},
      {"--updates", [](auto& options, auto& text) { return takeDirectory(text, options.updates); }},
      {"--test-pages",
       [](auto& options, auto& text) { return takeDirectory(text, options.testPages); }},
  };
  return all;
}

bool takeFlag(ServiceOptions& options, const std::string& name) {
  if (name == "--no-samples") {
    options.samples = false;
  } else if (name == "--test") {
    options.test = true;
  } else if (name == "--test-driver") {
    options.testDriver = true;
  } else {
    return false;
  }
  return true;
}

}  // namespace

ServiceOptions::Parsed ServiceOptions::parse(const std::vector<std::string>& arguments) {
  ServiceOptions options;
  options.pages = NAVORA_SERVICE_PAGES;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string& name = arguments[index];
    if (name == "--help") return Help{};
    if (takeFlag(options, name)) continue;
    const auto option = valueOptions().find(name);
    if (option == valueOptions().end()) return Mistake{"unknown option " + name};
    if (++index == arguments.size()) return Mistake{name + " needs a value"};
    const std::string problem = option->second(options, arguments[index]);
    if (!problem.empty()) return Mistake{name + " " + problem};
  }
  if (!options.test && (options.testDriver || !options.testPages.empty())) {
    return Mistake{"--test-driver and --test-pages need --test"};
  }
  if (options.accounts.empty()) options.accounts = {{"demo", "demo"}};
  return options;
}

std::string ServiceOptions::usage() {
  return R"(navora-service: the web service of Navora for development, on this machine only.

  --port N             listen on this port; 0, the default, takes a free one
  --host ADDRESS       127.0.0.1 (default), localhost or ::1
  --database PATH      keep everything in this SQLite file; by default in memory
  --pages DIR          serve the pages from here
  --account NAME:PASS  who may sign in; may be given several times; default demo:demo
  --job-delay MS       how long the processing of a note takes; default 1500
  --updates DIR        serve the update feed, appcast.xml, and archives from here below
                       /updates/; by default a feed without items
  --no-samples         begin without sample notes, circles and events
  --test               switch the test controls below /__test/ on
  --test-driver        with --test: put the page driver into every page
  --test-pages DIR     with --test: serve these files below /__test/pages/
  --help               this text

When it is ready it prints one line with its address. SIGTERM or SIGINT ends it.
)";
}

}  // namespace navora::service
