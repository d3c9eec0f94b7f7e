#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "Machines/Mac/Frame/Application.h"
#include "Machines/Mac/Frame/Menu.h"

namespace brivane {

/// The program's place in the menu bar. Main thread.
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

  /// The status bar keeps no item that nobody else does. Nil once it is left to the process.
  NSStatusItem* item;
  std::unique_ptr<MacMenu> ownMenu = std::make_unique<MacMenu>();
  const Observation applicationEnds;
};

}  // namespace brivane
