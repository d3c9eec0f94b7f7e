#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "BrivaneApp/HotkeyCaptureField.h"
#include "BrivaneCore/Input/HotkeyBindingStore.h"
#include "BrivaneCore/Seams/ResidentMachine.h"
#include "BrivaneUI/Frame/Frame.h"
#include "BrivaneUI/StringCatalogue.h"

namespace brivane {

/// A small window that changes the two hotkeys or restores their defaults. A change is stored at
/// once. Main thread.
class HotkeyEditor {
 public:
  /// `changed` is called after each change, `capturing` when a field begins or ends capturing;
  /// neither is empty. The catalogue is the application's. The other arguments must outlive the
  /// editor.
  HotkeyEditor(ResidentMachine& machine, Frame& programFrame,
               const StringCatalogue& stringCatalogue, std::function<void()> changed,
               std::function<void(bool isCapturing)> capturing);
  ~HotkeyEditor();
  HotkeyEditor(const HotkeyEditor&) = delete;
  HotkeyEditor& operator=(const HotkeyEditor&) = delete;

  /// Brings the window, which is made once and kept when closed, to the front.
  void show();

  void resetDefaults();

 private:
  using SetBinding = void (HotkeyBindingStore::*)(const HotkeyBinding&);
  using Fields = std::vector<std::unique_ptr<HotkeyCaptureField>>;

  void makeWindow();
  void windowWillClose();
  void buildContent(double width, double height);
  void addRow(std::string_view labelKey, const Rect& row, const HotkeyBinding& binding,
              SetBinding setBinding, std::vector<WindowItem>& items, Fields& newFields);

  std::unique_ptr<EditorWindow> window;
  const std::function<void()> onChange;
  const std::function<void(bool isCapturing)> onCapturing;

  Frame& frame;
  Keyboard& keyboard;
  const StringCatalogue& catalogue;
  HotkeyBindingStore bindings;
  Fields fields;
};

}  // namespace brivane
