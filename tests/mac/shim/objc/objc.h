// The Objective-C run-time's basic types for checks on other systems. BOOL is a real bool, as it is on the
// desktop's present processors.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef struct objc_class* Class;
struct objc_object {
    Class isa;
};
typedef struct objc_object* id;
typedef struct objc_selector* SEL;
typedef void (*IMP)(void);
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr
