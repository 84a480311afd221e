#pragma once

#include <atomic>

#include <gio/gio.h>

#include "hosts/linux/system/GLibSupport.h"
#include "support/Url.h"

namespace navora {

// An HTTPS server on a free loopback port whose certificate nobody has signed but itself. Answers
// every request with "secret".
class TlsServer {
 public:
  TlsServer();
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  Url url() const;
  // Requests that have got through the encryption.
  int requests() const { return requests_; }

 private:
  static gboolean onConnection(GThreadedSocketService*, GSocketConnection* connection, GObject*,
                               gpointer self);

  GObjectPtr<GTlsCertificate> certificate_;
  GObjectPtr<GSocketService> service_;
  guint16 port_ = 0;
  std::atomic<int> requests_ = 0;
};

}  // namespace navora
