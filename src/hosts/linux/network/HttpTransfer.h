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
#include "platform/ObserverToken.h"

namespace navora {

// Takes an answer piece by piece, as it comes, in place of a body in memory.
struct HttpReceiver {
  // With the length that the answer announces, 0 for none. A failure ends the transfer.
  std::function<std::optional<PlatformError>(int status, std::uint64_t length)> onHead;
  std::function<std::optional<PlatformError>(std::string_view bytes)> onBytes;
};

// One request under way and its answer. Going, it cancels itself without telling.
class HttpTransfer : public std::enable_shared_from_this<HttpTransfer> {
 public:
  using OnEnd = std::function<void(HttpSession::Result)>;

  HttpTransfer(HttpRequest request, const HttpSessionConfiguration& limits,
               std::optional<HttpReceiver> receiver = std::nullopt);
  ~HttpTransfer();
  HttpTransfer(const HttpTransfer&) = delete;
  HttpTransfer& operator=(const HttpTransfer&) = delete;

  // `onEnd` is called once, later; the transfer may be released inside of it.
  void start(SoupSession* session, OnEnd onEnd);

 private:
  // Reports what GLib calls back with to a transfer that may be gone by then.
  using Handle = std::weak_ptr<HttpTransfer>;

  bool makeMessage();
  bool addHeaders();
  void failLater(PlatformError error);
  void restartIdleTimer();
  void answered();
  void read();
  void received(GBytes* data);
  std::optional<PlatformError> keep(std::string_view bytes);
  void ended();
  void end(HttpSession::Result result);
  void timeOut();

  static void onProgress(SoupMessage*, gpointer self);
  static void onBytesSent(SoupMessage*, guint, gpointer self);
  static void onAnswer(GObject* session, GAsyncResult* result, gpointer data);
  static void onBytes(GObject* stream, GAsyncResult* result, gpointer data);

  HttpRequest request_;
  HttpSessionConfiguration limits_;
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
