#pragma once

#include <memory>

#include "BrivaneCore/Seams/SystemNotifications.h"
#include "Machines/Common/Topic.h"
#include "Machines/Mac/AppKitServices.h"
#include "Machines/Mac/TerminationSources.h"

namespace brivane {

/// Announcements by AppKit and the process's signals, as main-queue tasks. Destroy it before the
/// Runtime, after all observers.
class MacNotifications : public SystemNotifications {
 public:
  /// Both must outlive this.
  MacNotifications(AppKitServices& services, Runtime& machineRuntime)
      : appKit(services), runtime(machineRuntime) {}

  Observation observeScreenParameters(Task handler) override;
  Observation observeDidWake(Task handler) override;
  Observation observeScreensDidWake(Task handler) override;
  Observation observeTermination(Task handler) override;

 private:
  using Source = Observation (AppKitServices::*)(Task handler);

  Observation observe(Source source, Task handler);

  AppKitServices& appKit;
  Runtime& runtime;
  const std::shared_ptr<Topic> termination = std::make_shared<Topic>();
  /// Shared by all observers of the termination.
  std::weak_ptr<TerminationSources> signals;
};

}  // namespace brivane
