// The words in which this folder speaks of a declaration; a line that isn't true doesn't compile.
// Scalars, which travel in registers of their size and kind, must be of exactly the type; objects
// are pointers, and need only convert, because kits differ in how narrowly they declare them.
#pragma once

#include <type_traits>

namespace abi {

template <typename Type>
Type* any();

template <typename Type>
Type valueOf();

/// A value that is converted to nothing on the way.
template <typename Type>
struct Exactly {
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator Type() const;
  template <typename Other>
  // NOLINTNEXTLINE(google-explicit-constructor)
  operator Other() const = delete;
};

#ifdef __OBJC__
template <typename Type>
constexpr bool isObject = std::is_convertible_v<Type, id>;
#else
template <typename Type>
constexpr bool isObject = false;
#endif

/// An argument for a parameter of this type.
template <typename Type>
std::conditional_t<isObject<Type>, Type, Exactly<std::decay_t<Type>>> argument();

/// The type itself, of an enumeration that of its numbers: some kits have a name for the values of
/// what others give as a number.
template <typename Type, bool isEnumeration = std::is_enum_v<Type>>
struct Scalar {
  using Plain = Type;
};
template <typename Type>
struct Scalar<Type, true> {
  using Plain = std::underlying_type_t<Type>;
};

template <typename Type, typename Expected>
constexpr bool gives =
    isObject<Expected> ? std::is_convertible_v<Type, Expected>
                       : std::is_same_v<typename Scalar<std::remove_cvref_t<Type>>::Plain,
                                        typename Scalar<Expected>::Plain>;

/// A function's type without the promise that it doesn't throw, which some headers make.
template <typename Pointer>
struct Function;
template <typename Result, typename... Arguments>
struct Function<Result (*)(Arguments...)> {
  using Plain = Result (*)(Arguments...);
};
template <typename Result, typename... Arguments>
struct Function<Result (*)(Arguments...) noexcept> {
  using Plain = Result (*)(Arguments...);
};

/// A pointer to what only the system looks into; it matters that it is one, and of what constness.
template <typename Type, bool pointsToConstant>
constexpr bool isReference = std::is_pointer_v<Type> && sizeof(Type) == 8 &&
                             std::is_const_v<std::remove_pointer_t<Type>> == pointsToConstant;

}  // namespace abi

// NOLINTBEGIN(cppcoreguidelines-macro-usage)
#define IS_FUNCTION(name, ...)                                                      \
  static_assert(std::is_same_v<abi::Function<decltype(&name)>::Plain, __VA_ARGS__>, \
                "another " #name)
#define IS_TYPE(name, ...) static_assert(std::is_same_v<name, __VA_ARGS__>, "another " #name)
#define IS_REFERENCE(name) static_assert(abi::isReference<name, false>, "another " #name)
#define IS_CONSTANT_REFERENCE(name) static_assert(abi::isReference<name, true>, "another " #name)
/// An enumeration, or a name for a number, by the type of its numbers.
#define IS_NUMBER(name, ...) \
  static_assert(std::is_same_v<abi::Scalar<name>::Plain, __VA_ARGS__>, "another " #name)
/// Some kits have constants that are no constant expressions, but can be worked out. A double holds
/// each of these numbers exactly.
#define IS_VALUE(name, value)                                                                    \
  static_assert(                                                                                 \
      __builtin_constant_p(1) ? static_cast<double>(name) == static_cast<double>(value) : false, \
      "another " #name)
/// Compared with the structure of our headers, which has `Our` before its name.
#define IS_STRUCT(name) static_assert(sizeof(name) == sizeof(Our##name), "another " #name)
#define HAS_FIELD(name, field)                                                         \
  static_assert(offsetof(name, field) == offsetof(Our##name, field) &&                 \
                    std::is_same_v<decltype(name::field), decltype(Our##name::field)>, \
                "another " #name "." #field)
/// What an expression in parentheses gives.
#define GIVES(expression, ...) \
  static_assert(abi::gives<decltype(expression), __VA_ARGS__>, "another " #expression)
/// Of a class and one above it the language makes the one above; a conversion goes either way.
#define IS_SUBCLASS(name, superclass)                                                              \
  static_assert(                                                                                   \
      !std::is_same_v<name, superclass> &&                                                         \
          std::is_same_v<decltype(true ? abi::any<name>() : abi::any<superclass>()), superclass*>, \
      "another " #name)
#define CONFORMS(name, protocol) \
  static_assert(std::is_convertible_v<name*, id<protocol>>, "another " #name)
// NOLINTEND(cppcoreguidelines-macro-usage)
