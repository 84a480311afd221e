#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Navigation.h"
#include "support/Url.h"

namespace navora {

// Something the user or the page just did in a frame, which the engine will ask about in a moment
// without saying where it comes from.
struct PageAction {
  enum class Kind { link, contextMenu, form, openWindow, chooseFiles };

  Kind kind;
  FrameInfo frame;
  // The address it leads to, except for file choosers.
  std::optional<Url> url;
  bool download = false;
  bool directories = false;

  bool operator==(const PageAction&) const = default;
};

// Remembers page actions and finds the one behind a question of the engine. An action answers one
// question, about exactly its address, and is forgotten soon: the page may have cancelled it, and
// a question must never be taken for another frame's action.
class PageActions {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  static constexpr std::chrono::seconds lifetime{1};
  static constexpr std::size_t maximumCount = 32;

  explicit PageActions(Clock clock = std::chrono::steady_clock::now);

  void add(PageAction action);

  // The action that leads to `url`, if there is one.
  std::optional<PageAction> takeNavigation(const Url& url);
  std::optional<PageAction> takeFileChooser();

  // The page is gone, and with it everything it did.
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
