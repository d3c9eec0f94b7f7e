#pragma once

#include <optional>

#include "BrivaneCore/Levels/BrightnessVocabulary.h"
#include "BrivaneCore/Seams/DisplaySystem.h"
#include "BrivaneCore/Seams/SymbolLoader.h"
#include "BrivaneCore/Support/Lazy.h"

namespace brivane {

/// The hardware backend of displays that the operating system's display services can drive: Apple's
/// own, and the built-in panel. One per machine; its entry points are looked up once, on first use.
/// Main and DDC queue.
class AppleDisplayBackend {
 public:
  AppleDisplayBackend(SymbolLoader& loader, DisplaySystem& displaySystem);

  /// Whether levels can be both read and set on this machine.
  bool isAvailable() const;

  /// The display's level, 0 to 100; nothing when it can't be read.
  std::optional<Percent> read(DisplayID display) const;

  /// Sets the level, limited to 0 to 100; whether the display services took it.
  bool write(Percent percent, DisplayID display) const;

  /// Whether this backend is the one to drive the display.
  bool canControl(DisplayID display) const;

 private:
  struct EntryPoints {
    GetBrightnessFunction get;
    SetBrightnessFunction set;
    CanChangeBrightnessFunction canChange;
  };

  const EntryPoints& entryPoints() const;

  SymbolLoader& symbols;
  DisplaySystem& displays;
  const Lazy<EntryPoints> found;
};

}  // namespace brivane
