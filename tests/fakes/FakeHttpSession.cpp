#include "fakes/FakeHttpSession.h"

#include <utility>

#include "support/FatalError.h"

namespace navora {

void FakeHttpSession::Network::finish(HttpSession::Result result) {
  if (completions.empty()) fatalError("No request is under way", "FakeHttpSession", __LINE__);
  const auto completion = std::move(completions.front().second);
  completions.pop_front();
  completion(std::move(result));
}

void FakeHttpSession::Network::answer(int status, std::string body) {
  if (completions.empty()) fatalError("No request is under way", "FakeHttpSession", __LINE__);
  finish(HttpResponse{status, completions.front().first.url, std::move(body), false});
}

void FakeHttpSession::Network::fail(int code) {
  finish(Unexpected(PlatformError{"fake", code, "The network is the test's"}));
}

FakeHttpSession::FakeHttpSession(std::shared_ptr<Network> network,
                                 const HttpSessionConfiguration& configuration)
    : network_(std::move(network)) {
  network_->sessions.push_back(configuration);
}

FakeHttpSession::~FakeHttpSession() {
  network_->completions.clear();
}

void FakeHttpSession::send(const HttpRequest& request, Completion completion) {
  network_->requests.push_back(request);
  network_->completions.emplace_back(request, std::move(completion));
}

}  // namespace navora
