#include "hosts/linux/network/HttpTransfer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "hosts/linux/system/PlatformErrors.h"

namespace navora {
namespace {

constexpr gsize readingStep = 64 * 1024;

std::chrono::milliseconds milliseconds(double seconds) {
  return std::chrono::milliseconds(static_cast<long>(std::max(seconds, 0.0) * 1000));
}

PlatformError ioError(int code, const char* description) {
  return {g_quark_to_string(G_IO_ERROR), code, description};
}

// Returns whether `text` can be a header's value without ending the header (RFC 9110, 5.5).
bool isHeaderText(const std::string& text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

// Returns whether `name` is a token (RFC 9110, 5.6.2).
bool isHeaderName(const std::string& name) {
  constexpr std::string_view punctuation = "!#$%&'*+-.^_`|~";
  return !name.empty() && std::ranges::all_of(name, [&](char c) {
    return g_ascii_isalnum(c) || punctuation.find(c) != std::string_view::npos;
  });
}

// Returns whether a chunked body ended before its last chunk. libsoup (3.2) reports a connection
// that is closed between two chunks as the end of the body. Its body stream remembers whether it
// has seen the last chunk: if so, it returns 0 even to a cancelled read; if not, it reads from the
// connection, and the cancelled read fails.
bool isCutOff(SoupMessage* message, GInputStream* stream) {
  if (soup_message_headers_get_encoding(soup_message_get_response_headers(message)) !=
      SOUP_ENCODING_CHUNKED) {
    return false;
  }
  while (g_strcmp0(G_OBJECT_TYPE_NAME(stream), "SoupBodyInputStream") != 0) {
    if (!G_IS_FILTER_INPUT_STREAM(stream)) return false;
    stream = g_filter_input_stream_get_base_stream(G_FILTER_INPUT_STREAM(stream));
  }
  const auto cancelled = GObjectPtr<GCancellable>::adopt(g_cancellable_new());
  g_cancellable_cancel(cancelled.get());
  // After the last chunk the stream reads trailer lines into the buffer.
  std::array<char, 64> unused{};
  return g_input_stream_read(stream, unused.data(), unused.size(), cancelled.get(), nullptr) != 0;
}

}  // namespace

HttpTransfer::HttpTransfer(HttpRequest request, const HttpSessionConfiguration& limits,
                           MainQueue& mainQueue, std::optional<HttpReceiver> receiver)
    : request_(std::move(request)),
      limits_(limits),
      mainQueue_(mainQueue),
      receiver_(std::move(receiver)),
      cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
  limits_.requestTimeoutSeconds = std::min(limits_.requestTimeoutSeconds, request_.timeoutSeconds);
}

HttpTransfer::~HttpTransfer() {
  g_cancellable_cancel(cancellable_.get());
}

void HttpTransfer::start(SoupSession* session, OnEnd onEnd) {
  onEnd_ = std::move(onEnd);
  if (!makeMessage()) return;
  restartIdleTimer();
  totalTimer_ =
      mainQueue_.after(milliseconds(limits_.resourceTimeoutSeconds), [this] { timeOut(); });
  headersArrived_ = SignalConnection(message_.get(), "got-headers", G_CALLBACK(onProgress), this);
  bytesSent_ = SignalConnection(message_.get(), "wrote-body-data", G_CALLBACK(onBytesSent), this);
  soup_session_send_async(session, message_.get(), G_PRIORITY_DEFAULT, cancellable_.get(),
                          onResponse, new Handle(weak_from_this()));
}

bool HttpTransfer::makeMessage() {
  GErrorPtr error;
  GUri* uri = g_uri_parse(request_.url.string().c_str(),
                          static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS), error.out());
  if (uri == nullptr) {
    failLater(platformErrorFrom(*error));
    return false;
  }
  const bool isWebAddress = stringFrom(g_uri_get_scheme(uri)).starts_with("http") &&
                            !stringFrom(g_uri_get_host(uri)).empty();
  if (isWebAddress && isHeaderName(request_.method)) {
    message_ =
        GObjectPtr<SoupMessage>::adopt(soup_message_new_from_uri(request_.method.c_str(), uri));
  }
  g_uri_unref(uri);
  if (!message_ || !addHeaders()) {
    failLater(ioError(G_IO_ERROR_INVALID_ARGUMENT, "The request is not valid"));
    return false;
  }
  soup_message_add_flags(message_.get(), SOUP_MESSAGE_NO_REDIRECT);
  if (!request_.body.empty()) {
    GBytes* body = g_bytes_new(request_.body.data(), request_.body.size());
    soup_message_set_request_body_from_bytes(message_.get(), nullptr, body);
    g_bytes_unref(body);
  }
  return true;
}

bool HttpTransfer::addHeaders() {
  SoupMessageHeaders* headers = soup_message_get_request_headers(message_.get());
  for (const auto& [name, value] : request_.headers) {
    if (!isHeaderName(name) || !isHeaderText(value)) return false;
    soup_message_headers_append(headers, name.c_str(), value.c_str());
  }
  return true;
}

void HttpTransfer::failLater(PlatformError error) {
  failure_ = mainQueue_.after(std::chrono::milliseconds::zero(),
                              [this, error = std::move(error)] { end(Unexpected(error)); });
}

void HttpTransfer::restartIdleTimer() {
  idleTimer_ = mainQueue_.after(milliseconds(limits_.requestTimeoutSeconds), [this] { timeOut(); });
}

void HttpTransfer::timeOut() {
  end(Unexpected(ioError(PlatformError::timedOutCode, "The request timed out")));
}

void HttpTransfer::onProgress(SoupMessage*, gpointer self) {
  static_cast<HttpTransfer*>(self)->restartIdleTimer();
}

void HttpTransfer::onBytesSent(SoupMessage*, guint, gpointer self) {
  static_cast<HttpTransfer*>(self)->restartIdleTimer();
}

void HttpTransfer::onResponse(GObject* session, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Handle> handle(static_cast<Handle*>(data));
  GErrorPtr error;
  auto stream = GObjectPtr<GInputStream>::adopt(
      soup_session_send_finish(SOUP_SESSION(session), result, error.out()));
  const auto self = handle->lock();
  if (!self || !self->onEnd_) return;
  if (error) return self->end(Unexpected(platformErrorFrom(*error)));
  self->stream_ = std::move(stream);
  self->receiveHead();
}

void HttpTransfer::receiveHead() {
  response_.status = static_cast<int>(soup_message_get_status(message_.get()));
  // Redirects are not followed, so this is the requested address.
  response_.url = request_.url;
  if (receiver_) {
    const goffset length =
        soup_message_headers_get_content_length(soup_message_get_response_headers(message_.get()));
    auto error = receiver_->onHead(response_.status, static_cast<std::uint64_t>(length));
    if (error) return end(Unexpected(*std::move(error)));
  }
  read();
}

void HttpTransfer::read() {
  // One byte beyond the limit shows that the body exceeds it.
  const gsize remaining = limits_.maximumBodyBytes - bodyBytes_;
  const gsize step = remaining < readingStep ? remaining + 1 : readingStep;
  g_input_stream_read_bytes_async(stream_.get(), step, G_PRIORITY_DEFAULT, cancellable_.get(),
                                  onBytes, new Handle(weak_from_this()));
}

void HttpTransfer::onBytes(GObject* stream, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Handle> handle(static_cast<Handle*>(data));
  GErrorPtr error;
  GBytes* bytes = g_input_stream_read_bytes_finish(G_INPUT_STREAM(stream), result, error.out());
  const std::unique_ptr<GBytes, decltype(&g_bytes_unref)> owned(bytes, g_bytes_unref);
  const auto self = handle->lock();
  if (!self || !self->onEnd_) return;
  if (error) return self->end(Unexpected(platformErrorFrom(*error)));
  self->received(bytes);
}

void HttpTransfer::received(GBytes* data) {
  restartIdleTimer();
  gsize size = 0;
  const auto* bytes = static_cast<const char*>(g_bytes_get_data(data, &size));
  if (size == 0) return finishBody();
  if (size > limits_.maximumBodyBytes - bodyBytes_) {
    response_.body.clear();
    response_.bodyTooLarge = true;
    return end(std::move(response_));
  }
  bodyBytes_ += size;
  if (auto error = keep({bytes, size})) return end(Unexpected(*std::move(error)));
  read();
}

std::optional<PlatformError> HttpTransfer::keep(std::string_view bytes) {
  if (receiver_) return receiver_->onBytes(bytes);
  response_.body.append(bytes);
  return std::nullopt;
}

void HttpTransfer::finishBody() {
  if (isCutOff(message_.get(), stream_.get())) {
    return end(Unexpected(ioError(G_IO_ERROR_PARTIAL_INPUT, "The response was cut off")));
  }
  end(std::move(response_));
}

void HttpTransfer::end(HttpSession::Result result) {
  const auto self = shared_from_this();
  idleTimer_.reset();
  totalTimer_.reset();
  // Stops what is still being sent or read. A connection whose response was read to its end stays
  // open for the next request.
  g_cancellable_cancel(cancellable_.get());
  std::exchange(onEnd_, nullptr)(std::move(result));
}

}  // namespace navora
