#include "hosts/macos/web/MacDownload.h"

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/web/OnceCallback.h"

// Forwards what WebKit asks and reports about one download. Calling the core is the last step of
// every method, because the core releases an ended download and thereby this object.
@interface NavoraDownloadForwarder : NSObject <WKDownloadDelegate>
@property(nonatomic, nullable) navora::MacDownload* download;
@property(nonatomic, nullable) navora::DownloadDelegate* delegate;
@property(nonatomic) BOOL ended;
@end

namespace {

using Destination = std::optional<std::filesystem::path>;

NSURL* _Nullable toDestinationURL(const Destination& destination) {
  return destination ? navora::toFileURL(*destination) : nil;
}

}  // namespace

@implementation NavoraDownloadForwarder

- (void)download:(WKDownload*)download
    decideDestinationUsingResponse:(NSURLResponse*)response
                 suggestedFilename:(NSString*)suggestedFilename
                 completionHandler:(void (^)(NSURL* _Nullable))completionHandler {
  const auto answer =
      navora::onceCallback(std::function<void(Destination)>([=](Destination destination) {
                             completionHandler(toDestinationURL(destination));
                           }),
                           std::nullopt);
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->decideDestination(*self.download, navora::toUrl(response.URL),
                                   navora::toString(suggestedFilename), answer);
}

- (void)download:(WKDownload*)download
    willPerformHTTPRedirection:(NSHTTPURLResponse*)response
                    newRequest:(NSURLRequest*)request
               decisionHandler:(void (^)(WKDownloadRedirectPolicy))decisionHandler {
  const bool allowed = self.delegate != nullptr && self.download != nullptr &&
                       self.delegate->allowsRedirect(*self.download, navora::toUrl(request.URL));
  decisionHandler(allowed ? WKDownloadRedirectPolicyAllow : WKDownloadRedirectPolicyCancel);
}

- (void)downloadDidFinish:(WKDownload*)download {
  self.ended = YES;
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->downloadDidFinish(*self.download);
}

- (void)download:(WKDownload*)download
    didFailWithError:(NSError*)error
          resumeData:(nullable NSData*)resumeData {
  self.ended = YES;
  if (self.delegate == nullptr || self.download == nullptr) return;
  self.delegate->downloadDidFail(*self.download, navora::toPlatformError(error));
}

@end

namespace navora {

MacDownload::MacDownload(WKDownload* _Nonnull download)
    : download_(download), forwarder_([[NavoraDownloadForwarder alloc] init]) {
  forwarder_.download = this;
  download_.delegate = forwarder_;
}

MacDownload::~MacDownload() {
  forwarder_.download = nullptr;
  forwarder_.delegate = nullptr;
  if (!forwarder_.ended) [download_ cancel:nil];
}

void MacDownload::setDelegate(DownloadDelegate* _Nullable delegate) {
  forwarder_.delegate = delegate;
}

}  // namespace navora
