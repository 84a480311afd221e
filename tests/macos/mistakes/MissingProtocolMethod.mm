// Classes that lack a method which their protocol or their own interface requires.

// clang-format off: expected messages stay on one line.

#import <WebKit/WebKit.h>

@interface DownloadDelegateWithoutDestination : NSObject <WKDownloadDelegate>
@end

// expected-error@+2 {{method 'download:decideDestinationUsingResponse:suggestedFilename:completionHandler:' in protocol 'WKDownloadDelegate' not implemented}}
// expected-note@WebKit/WKDownload.h:* {{declared here}}
@implementation DownloadDelegateWithoutDestination
@end

@interface Unfinished : NSObject
- (void)doLater;  // expected-note {{method 'doLater' declared here}}
@end

@implementation Unfinished  // expected-error {{method definition for 'doLater' not found}}
@end
