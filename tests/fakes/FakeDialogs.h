#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "fakes/EventLog.h"
#include "platform/Dialogs.h"
#include "support/FatalError.h"

namespace navora {

// The requests for one kind of dialog, and their answers. answerAhead() answers the next request
// before the call that makes it returns; other dialogs stay open until the test answers them.
template <class Request, class Answer>
class FakeDialog {
 public:
  using Completion = std::function<void(const Answer&)>;

  void ask(Request request, Completion completion) {
    requests_.push_back(std::move(request));
    open_.push_back(std::move(completion));
    if (answersAhead_.empty()) return;
    const Answer next = std::move(answersAhead_.front());
    answersAhead_.pop_front();
    answer(next);
  }

  void answerAhead(Answer next) { answersAhead_.push_back(std::move(next)); }

  // Answers the open dialog that was opened last.
  void answer(const Answer& given) {
    if (open_.empty()) fatalError("No dialog is open", "FakeDialogs", __LINE__);
    const Completion completion = std::move(open_.back());
    open_.pop_back();
    completion(given);
  }

  const std::vector<Request>& requests() const { return requests_; }
  std::size_t openCount() const { return open_.size(); }

 private:
  std::vector<Request> requests_;
  std::vector<Completion> open_;
  std::deque<Answer> answersAhead_;
};

class FakeDialogs final : public Dialogs {
 public:
  struct OpenPanelRequest {
    const MainWindow* window = nullptr;
    OpenPanelParameters parameters;
    bool operator==(const OpenPanelRequest&) const = default;
  };
  struct SavePanelRequest {
    const MainWindow* window = nullptr;
    std::string suggestedName;
    bool operator==(const SavePanelRequest&) const = default;
  };

  explicit FakeDialogs(EventLog& log) : log_(log) {}

  FakeDialog<AlertDescription, AlertResult> alerts;
  FakeDialog<OpenPanelRequest, std::optional<std::vector<std::filesystem::path>>> openPanels;
  FakeDialog<SavePanelRequest, std::optional<std::filesystem::path>> savePanels;

  void runAlert(const AlertDescription& alert, AlertCompletion completion) override;
  void beginOpenPanel(MainWindow& window, const OpenPanelParameters& parameters,
                      OpenPanelCompletion completion) override;
  void beginSavePanel(MainWindow& window, const std::string& suggestedName,
                      SavePanelCompletion completion) override;

 private:
  EventLog& log_;
};

}  // namespace navora
