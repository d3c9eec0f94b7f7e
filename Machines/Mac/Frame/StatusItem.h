#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>

#include "Machines/Mac/Frame/Application.h"
#include "Machines/Mac/Frame/Menu.h"

namespace brivane {

/// The program's item in the menu bar. Main thread.
class MacStatusItem : public StatusItem {
 public:
  explicit MacStatusItem(MacApplication& application);
  ~MacStatusItem() override;
  MacStatusItem(const MacStatusItem&) = delete;
  MacStatusItem& operator=(const MacStatusItem&) = delete;

  void configureButton(const StatusButton& button) override;
  MenuView& menu() override { return *ownMenu; }

 private:
  void leaveToTheProcess();

  /// Retained here; the status bar doesn't. Nil after `leaveToTheProcess`.
  NSStatusItem* item;
  /// Nothing before the first.
  std::optional<StatusButton> shown;
  std::unique_ptr<MacMenu> ownMenu = std::make_unique<MacMenu>();
  const Observation applicationEnds;
};

}  // namespace brivane
