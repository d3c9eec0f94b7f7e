#pragma once

#include "BrivaneCore/KeyRelay/RelayKey.h"

namespace brivane {

/// Some of the keys that brightness keys can be sent to.
const RelayKey f13 = *relayKeyForVirtualKeyCode(105);
const RelayKey f14 = *relayKeyForVirtualKeyCode(107);
const RelayKey f19 = *relayKeyForVirtualKeyCode(80);
const RelayKey f20 = *relayKeyForVirtualKeyCode(90);

}  // namespace brivane
