#pragma once

#import <Foundation/Foundation.h>

// Requires that a completion handler is called once. The block that is the handler calls -call and
// owns this object, so that it knows when the handler cannot be called any more.
@interface NavoraOnceHandler : NSObject
@property(nonatomic) BOOL called;
- (void)call;
@end
