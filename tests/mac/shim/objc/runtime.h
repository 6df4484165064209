// The run-time's functions that the backend calls, for checks on other systems.
#pragma once

#include <objc/objc.h>

typedef struct objc_method* Method;
extern "C" Method class_getInstanceMethod(Class cls, SEL name);
extern "C" IMP class_getMethodImplementation(Class cls, SEL name);
extern "C" void method_exchangeImplementations(Method first, Method second);
