#pragma once

#include <map>
#include <string>

#include "Tests/Mac/Machine/ObjC/Layout.h"

namespace brivane::objc {

/// How many objects of each class live now; classes without any are left out.
std::map<std::string, long> liveObjects();
long liveObjects(const std::string& className);

/// An object of the class with all its variables zero or constructed, retained once.
Object* allocate(Class* type);
/// The end of `dealloc`: destroys the variables and frees the object.
void deallocate(Object* object);

Object* retain(Object* object);
void release(Object* object);
Object* autorelease(Object* object);

}  // namespace brivane::objc
