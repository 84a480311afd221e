#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <libsoup/soup.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"
#include "platform/ObserverToken.h"

namespace navora {

// Receives a response piece by piece, so that its body need not fit into memory. An error that a
// callback returns ends the transfer with that error.
struct HttpReceiver {
  // Called once. `length` is the Content-Length in bytes, 0 without one.
  std::function<std::optional<PlatformError>(int status, std::uint64_t length)> onHead;
  std::function<std::optional<PlatformError>(std::string_view bytes)> onBytes;
};

// One request and its response. Destroying it cancels the request; `onEnd` is not called.
class HttpTransfer : public std::enable_shared_from_this<HttpTransfer> {
 public:
  using OnEnd = std::function<void(HttpSession::Result)>;

  // Keeps the body in memory without a `receiver`. `mainQueue` must outlive the transfer.
  HttpTransfer(HttpRequest request, const HttpSessionConfiguration& limits, MainQueue& mainQueue,
               std::optional<HttpReceiver> receiver = std::nullopt);
  ~HttpTransfer();
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;

  // Sends the request. Calls `onEnd` once, after this function has returned; `onEnd` may release
  // the transfer.
  void start(SoupSession* session, OnEnd onEnd);

 private:
  // User data of GLib's callbacks, which may come after the transfer was destroyed.
  using Handle = std::weak_ptr<HttpTransfer>;

  bool makeMessage();
  bool addHeaders();
  void failLater(PlatformError error);
  void restartIdleTimer();
  void receiveHead();
  void read();
  void received(GBytes* data);
  std::optional<PlatformError> keep(std::string_view bytes);
  void finishBody();
  void end(HttpSession::Result result);
  void timeOut();

  static void onProgress(SoupMessage*, gpointer self);
  static void onBytesSent(SoupMessage*, guint, gpointer self);
  static void onResponse(GObject* session, GAsyncResult* result, gpointer data);
  static void onBytes(GObject* stream, GAsyncResult* result, gpointer data);

  HttpRequest request_;
  HttpSessionConfiguration limits_;
  MainQueue& mainQueue_;
  const std::optional<HttpReceiver> receiver_;
  OnEnd onEnd_;
  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<SoupMessage> message_;
  GObjectPtr<GInputStream> stream_;
  HttpResponse response_;
  std::size_t bodyBytes_ = 0;
  SignalConnection headersArrived_;
  SignalConnection bytesSent_;
  std::unique_ptr<ObserverToken> idleTimer_;
  std::unique_ptr<ObserverToken> totalTimer_;
  std::unique_ptr<ObserverToken> failure_;
};

}  // namespace navora
