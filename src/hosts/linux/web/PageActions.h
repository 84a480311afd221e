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
  // Of file choosers.
  bool directories = false;
  bool multiple = false;
  // Unique among all reports; empty for a report that is not ended.
  std::string id = {};

  bool operator==(const PageAction&) const = default;
};

// Keeps recent page actions and matches them with the engine's policy requests. An action matches
// one request, for its URL (for a form, up to query and fragment): the page may have cancelled it,
// and a request must never be attributed to another frame. So it is forgotten as soon as its frame
// reports that it has ended. A form matches for at most a second after its event, a context menu
// for at most a second after the user has chosen to open its link.
class PageActions {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  static constexpr std::chrono::seconds lifetime{1};
  static constexpr std::size_t maximumCount = 32;

  explicit PageActions(Clock clock = std::chrono::steady_clock::now);

  void add(PageAction action);

  // Forgets the action with this id, unless a request has matched it.
  void end(const std::string& id);

  // Tells that the event of the action with this id is over, and that its request is due.
  void eventOver(const std::string& id);

  // Tells that the user has chosen to open the link of the last context menu.
  void contextMenuLinkChosen();

  // Remove and return the newest action that explains a navigation to `url`, or a chooser of one
  // file or of several.
  std::optional<PageAction> takeNavigation(const Url& url);
  std::optional<PageAction> takeFileChooser(bool multiple);

  // Forgets all actions; called when another page is shown.
  void clear();

 private:
  struct Entry {
    PageAction action;
    // When the request was due. The page's handlers may take any time before that, for example
    // with a dialog.
    std::optional<std::chrono::steady_clock::time_point> due;
  };

  template <typename Matches>
  std::optional<PageAction> take(Matches matches);
  void keep(Entry entry);
  void forgetExpired();

  Clock clock_;
  // Oldest first.
  std::vector<Entry> entries_;
  // The last one on a link, until its link is opened.
  std::optional<PageAction> contextMenu_;
};

}  // namespace navora
