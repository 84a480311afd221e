#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Navigation.h"
#include "support/Url.h"

namespace navora {

// An action of the user or the page in a known frame. The engine asks about its effect shortly
// after, without naming the frame.
struct PageAction {
  enum class Kind { link, contextMenu, form, openWindow, chooseFiles };

  Kind kind;
  FrameInfo frame;
  // The target; std::nullopt for file choosers.
  std::optional<Url> url;
  bool directories = false;

  bool operator==(const PageAction&) const = default;
};

// Keeps recent page actions and matches them with the engine's policy requests. An action matches
// one request, for its URL (for a form, up to query and fragment), within a second: the page may
// have cancelled it, and a request must never be attributed to another frame.
class PageActions {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  static constexpr std::chrono::seconds lifetime{1};
  static constexpr std::size_t maximumCount = 32;

  explicit PageActions(Clock clock = std::chrono::steady_clock::now);

  void add(PageAction action);

  // Remove and return the newest action that explains a navigation to `url`, or a file chooser.
  std::optional<PageAction> takeNavigation(const Url& url);
  std::optional<PageAction> takeFileChooser();

  // Forgets all actions; called when another page is shown.
  void clear();

 private:
  struct Entry {
    PageAction action;
    std::chrono::steady_clock::time_point time;
  };

  template <typename Matches>
  std::optional<PageAction> take(Matches matches);
  void forgetExpired();

  Clock clock_;
  // Oldest first.
  std::vector<Entry> entries_;
};

}  // namespace navora
