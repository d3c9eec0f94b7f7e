#include "Tools/BrivaneDesk/Steps/StepTable.h"

#include "Tools/BrivaneDesk/Stage/Stage.h"

namespace brivane {
namespace {

std::vector<StepKind> onStages(const std::vector<HardwareStep>& steps) {
  std::vector<StepKind> kinds;
  kinds.reserve(steps.size());
  for (const auto& step : steps) kinds.push_back({step.form, step.take});
  return kinds;
}

}  // namespace

const std::vector<StepKind>& stepTable() {
  static const std::vector<StepKind> table = [] {
    std::vector<StepKind> all;
    for (const auto& part : {programSteps(), onStages(hardwareSteps()), frameSteps(),
                             programExpectations(), hardwareExpectations(), frameExpectations()}) {
      all.insert(all.end(), part.begin(), part.end());
    }
    return all;
  }();
  return table;
}

const std::vector<std::string_view>& stepForms() {
  static const std::vector<std::string_view> forms = [] {
    std::vector<std::string_view> all;
    for (const auto& kind : stepTable()) all.push_back(kind.form);
    return all;
  }();
  return forms;
}

}  // namespace brivane
