#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Tests/Support/PrivateBus.h"

namespace brivane {

/// A desktop's notification service on the session bus, as long as this object lives. It numbers
/// its notifications from 1.
class FakeNotificationHost {
 public:
  struct Notification {
    std::string application;
    std::string icon;
    std::string title;
    std::string text;
    /// Texts by key.
    std::map<std::string, std::string> actions;
    std::string desktopEntry;
    int urgency = -1;
    int milliseconds = 0;
  };

  explicit FakeNotificationHost(const std::string& sessionBusAddress,
                                std::vector<std::string> hostCapabilities = {"actions", "body",
                                                                             "body-markup"});

  std::vector<Notification> notifications();
  /// The user presses a button: the action is announced, with a token before it and the closing
  /// after it.
  void press(std::uint32_t number, const char* action);
  /// The user dismisses the notification.
  void close(std::uint32_t number);

  /// For the bus's callbacks.
  const std::vector<std::string> capabilities;
  /// How long the host takes for the capabilities. Set it before the program asks.
  std::chrono::milliseconds answersAfter{0};
  std::vector<Notification> posted;

 private:
  BusPeer peer;
};

}  // namespace brivane
