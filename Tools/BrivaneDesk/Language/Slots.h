#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Tools/BrivaneDesk/Language/Scenario.h"
#include "Tools/BrivaneDesk/Language/Tokens.h"

namespace brivane {

/// What one word of a form asks of a scenario's word. A form is words separated by blanks: one in
/// capitals is a slot ("DISPLAY"), one with bars between is a choice ("light|dark"), any other
/// stands for itself.
class Slot {
 public:
  explicit Slot(std::string_view formWord) : word(formWord) {}

  bool isLiteral() const;
  /// Takes all words that are left.
  bool takesRest() const { return word == "ARGUMENTS"; }

  /// Whether the word fits.
  bool accepts(const Token& token) const;
  /// The argument that a fitting word gives; nothing for a word that stands for itself.
  std::optional<Argument> argument(const Token& token) const;

  bool isDisplay() const { return word == "DISPLAY"; }

  /// What a person should have written here: one thing such as `a display's number`, or the words
  /// to choose from.
  std::vector<std::string> expectations() const;
  /// The words that could stand here, when they can be listed.
  std::vector<std::string_view> choices() const;

 private:
  std::string_view word;
};

}  // namespace brivane
