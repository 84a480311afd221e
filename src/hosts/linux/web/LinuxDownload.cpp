#include "hosts/linux/web/LinuxDownload.h"

#include <cstdint>

#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/web/TruncatedPageCheck.h"

namespace navora {
namespace {

std::optional<Url> addressOf(WebKitURIResponse* response) {
  if (response == nullptr) return std::nullopt;
  return Url::parse(stringFrom(webkit_uri_response_get_uri(response)));
}

// Returns whether the body is compressed. Content-Length is then the length before the engine
// decodes it, so that a truncated body shows only where the data could not be compressed.
bool isEncoded(WebKitURIResponse* response) {
  SoupMessageHeaders* headers = webkit_uri_response_get_http_headers(response);
  return headers != nullptr &&
         soup_message_headers_get_list(headers, "Content-Encoding") != nullptr;
}

// Returns more bytes than any encoding adds to data that it cannot compress.
std::uint64_t encodingOverhead(std::uint64_t decodedLength) {
  return decodedLength / 100 + 1024;
}

}  // namespace

LinuxDownload::LinuxDownload(WebKitDownload* download)
    : download_(GObjectPtr<WebKitDownload>::retain(download)) {
  signals_.emplace_back(download, "decide-destination", G_CALLBACK(onDecideDestination), this);
  signals_.emplace_back(download, "failed", G_CALLBACK(onFailed), this);
  signals_.emplace_back(download, "finished", G_CALLBACK(onFinished), this);
}

LinuxDownload::~LinuxDownload() {
  signals_.clear();
  if (!ended_) webkit_download_cancel(download_.get());
}

gboolean LinuxDownload::onDecideDestination(WebKitDownload*, const char* suggestedFilename,
                                            gpointer self) {
  static_cast<LinuxDownload*>(self)->askForDestination(stringFrom(suggestedFilename));
  return TRUE;
}

void LinuxDownload::askForDestination(const std::string& suggestedFilename) {
  if (delegate_ == nullptr) return setDestination(std::nullopt);
  delegate_->decideDestination(
      *this, addressOf(webkit_download_get_response(download_.get())), suggestedFilename,
      [weak = weak_from_this()](const std::optional<std::filesystem::path>& path) {
        if (const auto self = weak.lock()) self->setDestination(path);
      });
}

void LinuxDownload::setDestination(const std::optional<std::filesystem::path>& path) {
  if (!path) return webkit_download_cancel(download_.get());
  const GCharPtr uri(g_filename_to_uri(path->c_str(), nullptr, nullptr));
  if (!uri) return webkit_download_cancel(download_.get());
  webkit_download_set_destination(download_.get(), uri.get());
}

// WebKitGTK (2.50) finishes a download whose connection was closed early if the reply says
// "Connection: close", because libsoup (3.2) then does not expect Content-Length to be right.
// Remove this when such a download is reported as failed.
bool LinuxDownload::isTruncated() const {
  WebKitURIResponse* response = webkit_download_get_response(download_.get());
  if (response == nullptr) return false;
  // 0 if unknown, as for a chunked body.
  const auto announced = webkit_uri_response_get_content_length(response);
  const auto received = webkit_download_get_received_data_length(download_.get());
  return (isEncoded(response) ? received + encodingOverhead(received) : received) < announced;
}

void LinuxDownload::fail(const PlatformError& error) {
  const auto keepAlive = shared_from_this();
  ended_ = true;
  if (delegate_ != nullptr) delegate_->downloadDidFail(*this, error);
}

void LinuxDownload::onFailed(WebKitDownload*, GError* error, gpointer self) {
  static_cast<LinuxDownload*>(self)->fail(platformErrorFrom(*error));
}

void LinuxDownload::onFinished(WebKitDownload*, gpointer self) {
  auto& download = *static_cast<LinuxDownload*>(self);
  // WebKitGTK emits "finished" after "failed" too.
  if (download.ended_) return;
  if (download.isTruncated()) return download.fail(connectionLost());
  const auto keepAlive = download.shared_from_this();
  download.ended_ = true;
  if (download.delegate_ != nullptr) download.delegate_->downloadDidFinish(download);
}

}  // namespace navora
