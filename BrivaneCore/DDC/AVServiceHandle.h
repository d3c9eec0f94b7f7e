#pragma once

#include <memory>
#include <string>

#include "BrivaneCore/DDC/DDCTransport.h"
#include "BrivaneCore/DDC/IOAVBridge.h"
#include "BrivaneCore/Seams/Runtime.h"
#include "BrivaneCore/Seams/SymbolLoader.h"

namespace brivane {

/// The DDC/CI channel of one connected panel, over its audio/video service: builds the request
/// packets, keeps the waits that monitors need, parses the replies, and tries a read three times.
/// It has no lock: gets come from the DDC queue, sets from the main thread, and they may overlap.
class AVServiceHandle : public DDCTransport {
 public:
  AVServiceHandle(std::shared_ptr<AVService> avService, std::string portLocation,
                  std::shared_ptr<const IOAVBridge> avBridge, Runtime& machineRuntime);

  std::optional<VCPReading> getVCP(std::uint8_t code) override;

  /// Sends an accepted set twice; true when the first was accepted.
  bool setVCP(std::uint8_t code, std::uint16_t value) override;

  const std::shared_ptr<AVService> service;
  /// The port that the service was found at.
  const std::string location;

 private:
  std::optional<VCPReading> attemptGetVCP(std::uint8_t code);

  const std::shared_ptr<const IOAVBridge> bridge;
  Runtime& runtime;
};

}  // namespace brivane
