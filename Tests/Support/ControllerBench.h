#pragma once

#include <memory>
#include <string>
#include <utility>

#include "BrivaneCore/Gamma/CoreGraphicsGammaTableIO.h"
#include "BrivaneCore/Policy/BrightnessController.h"
#include "Tests/Support/FakeEffects.h"
#include "Tests/Support/FakeMachine.h"

namespace brivane {

/// A brightness controller on a fake machine, put together as the program does it.
struct ControllerBench {
  explicit ControllerBench(BrightnessEffects effects = {})
      : controller(machine, apple, registry, store, baselines, std::move(effects)) {}

  /// A DDC/CI monitor at `percent` of 100 whose level has been read, with a gamma table of 256
  /// samples; the pointer is on it.
  FakeBus::Channel& addAnsweringMonitor(DisplayID display, std::uint16_t percent) {
    auto& channel = addSilentMonitor(display);
    channel.answers = true;
    channel.current = percent;
    controller.brightness(display);
    return channel;
  }

  /// The same without an answer so far.
  FakeBus::Channel& addSilentMonitor(DisplayID display) {
    const auto number = std::to_string(display);
    auto& channel =
        machine.addMonitor(display, "Monitor " + number, "disp" + number, 1, display, 1);
    channel.answers = false;
    machine.gamma.add(display, 256);
    machine.pointAt(display);
    return channel;
  }

  /// A monitor that was invalidated at `saved` and answers with another percent.
  FakeBus::Channel& addLateMonitor(DisplayID display, Percent saved, std::uint16_t percent) {
    auto& channel = addSilentMonitor(display);
    store.save(saved, display);
    controller.invalidate();
    channel.answers = true;
    channel.current = percent;
    controller.brightness(display);
    return channel;
  }

  /// A display that the display services drive, at `level` of 1.
  void addAppleDisplay(const FakeDisplay& display, float level) {
    machine.displayServices.install(machine.loader);
    machine.displaySystem.add(display, "Apple " + std::to_string(display.id));
    machine.displayServices.levels[display.id] = level;
    machine.displayServices.canChange[display.id] = true;
    machine.gamma.add(display.id, 256);
    machine.pointAt(display.id);
  }

  void set(const std::string& key, bool value) { machine.settings.set(key, {value}); }

  FakeMachine machine;
  std::shared_ptr<AppleDisplayBackend> apple =
      std::make_shared<AppleDisplayBackend>(machine.loader, machine.displaySystem);
  std::shared_ptr<DisplayRegistry> registry = std::make_shared<DisplayRegistry>(
      machine.displaySystem, machine.registry, machine.loader, machine.time);
  BrightnessStore store{machine.settings, machine.displaySystem};
  std::shared_ptr<GammaBaselineStore> baselines = std::make_shared<GammaBaselineStore>(
      std::make_shared<CoreGraphicsGammaTableIO>(machine.gamma));
  BrightnessController controller;
};

/// The same over effects that only remember; displays without headroom use `gammaBrightener`.
struct FakeEffectsBench {
  EffectCalls calls;
  std::shared_ptr<FakeDimming> dimmer = std::make_shared<FakeDimming>("dimmer", calls);
  std::shared_ptr<FakeBrightening> gammaBrightener =
      std::make_shared<FakeBrightening>("gamma", calls);
  std::shared_ptr<FakeBrightening> extendedBrightener =
      std::make_shared<FakeBrightening>("extended", calls);
  ControllerBench bench{BrightnessEffects{dimmer, gammaBrightener, extendedBrightener, nullptr}};
  BrightnessController& controller = bench.controller;
};

}  // namespace brivane
