#pragma once

namespace brivane {

/// Where the program looks for the functions of buses and of the built-in panel.
constexpr auto ioKit = "/System/Library/Frameworks/IOKit.framework/IOKit";
constexpr auto displayServices =
    "/System/Library/PrivateFrameworks/DisplayServices.framework/DisplayServices";

}  // namespace brivane
