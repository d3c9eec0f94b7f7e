#pragma once

// The parts of the Objective-C run time's interface that the tests need where there is no such run
// time.

#include <limits.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

typedef bool BOOL;
#define OBJC_BOOL_IS_BOOL 1
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr

typedef void (*IMP)(void);
typedef long NSInteger;
typedef unsigned long NSUInteger;

extern "C" {
SEL sel_registerName(const char* name);
const char* sel_getName(SEL name);
Class object_getClass(id object);
const char* class_getName(Class type);
Class class_getSuperclass(Class type);
Class objc_getClass(const char* name);
BOOL class_respondsToSelector(Class type, SEL name);
}
