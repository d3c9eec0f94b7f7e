#pragma once

#include <mutex>

namespace brivane {

/// A value that is made at its first use and kept. Any thread.
template <typename Value>
class Lazy {
 public:
  template <typename Make>
  const Value& get(const Make& make) const {
    std::call_once(made, [&] { value = make(); });
    return value;
  }

 private:
  mutable std::once_flag made;
  mutable Value value{};
};

}  // namespace brivane
