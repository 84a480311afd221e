#pragma once

#include <functional>
#include <memory>
#include <string>

#include <libsoup/soup.h>

#include "hosts/linux/GLibSupport.h"
#include "platform/HttpSession.h"
#include "platform/ObserverToken.h"

namespace navora {

// One request under way and its answer. Going, it cancels itself without telling.
class HttpTransfer : public std::enable_shared_from_this<HttpTransfer> {
 public:
  using OnEnd = std::function<void(HttpSession::Result)>;

  HttpTransfer(HttpRequest request, const HttpSessionConfiguration& limits);
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
  void read();
  void received(GBytes* data);
  void ended();
  void end(HttpSession::Result result);
  void timeOut();

  static void onProgress(SoupMessage*, gpointer self);
  static void onBytesSent(SoupMessage*, guint, gpointer self);
  static void onAnswer(GObject* session, GAsyncResult* result, gpointer data);
  static void onBytes(GObject* stream, GAsyncResult* result, gpointer data);

  HttpRequest request_;
  HttpSessionConfiguration limits_;
  OnEnd onEnd_;
  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<SoupMessage> message_;
  GObjectPtr<GInputStream> stream_;
  HttpResponse response_;
  SignalConnection headersArrived_;
  SignalConnection bytesSent_;
  std::unique_ptr<ObserverToken> idleTimer_;
  std::unique_ptr<ObserverToken> totalTimer_;
  std::unique_ptr<ObserverToken> failure_;
};

}  // namespace navora
