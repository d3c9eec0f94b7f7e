#pragma once

#include <mutex>
#include <string>

#include "Tests/Mac/Machine/ObjC/Layout.h"

namespace brivane::objc {

/// One lock for classes, weak references and counts; taken again by whoever has it.
std::recursive_mutex& lock();

/// The one pointer for that name.
Selector selector(const char* name);

/// Null without such a class.
Class* classNamed(const std::string& name);

/// Where blocks and constant strings find their methods: their `isa` is no class of ours.
Class* classOf(const Object* object);

/// Classes and constant strings are never counted.
bool isImmortal(const Object* object);
bool isBlock(const Object* object);

/// The class's own or inherited implementation; null without one.
Implementation findImplementation(Class* from, Selector name);

/// Of the class alone; null without one.
Implementation ownImplementation(Class* owner, Selector name);

[[noreturn]] void fail(const std::string& sentence);

}  // namespace brivane::objc
