#pragma once

namespace brivane {

enum class Appearance { light, dark };

}  // namespace brivane
