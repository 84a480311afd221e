#pragma once

#import <Foundation/Foundation.h>

// A class of which other files see no instance variables, as of those of the frameworks.
@interface SlidingBase : NSObject
@property(nonatomic) long first;
@property(nonatomic) long second;
@end
