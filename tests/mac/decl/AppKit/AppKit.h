// What the backend uses of AppKit, declared in our own words for checks on other systems.
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class NSStatusBarButton, NSView, NSWindow;

typedef NSInteger NSModalResponse;
enum : NSModalResponse { NSAlertFirstButtonReturn = 1000 };
enum NSRectEdge : NSUInteger {
    NSRectEdgeMinX = 0,
    NSRectEdgeMinY = 1,
    NSRectEdgeMaxX = 2,
    NSRectEdgeMaxY = 3
};

@interface NSColor : NSObject
@property(class, readonly, strong) NSColor* clearColor;
@property(class, readonly, strong) NSColor* windowBackgroundColor;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
@end

@class NSGraphicsContext;
@interface NSImage : NSObject
+ (nullable instancetype)imageWithSystemSymbolName:(NSString*)name
                          accessibilityDescription:(nullable NSString*)description;
- (instancetype)initWithSize:(NSSize)size;
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size;
@property NSSize size;
- (void)setTemplate:(BOOL)isTemplate;
- (nullable CGImageRef)CGImageForProposedRect:(nullable NSRect*)rect
                                      context:(nullable NSGraphicsContext*)context
                                        hints:(nullable NSDictionary*)hints;
- (void)drawInRect:(NSRect)rect;
@end

enum NSCursorFrameResizePosition : NSUInteger {
    NSCursorFrameResizePositionTopLeft = 3,
    NSCursorFrameResizePositionTopRight = 9,
};
typedef NSUInteger NSCursorFrameResizeDirections;
enum : NSCursorFrameResizeDirections { NSCursorFrameResizeDirectionsAll = 3 };
@interface NSCursor : NSObject
@property(class, readonly, strong) NSCursor* arrowCursor;
@property(class, readonly, strong) NSCursor* IBeamCursor;
@property(class, readonly, strong) NSCursor* IBeamCursorForVerticalLayout;
@property(class, readonly, strong) NSCursor* pointingHandCursor;
@property(class, readonly, strong) NSCursor* crosshairCursor;
@property(class, readonly, strong) NSCursor* openHandCursor;
@property(class, readonly, strong) NSCursor* closedHandCursor;
@property(class, readonly, strong) NSCursor* operationNotAllowedCursor;
@property(class, readonly, strong) NSCursor* contextualMenuCursor;
@property(class, readonly, strong) NSCursor* dragCopyCursor;
@property(class, readonly, strong) NSCursor* dragLinkCursor;
@property(class, readonly, strong) NSCursor* disappearingItemCursor;
@property(class, readonly, strong) NSCursor* resizeLeftRightCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* resizeUpDownCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* resizeLeftCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* resizeRightCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* resizeUpCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* resizeDownCursor PINTLE_DEPRECATED(10.3, 15.0);
@property(class, readonly, strong) NSCursor* zoomInCursor PINTLE_SINCE(15.0);
@property(class, readonly, strong) NSCursor* zoomOutCursor PINTLE_SINCE(15.0);
@property(class, readonly, strong) NSCursor* columnResizeCursor PINTLE_SINCE(15.0);
@property(class, readonly, strong) NSCursor* rowResizeCursor PINTLE_SINCE(15.0);
+ (NSCursor*)frameResizeCursorFromPosition:(NSCursorFrameResizePosition)position
                              inDirections:(NSCursorFrameResizeDirections)directions PINTLE_SINCE(15.0);
@property(class, nullable, readonly, strong) NSCursor* currentSystemCursor PINTLE_DEPRECATED(10.6, 15.0);
- (instancetype)initWithImage:(NSImage*)image hotSpot:(NSPoint)hotSpot;
@property(readonly, strong) NSImage* image;
@property(readonly) NSPoint hotSpot;
- (void)set;
@end

@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
@property(readonly) NSRect visibleFrame;
@property(readonly, copy) NSDictionary<NSString*, id>* deviceDescription;
@end

enum NSEventType : NSUInteger {
    NSEventTypeLeftMouseDown = 1,
    NSEventTypeLeftMouseUp = 2,
    NSEventTypeRightMouseDown = 3,
    NSEventTypeRightMouseUp = 4,
    NSEventTypeKeyDown = 10,
    NSEventTypeKeyUp = 11,
};
typedef unsigned long long NSEventMask;
enum : NSEventMask {
    NSEventMaskLeftMouseDown = 1 << NSEventTypeLeftMouseDown,
    NSEventMaskLeftMouseUp = 1 << NSEventTypeLeftMouseUp,
    NSEventMaskRightMouseDown = 1 << NSEventTypeRightMouseDown,
    NSEventMaskRightMouseUp = 1 << NSEventTypeRightMouseUp,
    NSEventMaskKeyDown = 1 << NSEventTypeKeyDown,
};
typedef NSUInteger NSEventModifierFlags;
enum : NSEventModifierFlags { NSEventModifierFlagCommand = 1 << 20 };
@class NSGraphicsContext;
@interface NSEvent : NSObject
+ (nullable NSEvent*)keyEventWithType:(NSEventType)type
                             location:(NSPoint)location
                        modifierFlags:(NSEventModifierFlags)flags
                            timestamp:(NSTimeInterval)time
                         windowNumber:(NSInteger)window
                              context:(nullable NSGraphicsContext*)context
                           characters:(NSString*)characters
          charactersIgnoringModifiers:(NSString*)plainCharacters
                            isARepeat:(BOOL)isRepeat
                              keyCode:(unsigned short)code;
@property(class, readonly) NSPoint mouseLocation;
@property(readonly) NSEventType type;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(nullable, readonly, copy) NSString* charactersIgnoringModifiers;
+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block;
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask
                                            handler:(NSEvent* _Nullable (^)(NSEvent*))block;
+ (void)removeMonitor:(id)monitor;
@end

@interface NSResponder : NSObject
@end

typedef NSUInteger NSAutoresizingMaskOptions;
enum : NSAutoresizingMaskOptions { NSViewWidthSizable = 2, NSViewHeightSizable = 16 };
@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame;
- (void)drawRect:(NSRect)dirtyRect;
- (void)addSubview:(NSView*)view;
- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view;
@property NSRect frame;
@property NSRect bounds;
@property BOOL needsDisplay;
@property(getter=isHidden) BOOL hidden;
@property NSAutoresizingMaskOptions autoresizingMask;
@property CGFloat alphaValue;
@property BOOL clipsToBounds;
@property(nullable, readonly, unsafe_unretained) NSWindow* window;
@end

enum NSVisualEffectMaterial : NSInteger {
    NSVisualEffectMaterialPopover = 6,
    NSVisualEffectMaterialUnderWindowBackground = 21,
};
enum NSVisualEffectBlendingMode : NSInteger { NSVisualEffectBlendingModeBehindWindow = 0 };
enum NSVisualEffectState : NSInteger { NSVisualEffectStateActive = 1 };
@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@end

@class NSMenu;
@interface NSControl : NSView
@property(nullable, weak) id target;
@property(nullable) SEL action;
- (NSInteger)sendActionOn:(NSEventMask)mask;
- (void)performClick:(nullable id)sender;
@end
@interface NSButton : NSControl
@property(nullable, strong) NSImage* image;
@end
@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
@property(nullable, readonly, strong) NSStatusBarButton* button;
@property(nullable, strong) NSMenu* menu;
@end
@interface NSStatusBar : NSObject
@property(class, readonly, strong) NSStatusBar* systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end

@interface NSMenuItem : NSObject
+ (instancetype)separatorItem;
- (instancetype)initWithTitle:(NSString*)title action:(nullable SEL)action keyEquivalent:(NSString*)key;
@property(nullable, weak) id target;
@property(nullable, strong) id representedObject;
@end
@interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title;
- (void)addItem:(NSMenuItem*)item;
@end

typedef NSUInteger NSWindowStyleMask;
enum : NSWindowStyleMask {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1,
    NSWindowStyleMaskClosable = 2,
    NSWindowStyleMaskFullSizeContentView = 1 << 15,
};
enum NSBackingStoreType : NSUInteger { NSBackingStoreBuffered = 2 };
typedef NSUInteger NSWindowCollectionBehavior;
enum : NSWindowCollectionBehavior {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorStationary = 1 << 4,
    NSWindowCollectionBehaviorIgnoresCycle = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
enum NSWindowTitleVisibility : NSInteger { NSWindowTitleVisible = 0, NSWindowTitleHidden = 1 };
enum NSWindowButton : NSUInteger {
    NSWindowCloseButton = 0,
    NSWindowMiniaturizeButton = 1,
    NSWindowZoomButton = 2
};
typedef NSInteger NSWindowLevel;
@protocol NSWindowDelegate <NSObject>
@optional
- (void)windowWillClose:(NSNotification*)notification;
@end
@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)content
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)flag;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
@property(getter=isOpaque) BOOL opaque;
@property(nullable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property NSWindowLevel level;
@property BOOL ignoresMouseEvents;
@property NSWindowCollectionBehavior collectionBehavior;
@property(nullable, strong) NSView* contentView;
@property CGFloat alphaValue;
@property BOOL canHide;
@property(copy) NSString* title;
@property NSWindowTitleVisibility titleVisibility;
@property BOOL titlebarAppearsTransparent;
@property(nullable, weak) id<NSWindowDelegate> delegate;
@property(readonly) NSRect frame;
@property(readonly) NSRect contentLayoutRect;
@property(readonly) NSInteger windowNumber;
@property(readonly, getter=isVisible) BOOL visible;
@property(readonly, getter=isKeyWindow) BOOL keyWindow;
@property(readonly) BOOL canBecomeKeyWindow;
@property(readonly) BOOL canBecomeMainWindow;
@property(getter=isAccessibilityElement) BOOL accessibilityElement;
- (void)setFrame:(NSRect)frame display:(BOOL)flag;
- (void)setFrameOrigin:(NSPoint)point;
- (NSRect)convertRectToScreen:(NSRect)rect;
- (void)orderFrontRegardless;
- (void)makeKeyWindow;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)close;
- (nullable NSButton*)standardWindowButton:(NSWindowButton)button;
@end

@interface NSViewController : NSResponder
@property(strong) NSView* view;
@end

enum NSPopoverBehavior : NSInteger {
    NSPopoverBehaviorApplicationDefined = 0,
    NSPopoverBehaviorTransient = 1
};
@protocol NSPopoverDelegate <NSObject>
@optional
- (void)popoverDidClose:(NSNotification*)notification;
@end
@interface NSPopover : NSResponder
@property(nullable, weak) id<NSPopoverDelegate> delegate;
@property NSSize contentSize;
@property NSPopoverBehavior behavior;
@property BOOL animates;
@property(readonly, getter=isShown) BOOL shown;
@property(nullable, strong) NSViewController* contentViewController;
- (void)showRelativeToRect:(NSRect)rect ofView:(NSView*)view preferredEdge:(NSRectEdge)edge;
- (void)close;
@end

enum NSAlertStyle : NSUInteger { NSAlertStyleWarning = 0, NSAlertStyleInformational = 1 };
@interface NSAlert : NSObject
@property NSAlertStyle alertStyle;
@property(copy) NSString* messageText;
@property(copy) NSString* informativeText;
- (NSButton*)addButtonWithTitle:(NSString*)title;
- (NSModalResponse)runModal;
@end

@interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier;
@property(nullable, readonly, copy) NSString* localizedName;
@property(readonly) int processIdentifier;
@property(readonly, getter=isTerminated) BOOL terminated;
@end
PINTLE_EXTERN NSString* const NSWorkspaceApplicationKey;
@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, strong) NSNotificationCenter* notificationCenter;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
- (BOOL)openURL:(NSURL*)url;
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion;
@property(readonly) BOOL accessibilityDisplayShouldIncreaseContrast;
@property(readonly) BOOL accessibilityDisplayShouldReduceTransparency;
@end

typedef NSString* NSAppearanceName;
PINTLE_EXTERN NSAppearanceName const NSAppearanceNameAqua;
PINTLE_EXTERN NSAppearanceName const NSAppearanceNameDarkAqua;
@interface NSAppearance : NSObject
- (nullable NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray<NSAppearanceName>*)names;
@end

enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited,
};
@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(nullable, readonly, strong) NSEvent* currentEvent;
@property(readonly, strong) NSAppearance* effectiveAppearance;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
// -activate is left out: it guarantees nothing for a program without a place in the dock.
- (void)activateIgnoringOtherApps:(BOOL)flag PINTLE_DEPRECATED(10.0, 14.0);
- (void)terminate:(nullable id)sender;
- (void)hide:(nullable id)sender;
- (void)unhide:(nullable id)sender;
- (void)postEvent:(NSEvent*)event atStart:(BOOL)flag;
@property(nullable, readonly, weak) NSWindow* keyWindow;
@property(readonly, getter=isActive) BOOL active;
@end
PINTLE_EXTERN NSApplication* NSApp;

#pragma clang assume_nonnull end
