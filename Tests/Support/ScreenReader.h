#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Support/DesktopProcess.h"
#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// A desktop's accessibility bus, the real one, and a screen reader on it. Make it before the
/// program starts.
class ScreenReader {
 public:
  /// `environment`: that of the desktop's programs.
  explicit ScreenReader(const std::map<std::string, std::string>& environment);

  /// What a program shows to assistive technology.
  struct Item {
    std::string program;
    std::string path;
  };
  /// In a program's windows, or in a menu that was opened. Roles are AT-SPI's names.
  std::optional<Item> find(const std::string& role, const std::string& name);

  std::string name(const Item& item) { return text(item, "Name"); }
  std::string description(const Item& item) { return text(item, "Description"); }
  double value(const Item& item, const char* which = "CurrentValue");
  void setValue(const Item& item, double value);
  void press(const Item& item);

  /// What it has said: the names of the notifications that showed, as they were then.
  std::vector<std::string> heard();

  /// For the bus's callback, which has the connection.
  void noteShown(sd_bus* connection, const Item& item);

 private:
  std::string enable();
  void listen();
  std::string text(const Item& item, const char* property);
  std::vector<Item> children(const Item& item);
  std::optional<Item> findIn(const Item& item, const std::string& role, const std::string& name);

  BusPeer session;
  const DesktopProcess launcher;
  std::vector<Item> menus;
  std::vector<std::string> said;
  /// Its thread calls back.
  BusPeer bus;
};

}  // namespace brivane
