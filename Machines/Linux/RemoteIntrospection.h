#pragma once

namespace brivane {

/// What the resident program's object on the session bus says of itself, in D-Bus's XML.
extern const char* const remoteIntrospection;

}  // namespace brivane
