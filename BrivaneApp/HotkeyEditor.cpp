// Restoring the defaults rebuilds the window's content: capturing ends, and both fields show what
// is stored.

#include "BrivaneApp/HotkeyEditor.h"

#include <string>
#include <utility>

#include "BrivaneApp/Strings.h"

namespace brivane {
namespace {

constexpr double contentWidthPoints = 420;
constexpr double contentHeightPoints = 210;
constexpr double instructionsSizePoints = 12;

}  // namespace

HotkeyEditor::HotkeyEditor(ResidentMachine& machine, Frame& programFrame,
                           const StringCatalogue& stringCatalogue, std::function<void()> changed,
                           std::function<void(bool isCapturing)> capturing)
    : onChange(std::move(changed)),
      onCapturing(std::move(capturing)),
      frame(programFrame),
      keyboard(machine.keyboard()),
      catalogue(stringCatalogue),
      bindings(machine.defaults()) {}

HotkeyEditor::~HotkeyEditor() {
  // The fields must outlive the window that shows them.
  window.reset();
}

void HotkeyEditor::show() {
  if (!window) makeWindow();
  frame.application().activateIgnoringOtherApplications();
  window->makeKeyAndOrderFront();
}

void HotkeyEditor::makeWindow() {
  window = frame.makeEditorWindow({.contentWidth = contentWidthPoints,
                                   .contentHeight = contentHeightPoints,
                                   .styleMask = titledStyle | closableStyle,
                                   .backing = bufferedBackingStore,
                                   .isDeferred = false,
                                   .isReleasedWhenClosed = false,
                                   .title = catalogue.text(strings::hotkeyEditorWindowTitle)});
  window->onWillClose([this] { windowWillClose(); });
  window->center();
  buildContent(contentWidthPoints, contentHeightPoints);
}

void HotkeyEditor::windowWillClose() {
  frame.application().setActivationPolicy(ActivationPolicy::accessory);
}

void HotkeyEditor::resetDefaults() {
  bindings.resetBindings();
  onChange();
  if (window) buildContent(window->contentWidth(), window->contentHeight());
}

void HotkeyEditor::buildContent(double width, double height) {
  std::vector<WindowItem> items;
  Fields newFields;
  items.emplace_back(WindowLabel{{20, height - 44, width - 40, 18},
                                 catalogue.text(strings::hotkeyEditorInstructions),
                                 instructionsSizePoints});
  addRow(strings::hotkeyEditorIncreaseBrightness, {20, height - 96, width - 40, 30},
         bindings.brightnessUpBinding(), &HotkeyBindingStore::setBrightnessUpBinding, items,
         newFields);
  addRow(strings::hotkeyEditorDecreaseBrightness, {20, height - 144, width - 40, 30},
         bindings.brightnessDownBinding(), &HotkeyBindingStore::setBrightnessDownBinding, items,
         newFields);
  items.emplace_back(WindowButton{{width - 172, 20, 152, 26},
                                  catalogue.text(strings::hotkeyEditorResetDefaults),
                                  [this] { resetDefaults(); }});
  window->setContent(std::move(items));
  // Until here the window used the old fields.
  fields = std::move(newFields);
}

void HotkeyEditor::addRow(std::string_view labelKey, const Rect& row, const HotkeyBinding& binding,
                          SetBinding setBinding, std::vector<WindowItem>& items,
                          Fields& newFields) {
  const std::string label = catalogue.text(labelKey);
  items.emplace_back(WindowLabel{{row.x, row.y + 4, 170, 20}, label});
  const Rect fieldFrame{row.x + 180, row.y, row.width - 180, row.height};
  auto field = std::make_unique<HotkeyCaptureField>(fieldFrame, catalogue, keyboard);
  field->binding = binding;
  field->onCapture = [this, setBinding](const HotkeyBinding& captured) {
    (bindings.*setBinding)(captured);
    onChange();
  };
  field->onCapturing = onCapturing;
  items.emplace_back(WindowView{fieldFrame, field.get(), label});
  newFields.push_back(std::move(field));
}

}  // namespace brivane
