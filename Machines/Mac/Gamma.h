#pragma once

#include "BrivaneCore/Seams/GammaTables.h"

namespace brivane {

/// The window server's transfer tables.
class MacGammaTables : public GammaTables {
 public:
  std::uint32_t capacity(DisplayID display) override;
  std::int32_t readTable(DisplayID display, std::span<float> red, std::span<float> green,
                         std::span<float> blue, std::uint32_t& returned) override;
  std::int32_t writeTable(DisplayID display, std::span<const float> red,
                          std::span<const float> green, std::span<const float> blue) override;
  void restoreCalibratedTables() override;
};

}  // namespace brivane
