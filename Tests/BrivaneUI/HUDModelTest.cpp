#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "BrivaneUI/HUDModel.h"

namespace brivane {
namespace {

using Animations = HUDModel::Animations;
using testing::ElementsAre;

TEST(HUDModel, AFreshModelShowsLevelOneHundred) {
  EXPECT_EQ(HUDModel().state(), HUDModel::State(HUDModel::Level{100}));
}

TEST(HUDModel, SettingTheSameStateTwiceNotifiesObserversTwice) {
  HUDModel model;
  int count = 0;
  const Observation observation = model.observe([&](Animations) { ++count; });
  EXPECT_EQ(count, 0);
  model.setState(HUDModel::Level{40});
  model.setState(HUDModel::Level{40});
  EXPECT_EQ(count, 2);
}

TEST(HUDModel, ObserversAreNotifiedAfterTheAssignmentAndWhetherTheyMayAnimate) {
  HUDModel model;
  std::vector<Animations> notified;
  const Observation observation = model.observe([&](Animations animations) {
    EXPECT_EQ(model.state(), HUDModel::State(HUDModel::Level{40}));
    notified.push_back(animations);
  });
  model.setState(HUDModel::Level{40});
  model.setState(HUDModel::Level{40}, Animations::disabled);
  EXPECT_THAT(notified, ElementsAre(Animations::enabled, Animations::disabled));
}

TEST(HUDModel, ADroppedObserverIsNotNotifiedAndOthersStillAre) {
  HUDModel model;
  int first = 0;
  int second = 0;
  Observation dropped = model.observe([&](Animations) { ++first; });
  const Observation kept = model.observe([&](Animations) { ++second; });
  model.setState(HUDModel::Level{1});
  dropped.reset();
  model.setState(HUDModel::Level{2});
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

TEST(HUDModel, AnObserverDroppedByAnotherDuringANotificationIsNotNotified) {
  HUDModel model;
  int count = 0;
  Observation victim;
  const Observation first = model.observe([&](Animations) { victim.reset(); });
  victim = model.observe([&](Animations) { ++count; });
  model.setState(HUDModel::Level{1});
  EXPECT_EQ(count, 0);
}

TEST(HUDModel, AnObserverAddedDuringANotificationIsNotifiedOfTheNextState) {
  HUDModel model;
  int count = 0;
  Observation late;
  const Observation first = model.observe([&](Animations) {
    if (!late) late = model.observe([&](Animations) { ++count; });
  });
  model.setState(HUDModel::Level{1});
  EXPECT_EQ(count, 0);
  model.setState(HUDModel::Level{2});
  EXPECT_EQ(count, 1);
}

TEST(HUDModel, StatesAreEqualWhenTheirKindAndValuesAre) {
  using State = HUDModel::State;
  const State counting = HUDModel::Connecting{"LG", 3};
  EXPECT_EQ(counting, State(HUDModel::Connecting{"LG", 3}));
  EXPECT_NE(counting, State(HUDModel::Connecting{"LG", 4}));
  EXPECT_NE(counting, State(HUDModel::Connecting{"Dell", 3}));
  EXPECT_NE(counting, State(HUDModel::Connecting{"LG", std::nullopt}));
  EXPECT_EQ(State(HUDModel::Connecting{"LG", std::nullopt}),
            State(HUDModel::Connecting{"LG", std::nullopt}));
  EXPECT_NE(State(HUDModel::Connecting{"LG", 0}), State(HUDModel::Connecting{"LG", std::nullopt}));
  EXPECT_EQ(State(HUDModel::Level{3}), State(HUDModel::Level{3}));
  EXPECT_NE(State(HUDModel::Level{3}), State(HUDModel::Level{-3}));
  EXPECT_NE(State(HUDModel::Level{3}), counting);
}

}  // namespace
}  // namespace brivane
