#pragma once

#include <filesystem>

#include "BrivaneCore/Seams/Resources.h"
#include "Machines/Desk/File/DeskDescription.h"
#include "Machines/Desk/Machine/Faults.h"

namespace brivane {

/// The program's bundles in a real folder, except those that the desk file says are missing.
class DeskResources : public Resources {
 public:
  DeskResources(const DeskDescription& deskDescription, Faults& machineFaults,
                std::filesystem::path bundleFolder)
      : desk(deskDescription), faults(machineFaults), folder(std::move(bundleFolder)) {}

  std::optional<std::string> read(const std::string& bundle, const std::string& path) override;
  std::vector<std::string> preferredLanguages() override;

 private:
  const DeskDescription& desk;
  Faults& faults;
  const std::filesystem::path folder;
};

}  // namespace brivane
