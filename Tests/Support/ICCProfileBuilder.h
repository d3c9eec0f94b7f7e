#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace brivane {

/// Builds ICC profiles: a header, a tag table and the tags' elements. All sizes in `bytes()` are
/// right; tests spoil what they want spoilt.
class ICCProfileBuilder {
 public:
  using Bytes = std::vector<std::uint8_t>;

  static void put(Bytes& bytes, std::uint32_t value, std::size_t size) {
    for (std::size_t left = size; left > 0; --left) {
      bytes.push_back(static_cast<std::uint8_t>(value >> (8 * (left - 1))));
    }
  }

  static std::uint32_t signature(std::string_view letters) {
    std::uint32_t value = 0;
    for (const char letter : letters) value = value << 8 | static_cast<std::uint8_t>(letter);
    return value;
  }

  ICCProfileBuilder& tag(std::string_view letters, Bytes element) {
    tags.emplace_back(signature(letters), std::move(element));
    return *this;
  }

  /// The element of a table; `entries` channel by channel, each of `entrySize` bytes.
  static Bytes table(std::uint32_t channels, std::uint32_t count, std::uint32_t entrySize,
                     const std::vector<std::uint32_t>& entries) {
    Bytes element = elementStart(0);
    for (const std::uint32_t field : {channels, count, entrySize}) put(element, field, 2);
    for (const std::uint32_t entry : entries) put(element, entry, entrySize);
    return element;
  }

  /// The element of a formula: gamma, minimum and maximum per channel.
  static Bytes formula(const std::vector<double>& numbers) {
    Bytes element = elementStart(1);
    for (const double number : numbers) {
      put(element, static_cast<std::uint32_t>(static_cast<std::int32_t>(number * 65536)), 4);
    }
    return element;
  }

  static Bytes elementStart(std::uint32_t kind) {
    Bytes element;
    for (const std::uint32_t field : {signature("vcgt"), 0U, kind}) put(element, field, 4);
    return element;
  }

  Bytes bytes() const {
    Bytes directory;
    Bytes elements;
    put(directory, static_cast<std::uint32_t>(tags.size()), 4);
    const std::size_t start = headerSize + 4 + 12 * tags.size();
    for (const auto& [name, element] : tags) {
      put(directory, name, 4);
      put(directory, static_cast<std::uint32_t>(start + elements.size()), 4);
      put(directory, static_cast<std::uint32_t>(element.size()), 4);
      elements.insert(elements.end(), element.begin(), element.end());
      elements.resize((elements.size() + 3) / 4 * 4);
    }
    Bytes profile = header(static_cast<std::uint32_t>(start + elements.size()));
    profile.insert(profile.end(), directory.begin(), directory.end());
    profile.insert(profile.end(), elements.begin(), elements.end());
    return profile;
  }

 private:
  static constexpr std::size_t headerSize = 128;

  static Bytes header(std::uint32_t size) {
    Bytes bytes;
    for (const std::uint32_t field : {size, 0U, 0x02400000U, signature("mntr"), signature("RGB "),
                                      signature("XYZ "), 0U, 0U, 0U, signature("acsp")}) {
      put(bytes, field, 4);
    }
    bytes.resize(headerSize);
    return bytes;
  }

  std::vector<std::pair<std::uint32_t, Bytes>> tags;
};

}  // namespace brivane
