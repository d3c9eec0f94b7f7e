#pragma once

#import <AppKit/NSControl.h>

@class NSMenu, NSMenuItem;

#pragma clang assume_nonnull begin

@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuWillOpen:(NSMenu*)menu;
- (void)menuDidClose:(NSMenu*)menu;
@end

@interface NSMenu : NSObject <NSCopying>
- (instancetype)initWithTitle:(NSString*)title NS_DESIGNATED_INITIALIZER;
@property(nullable, weak) id<NSMenuDelegate> delegate;
/// Whether the menu enables items by asking their targets.
@property BOOL autoenablesItems;
- (void)addItem:(NSMenuItem*)item;
- (void)insertItem:(NSMenuItem*)item atIndex:(NSInteger)index;
- (void)removeItemAtIndex:(NSInteger)index;
/// Known before the menu was ever shown.
@property(readonly) NSSize size;
/// In screen coordinates without a view. Returns once the menu has closed.
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem*)item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView*)view;
- (void)cancelTrackingWithoutAnimation;
@end

@interface NSMenuItem : NSObject <NSCopying>
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString*)key NS_DESIGNATED_INITIALIZER;
@property(copy) NSString* title;
@property(nullable, copy) NSAttributedString* attributedTitle;
@property(getter=isEnabled) BOOL enabled;
@property NSControlStateValue state;
@property(nullable, weak) id target;
@property(nullable, strong) NSView* view;
@property(nullable, strong) NSMenu* submenu;
@property NSInteger tag;
@end

#pragma clang assume_nonnull end
