#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Tools/BrivaneDesk/Language/Scenario.h"
#include "Tools/BrivaneDesk/Language/Tokens.h"

namespace brivane {

/// One word of a form, matched against a scenario's word. A form is words separated by blanks:
/// capitals are a slot ("DISPLAY"), bars separate choices ("light|dark"), any other word is
/// literal.
class Slot {
 public:
  explicit Slot(std::string_view formWord) : word(formWord) {}

  bool isLiteral() const;
  /// Whether the slot takes all remaining words.
  bool takesRest() const { return word == "ARGUMENTS"; }

  bool accepts(const Token& token) const;
  /// A matching word's value; nothing for a literal.
  std::optional<Argument> argument(const Token& token) const;

  bool isDisplay() const { return word == "DISPLAY"; }

  /// What is expected here, for error messages: one description such as `a display's number`, or
  /// the choices.
  std::vector<std::string> expectations() const;
  /// The possible words, if they can be listed.
  std::vector<std::string_view> choices() const;

 private:
  std::string_view word;
};

}  // namespace brivane
