#include "fakes/FakeHttpSession.h"

#include <utility>

#include "support/FatalError.h"

namespace navora {

void FakeHttpSession::Network::finish(HttpSession::Result result) {
  if (transfers.empty()) fatalError("No request is under way", "FakeHttpSession", __LINE__);
  const Transfer oldest = std::move(transfers.front());
  transfers.pop_front();
  if (result && result->body.size() > oldest.maximumBodyBytes) {
    result->body.clear();
    result->bodyTooLarge = true;
  }
  oldest.completion(std::move(result));
}

void FakeHttpSession::Network::answer(int status, std::string body) {
  if (transfers.empty()) fatalError("No request is under way", "FakeHttpSession", __LINE__);
  finish(HttpResponse{status, transfers.front().url, std::move(body), false});
}

void FakeHttpSession::Network::fail(int code) {
  finish(Unexpected(PlatformError{"fake", code, "The network is the test's"}));
}

FakeHttpSession::FakeHttpSession(std::shared_ptr<Network> network,
                                 const HttpSessionConfiguration& configuration)
    : network_(std::move(network)), maximumBodyBytes_(configuration.maximumBodyBytes) {
  network_->sessions.push_back(configuration);
}

FakeHttpSession::~FakeHttpSession() {
  std::erase_if(network_->transfers,
                [this](const Network::Transfer& transfer) { return transfer.session == this; });
}

HttpSession::RequestId FakeHttpSession::send(const HttpRequest& request, Completion completion) {
  network_->requests.push_back(request);
  network_->transfers.push_back(
      {this, ++lastRequest_, maximumBodyBytes_, request.url, std::move(completion)});
  return lastRequest_;
}

void FakeHttpSession::cancel(RequestId request) {
  std::erase_if(network_->transfers, [&](const Network::Transfer& transfer) {
    return transfer.session == this && transfer.id == request;
  });
}

}  // namespace navora
