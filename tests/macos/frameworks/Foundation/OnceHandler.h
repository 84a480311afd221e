#pragma once

#import <Foundation/Foundation.h>

// Requires that a completion handler is called once. The block that is the handler calls -call and
// owns this object, so that it knows when nobody can call the handler any more.
@interface NavoraOnceHandler : NSObject
@property(nonatomic) BOOL called;
- (void)call;
@end
