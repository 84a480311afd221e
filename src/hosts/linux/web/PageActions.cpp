#include "hosts/linux/web/PageActions.h"

#include <algorithm>
#include <utility>

namespace navora {
namespace {

// Compares without query and fragment: submitting a GET form replaces the query of its action.
bool leadsTo(const Url& formAction, const Url& url) {
  auto expected = formAction.components();
  auto actual = url.components();
  expected.query = actual.query = std::nullopt;
  expected.fragment = actual.fragment = std::nullopt;
  return Url::fromComponents(expected) == Url::fromComponents(actual);
}

bool explains(const PageAction& action, const Url& url) {
  switch (action.kind) {
    case PageAction::Kind::link:
    case PageAction::Kind::contextMenu:
    case PageAction::Kind::openWindow:
      return action.url == url;
    case PageAction::Kind::form:
      return action.url && leadsTo(*action.url, url);
    case PageAction::Kind::chooseFiles:
      return false;
  }
  return false;
}

}  // namespace

PageActions::PageActions(Clock clock) : clock_(std::move(clock)) {}

void PageActions::add(PageAction action) {
  // A menu may stay open for any time; there is one at a time.
  if (action.kind == PageAction::Kind::contextMenu) {
    contextMenu_ = std::move(action);
  } else {
    keep({std::move(action), std::nullopt});
  }
}

void PageActions::keep(Entry entry) {
  forgetExpired();
  if (entries_.size() == maximumCount) entries_.erase(entries_.begin());
  entries_.push_back(std::move(entry));
}

void PageActions::end(const std::string& id) {
  std::erase_if(entries_, [&](const Entry& entry) { return entry.action.id == id; });
}

void PageActions::eventOver(const std::string& id) {
  for (Entry& entry : entries_) {
    if (entry.action.id == id) entry.due = clock_();
  }
}

void PageActions::contextMenuLinkChosen() {
  if (contextMenu_) keep({*std::exchange(contextMenu_, std::nullopt), clock_()});
}

std::optional<PageAction> PageActions::takeNavigation(const Url& url) {
  return take([&](const PageAction& action) { return explains(action, url); });
}

std::optional<PageAction> PageActions::takeFileChooser(bool multiple) {
  return take([=](const PageAction& action) {
    return action.kind == PageAction::Kind::chooseFiles && action.multiple == multiple;
  });
}

void PageActions::clear() {
  entries_.clear();
  contextMenu_.reset();
}

template <typename Matches>
std::optional<PageAction> PageActions::take(Matches matches) {
  forgetExpired();
  const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                  [&](const Entry& entry) { return matches(entry.action); });
  if (found == entries_.rend()) return std::nullopt;
  PageAction action = std::move(found->action);
  entries_.erase(std::next(found).base());
  return action;
}

void PageActions::forgetExpired() {
  const auto now = clock_();
  std::erase_if(entries_,
                [&](const Entry& entry) { return entry.due && now - *entry.due > lifetime; });
}

}  // namespace navora
