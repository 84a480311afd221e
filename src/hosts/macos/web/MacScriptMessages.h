#pragma once

#import <WebKit/WebKit.h>

#include "platform/ScriptMessage.h"

// Hands the page's messages to the core. Its handler may be replaced by null at any time.
@interface NavoraScriptMessageForwarder : NSObject <WKScriptMessageHandler>
@property(nonatomic, nullable) navora::ScriptMessageHandler* handler;
@end
