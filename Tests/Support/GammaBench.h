#pragma once

#include <memory>
#include <vector>

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Gamma/GammaBaselineStore.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// Fake gamma tables with the parts that every gamma effect needs.
struct GammaBench {
  /// A display whose table holds the same curve on all channels.
  void addTable(DisplayID display, const std::vector<float>& curve) { tables.add(display, curve); }

  /// The red curve in force.
  std::vector<float> curve(DisplayID display) { return tables.tables[display].red; }

  FakeGammaTables tables;
  std::shared_ptr<CoreGraphicsGammaTableIO> io = std::make_shared<CoreGraphicsGammaTableIO>(tables);
  std::shared_ptr<GammaBaselineStore> baselines = std::make_shared<GammaBaselineStore>(io);
};

}  // namespace brivane
