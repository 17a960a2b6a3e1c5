#pragma once

#include <chrono>
#include <concepts>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/propertylist/Value.h"

/// The messages between the application and its helpers, as property lists, and the means to read and write them.
///
/// A message is a struct that lists its fields once, in a function template that is used for reading and writing:
///
///     struct Load {
///       std::filesystem::path path;
///       template <typename Self, typename Fields>
///       static void fields(Self& self, Fields& fields) {
///         fields("path", self.path);
///       }
///     };
namespace mirvel::messages {

class FieldReader;
class FieldWriter;

template <typename T>
concept HasFields = requires(T& message, FieldReader& reader) {
  T::fields(message, reader);
};

/// The valid numbers of a field.
struct NumberRange {
  std::int64_t smallest;
  std::int64_t largest;  ///< inclusive
  const char* refusal;   ///< completes "the key ... " in the error for any other number or type
};

/// Any integer.
inline constexpr NumberRange anyNumber{INT64_MIN, INT64_MAX, "isn't a number"};
/// Any integer that can count something.
inline constexpr NumberRange anyCount{0, INT64_MAX, "isn't a count"};

/// Writes the fields of a message to a dictionary, each under its key. Writing can't fail; it is up to the sender that
/// values are in their ranges. Types in the dictionary:
///
/// - paths are strings of their bytes;
/// - times are integers, the seconds since 1970;
/// - nested messages are dictionaries, and vectors are arrays;
/// - an optional field without a value has no key.
class FieldWriter {
 public:
  void operator()(std::string_view key, bool value) { m_dictionary.set(key, value); }
  void operator()(std::string_view key, double value) { m_dictionary.set(key, value); }
  void operator()(std::string_view key, const std::string& text) { m_dictionary.set(key, text); }
  void operator()(std::string_view key, const std::filesystem::path& path) { m_dictionary.set(key, path.native()); }
  void operator()(std::string_view key, const propertylist::Data& data) { m_dictionary.set(key, data); }
  void operator()(std::string_view key, std::int64_t number, const NumberRange&) { m_dictionary.set(key, number); }
  void operator()(std::string_view key, std::chrono::sys_seconds time);
  void operator()(std::string_view key, const std::vector<std::string>& texts);
  void operator()(std::string_view key, const std::map<std::string, std::string>& texts);
  template <typename T, typename... Rest>
  void operator()(std::string_view key, const std::optional<T>& value, const Rest&... rest) {
    if (value) (*this)(key, *value, rest...);
  }
  template <HasFields T>
  void operator()(std::string_view key, const T& part) {
    m_dictionary.set(key, write(part));
  }
  template <HasFields T>
  void operator()(std::string_view key, const std::vector<T>& parts) {
    propertylist::Array array;
    for (const T& part : parts) array.emplace_back(write(part));
    m_dictionary.set(key, std::move(array));
  }
  void requiredText(std::string_view key, const std::string& text) { (*this)(key, text); }
  /// An enumerator as its number; the enumeration begins with 0, ends with `last`, and has no gaps.
  template <typename Enum>
  void enumeration(std::string_view key, Enum value, Enum) {
    m_dictionary.set(key, static_cast<std::int64_t>(value));
  }
  void decimalSeconds(std::string_view key, std::chrono::seconds time) { (*this)(key, std::to_string(time.count())); }

  /// The dictionary with all fields of the message.
  template <HasFields T>
  static propertylist::Dictionary write(const T& message) {
    FieldWriter writer;
    T::fields(message, writer);
    return std::move(writer.m_dictionary);
  }

 private:
  propertylist::Dictionary m_dictionary;
};

/// Reads the fields of a message from a dictionary. Stops at the first error. Ignores unknown keys, so that a later
/// version can send more.
///
/// Errors:
/// - `MissingKey`: a key is absent. Optional fields stay empty and booleans keep their initial value instead.
/// - `WrongType`: a value has another type. Integers and reals aren't interchangeable.
/// - `BadArgument`: a number is out of its range, or a path is relative or contains a null character.
/// - `LimitExceeded`: a path has more than `longestPath` bytes.
class FieldReader {
 public:
  static constexpr std::size_t longestPath = 4096;  ///< bytes, as PATH_MAX of Linux

  /// The dictionary must outlive the reader.
  explicit FieldReader(const propertylist::Dictionary& from) : m_from(from) {}

  void operator()(std::string_view key, bool& value);
  void operator()(std::string_view key, double& value);
  void operator()(std::string_view key, std::string& text);
  void operator()(std::string_view key, std::filesystem::path& path);
  void operator()(std::string_view key, propertylist::Data& data);
  template <std::signed_integral T>
  void operator()(std::string_view key, T& number, const NumberRange& range) {
    number = static_cast<T>(readNumber(key, range).value_or(number));
  }
  void operator()(std::string_view key, std::chrono::sys_seconds& time);
  void operator()(std::string_view key, std::vector<std::string>& texts);
  void operator()(std::string_view key, std::map<std::string, std::string>& texts);
  template <typename T, typename... Rest>
  void operator()(std::string_view key, std::optional<T>& value, const Rest&... rest) {
    if (m_failure || !m_from.find(key)) return;
    T read{};
    (*this)(key, read, rest...);
    if (!m_failure) value = std::move(read);
  }
  template <HasFields T>
  void operator()(std::string_view key, T& part) {
    if (const auto* const dictionary = find<propertylist::Dictionary>(key, "isn't a dictionary"))
      readPart(*dictionary, part);
  }
  template <HasFields T>
  void operator()(std::string_view key, std::vector<T>& parts) {
    const auto* const array = find<propertylist::Array>(key, "isn't an array");
    if (!array) return;
    for (const propertylist::Value& element : *array) {
      const auto* const dictionary = element.as<propertylist::Dictionary>();
      if (!dictionary) return fail(Error::Code::WrongType, key, "isn't an array of dictionaries");
      readPart(*dictionary, parts.emplace_back());
    }
  }
  /// A string that isn't empty and has at most `longestPath` bytes.
  void requiredText(std::string_view key, std::string& text);
  /// Another number than that of an enumerator fails with `BadArgument`.
  template <typename Enum>
  void enumeration(std::string_view key, Enum& value, Enum last) {
    const auto number = readNumber(key, {0, static_cast<std::int64_t>(last), "is unknown"});
    if (number) value = static_cast<Enum>(*number);
  }
  /// A number of seconds as decimal text, at least 1 and at most a century.
  void decimalSeconds(std::string_view key, std::chrono::seconds& time);

  /// Reads a message. `initial` provides the values of members that aren't fields or whose keys are absent.
  template <HasFields T>
  static Result<T> read(const propertylist::Dictionary& from, T initial = {}) {
    FieldReader reader(from);
    T::fields(initial, reader);
    if (reader.m_failure) return *std::move(reader.m_failure);
    return initial;
  }

 private:
  /// Null, with `m_failure` set, if the key is absent or has another type.
  template <typename T>
  const T* find(std::string_view key, std::string_view refusal) {
    if (m_failure) return nullptr;
    const propertylist::Value* const value = m_from.find(key);
    const T* const content = value ? value->as<T>() : nullptr;
    if (!value) fail(Error::Code::MissingKey, key, "is missing");
    if (value && !content) fail(Error::Code::WrongType, key, refusal);
    return content;
  }
  template <HasFields T>
  void readPart(const propertylist::Dictionary& from, T& part) {
    auto read = FieldReader::read<T>(from);
    if (read)
      part = *std::move(read);
    else if (!m_failure)
      m_failure = read.error();
  }
  std::optional<std::int64_t> readNumber(std::string_view key, const NumberRange& range);
  void fail(Error::Code code, std::string_view key, std::string_view why);

  const propertylist::Dictionary& m_from;
  std::optional<Error> m_failure;
};

}  // namespace mirvel::messages
