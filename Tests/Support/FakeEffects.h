#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BrivaneCore/Gamma/DisplayBrightening.h"
#include "BrivaneCore/Gamma/DisplayDimming.h"

// Software effects without gamma tables, for tests of their callers.

namespace brivane {

/// The calls to all effects, in their order: "<name> apply 30 to 2", "<name>
/// restore 2", "<name> relinquish 2", "<name> restore all", "<name> reapply".
using EffectCalls = std::vector<std::string>;

template <typename Interface>
class FakeEffect : public Interface {
 public:
  FakeEffect(std::string effectName, EffectCalls& effectCalls)
      : name(std::move(effectName)), calls(effectCalls) {}

  bool isSupported(DisplayID) override { return supported; }

  std::int64_t amount(DisplayID display) const override {
    const auto found = amounts.find(display);
    return found == amounts.end() ? 0 : found->second;
  }

  bool apply(std::int64_t amount, DisplayID display) override {
    note("apply " + std::to_string(amount) + " to " + std::to_string(display));
    if (accepts) amounts[display] = amount;
    return accepts;
  }

  void restore(DisplayID display) override {
    note("restore " + std::to_string(display));
    amounts.erase(display);
  }

  void restoreAll() override {
    note("restore all");
    amounts.clear();
  }

  bool reapply() override {
    note("reapply");
    return accepts;
  }

  bool supported = true;
  /// Whether `apply` and `reapply` succeed.
  bool accepts = true;
  std::map<DisplayID, std::int64_t> amounts;
  /// What to add to each note, if anything.
  std::function<std::string()> witness;

 protected:
  void note(const std::string& what) {
    calls.push_back(name + " " + what + (witness ? witness() : ""));
  }

 private:
  std::string name;
  EffectCalls& calls;
};

using FakeDimming = FakeEffect<DisplayDimming>;

class FakeBrightening : public FakeEffect<DisplayBrightening> {
 public:
  using FakeEffect::FakeEffect;

  void relinquish(DisplayID display) override {
    note("relinquish " + std::to_string(display));
    amounts.erase(display);
  }
};

}  // namespace brivane
