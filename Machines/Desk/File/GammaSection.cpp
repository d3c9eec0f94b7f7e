#include "Machines/Desk/File/GammaSection.h"

namespace brivane {
namespace {

constexpr std::uint32_t largestCapacity = 16384;
constexpr double largestSample = 16;

GammaDescription::Exponents readExponents(const JsonItem& item) {
  GammaDescription::Exponents exponents = {1, 1, 1};
  std::size_t channel = 0;
  for (const auto& element : item.elements(3, 3)) {
    element.to(exponents.at(channel++), smallestGammaExponent, largestGammaExponent);
  }
  return exponents;
}

GammaCurve readCurve(const JsonItem& item) {
  GammaCurve curve;
  for (const auto& element : item.elements(2, largestCapacity)) {
    double sample = 0;
    element.to(sample, 0, largestSample);
    curve.push_back(static_cast<float>(sample));
  }
  return curve;
}

GammaDescription::Samples readSamples(JsonSection& section) {
  GammaDescription::Samples samples;
  std::size_t channel = 0;
  for (const auto* const key : {"red", "green", "blue"}) {
    const auto item = section.find(key);
    if (!item) {
      section.complain(std::string("expected \"exponents\", or \"red\", \"green\" and \"blue\""));
      break;
    }
    auto& curve = samples.at(channel++) = readCurve(*item);
    if (curve.size() != samples[0].size()) {
      item->complain("expected as many samples as in \"red\", " +
                     std::to_string(samples[0].size()) + ", found " + std::to_string(curve.size()));
    }
  }
  return samples;
}

void readCalibrated(const JsonItem& item, GammaDescription& gamma) {
  if (!item.isObject()) {
    GammaDescription::Linear linear;
    std::vector<std::pair<std::string_view, GammaDescription::Linear>> words = {{"linear", linear}};
    item.to(linear, words);
    return;
  }
  auto section = item.section();
  if (const auto exponents = section.find("exponents")) {
    gamma.calibrated = readExponents(*exponents);
  } else {
    gamma.calibrated = readSamples(section);
  }
  section.finish();
}

}  // namespace

void readGamma(const JsonItem& item, GammaDescription& gamma) {
  auto section = item.section();
  section.read("capacity", gamma.capacity, 2, largestCapacity);
  if (const auto calibrated = section.find("calibrated")) readCalibrated(*calibrated, gamma);
  section.finish();
  gamma.fingerprint = item.fingerprint();
}

}  // namespace brivane
