#pragma once

#import <WebKit/WKConfiguration.h>
#import <WebKit/WKDownload.h>
#import <WebKit/WKNavigation.h>
#import <WebKit/WKWebView.h>
