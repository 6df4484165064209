// Texts between C++ and Foundation. For the Objective-C++ files of this folder.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace pintle {

/// Empty where the bytes are not UTF-8.
inline NSString* nsString(const std::string& text) {
    NSString* const string = [NSString stringWithUTF8String:text.c_str()];
    return string ? string : @"";
}

/// Empty for nil.
inline std::string fromNsString(NSString* text) {
    const char* const bytes = text.UTF8String;
    return bytes ? std::string(bytes) : std::string();
}

}  // namespace pintle
