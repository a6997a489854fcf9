#include "platform/foundation/coding/json_coding.h"

#include <cmath>
#include <cstddef>
#include <exception>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tarnix {
namespace {

using nlohmann::json;

constexpr std::size_t kMaximumDepth = 512;

bool isPlainName(std::string_view key) {
  constexpr std::string_view kWordCharacters =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-";
  return !key.empty() && key.find_first_not_of(kWordCharacters) == std::string_view::npos;
}

// In ASCII, quoted and escaped.
std::string quoted(std::string_view text) {
  return json(text).dump(-1, ' ', true, json::error_handler_t::replace);
}

// Appends a value's text piece by piece. The first fault ends the writing and leaves the path at its place.
class Writer {
 public:
  bool write(const CodedValue& coded) {
    return std::visit([this](const auto& value) { return writeValue(value); }, coded.value);
  }

  const std::string& text() const { return text_; }
  std::string fault() const {
    std::string path;
    for (const auto& step : path_) appendStep(step, path);
    return path.empty() ? fault_ : path + ": " + fault_;
  }

 private:
  // A key, which belongs to the value that is being written, or an index.
  using Step = std::variant<std::string_view, std::size_t>;

  static void appendStep(const Step& step, std::string& path) {
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      path += "[" + std::to_string(*index) + "]";
      return;
    }
    const auto key = std::get<std::string_view>(step);
    if (!isPlainName(key)) {
      path += "[" + quoted(key) + "]";
    } else {
      path += (path.empty() ? "" : ".") + std::string(key);
    }
  }

  bool fail(const char* fault) {
    fault_ = fault;
    return false;
  }

  // What the library writes by itself. It throws at text that is not UTF-8 and at nothing else.
  template <typename T>
  bool writeLeaf(const T& value) {
    try {
      text_ += json(value).dump();
      return true;
    } catch (const json::exception&) {
      return fail("the text is not UTF-8");
    }
  }

  template <typename T>
  requires std::is_integral_v<T> || std::is_null_pointer_v<T>
  bool writeValue(T value) { return writeLeaf(value); }
  bool writeValue(const String& text) { return writeLeaf(text.view()); }
  bool writeValue(double number) {
    return std::isfinite(number) ? writeLeaf(number) : fail("the number is not finite");
  }

  bool writeValue(const CodedValue::Array& array) {
    if (path_.size() >= kMaximumDepth) return fail("the value is nested too deep");
    text_ += '[';
    for (std::size_t index = 0; index < array.size(); ++index) {
      if (index > 0) text_ += ',';
      path_.emplace_back(index);
      if (!write(array[index])) return false;
      path_.pop_back();
    }
    text_ += ']';
    return true;
  }

  bool writeValue(const CodedValue::Object& object) {
    if (path_.size() >= kMaximumDepth) return fail("the value is nested too deep");
    text_ += '{';
    for (bool isFirst = true; const auto& [key, value] : object) {
      if (!std::exchange(isFirst, false)) text_ += ',';
      path_.emplace_back(key.view());
      if (!writeValue(key)) return false;
      text_ += ':';
      if (!write(value)) return false;
      path_.pop_back();
    }
    text_ += '}';
    return true;
  }

  std::string text_;
  std::string fault_;
  std::vector<Step> path_;
};

// Builds the coded value from the parser's events. The parser itself doesn't recurse, and refusing what is
// nested too deep keeps all later walks of the value within the stack.
class Builder final : public nlohmann::json_sax<json> {
 public:
  CodedValue take() { return std::move(root_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(std::int64_t{value}); }
  bool number_unsigned(number_unsigned_t value) override {
    const auto small = exactly<std::int64_t>(value);
    return small ? add(*small) : add(std::uint64_t{value});
  }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return add(value); }
  bool string(string_t& value) override { return add(String(value)); }
  bool binary(binary_t& /*value*/) override { return false; }

  bool start_object(std::size_t /*count*/) override { return open(CodedValue::Object()); }
  bool key(string_t& value) override {
    key_ = value;
    return true;
  }
  bool end_object() override { return close(); }
  bool start_array(std::size_t /*count*/) override { return open(CodedValue::Array()); }
  bool end_array() override { return close(); }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const json::exception& /*error*/) override {
    return false;
  }

 private:
  CodedValue& place(CodedValue value) {
    if (open_.empty()) return root_ = std::move(value);
    if (auto* array = std::get_if<CodedValue::Array>(&open_.back()->value)) {
      return array->emplace_back(std::move(value));
    }
    auto& object = std::get<CodedValue::Object>(open_.back()->value);
    return object.insert_or_assign(std::move(key_), std::move(value)).first->second;
  }

  template <typename T>
  bool add(T value) {
    place({std::move(value)});
    return true;
  }

  template <typename T>
  bool open(T container) {
    if (open_.size() >= kMaximumDepth) return false;
    open_.push_back(&place({std::move(container)}));
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  CodedValue root_;
  // The arrays and objects around the next value, the outermost first. None of them grows, and so moves,
  // while one inside it is open.
  std::vector<CodedValue*> open_;
  String key_;
};

}  // namespace

Result<PropertyList::Data, EncodingError> JSONEncoder::write(const CodedValue& value) {
  Writer writer;
  if (!writer.write(value)) return EncodingError{writer.fault()};
  return PropertyList::Data(writer.text().begin(), writer.text().end());
}

std::optional<CodedValue> JSONDecoder::read(std::string_view text) {
  // The parser takes a NUL for the end and would ignore what follows. No JSON text has one.
  if (text.find('\0') != std::string_view::npos) return std::nullopt;
  Builder builder;
  try {
    if (!json::sax_parse(text, &builder)) return std::nullopt;
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return builder.take();
}

}  // namespace tarnix
