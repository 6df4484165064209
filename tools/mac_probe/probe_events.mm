#include "tools/mac_probe/probe_events.h"

#import <AppKit/AppKit.h>

#include <string>

#include "platform/mac/ns_text.h"

namespace pintle {

bool pressKey(char letter, unsigned short code) {
    NSWindow* const window = NSApp.keyWindow;
    if (!window) return false;
    NSString* const characters = nsString(std::string(1, letter));
    for (const NSEventType type : {NSEventTypeKeyDown, NSEventTypeKeyUp}) {
        NSEvent* const event = [NSEvent keyEventWithType:type
                                                location:NSMakePoint(0, 0)
                                           modifierFlags:0
                                               timestamp:0
                                            windowNumber:window.windowNumber
                                                 context:nil
                                              characters:characters
                             charactersIgnoringModifiers:characters
                                               isARepeat:NO
                                                 keyCode:code];
        if (event) [NSApp postEvent:event atStart:NO];
    }
    return true;
}

bool isActiveProgram() { return NSApp.active; }
void hideThisProgram() { [NSApp hide:nil]; }
void showThisProgram() { [NSApp unhide:nil]; }

}  // namespace pintle
