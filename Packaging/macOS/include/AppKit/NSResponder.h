#pragma once

#import <Foundation/Foundation.h>

@class NSEvent;

#pragma clang assume_nonnull begin

@interface NSResponder : NSObject
@property(readonly) BOOL acceptsFirstResponder;
- (BOOL)becomeFirstResponder;
- (BOOL)resignFirstResponder;
- (void)mouseDown:(NSEvent*)event;
- (void)keyDown:(NSEvent*)event;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end

#pragma clang assume_nonnull end
