#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSString.h>

#pragma clang assume_nonnull begin

typedef NSString* NSAttributedStringKey;

@interface NSAttributedString : NSObject <NSCopying>
- (instancetype)initWithString:(NSString*)text
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@property(readonly, copy) NSString* string;
@end

#pragma clang assume_nonnull end
