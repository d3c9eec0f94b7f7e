#pragma once

#import <AppKit/NSMenu.h>

#pragma clang assume_nonnull begin

static const CGFloat NSSquareStatusItemLength = -2.0;

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
/// Under what name the system keeps the place that the user has given the item.
@property(null_resettable, copy) NSString* autosaveName;
@end

@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
@property(readonly) CGFloat thickness;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

#pragma clang assume_nonnull end
