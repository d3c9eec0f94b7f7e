#pragma once

namespace brivane::remote {

// The resident program's place on the session bus.
inline constexpr auto service = "com.quorrel.brivane";
inline constexpr auto path = "/com/quorrel/brivane";
inline constexpr auto interface = "com.quorrel.brivane.Brightness1";
/// Its errors' names begin so.
inline constexpr auto errors = "com.quorrel.brivane.Error.";

// Its methods.
inline constexpr auto up = "Up";
inline constexpr auto down = "Down";
inline constexpr auto set = "Set";
inline constexpr auto get = "Get";
inline constexpr auto list = "List";
inline constexpr auto showMenu = "ShowMenu";
inline constexpr auto showHotkeyEditor = "ShowHotkeyEditor";

// The keys of a display in the list; `level` may be missing.
inline constexpr auto number = "Number";
inline constexpr auto name = "Name";
inline constexpr auto underPointer = "UnderPointer";
inline constexpr auto level = "Level";
inline constexpr auto minimum = "Minimum";
inline constexpr auto maximum = "Maximum";

}  // namespace brivane::remote
