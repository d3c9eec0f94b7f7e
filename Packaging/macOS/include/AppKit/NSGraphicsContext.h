#pragma once

#import <Foundation/Foundation.h>

@interface NSGraphicsContext : NSObject
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end
