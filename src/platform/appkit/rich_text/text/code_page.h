#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarnix {

// A character encoding. Decoding is stateless: a text is given whole.
class CodePage {
 public:
  // By the number that Windows has for it: 1252, 932, 10000 (Mac Roman), 65001 (UTF-8). Absent for an unknown
  // one.
  static std::optional<CodePage> numbered(int number);
  // By a label of the web or of IANA, in any case: "iso-8859-1" (which is read as windows-1252, as browsers
  // do), "utf-16le". Absent for an unknown one.
  static std::optional<CodePage> labelled(std::string_view label);

  // Adds the text that `bytes` are, in UTF-8; U+FFFD stands for what is none.
  void decode(std::string_view bytes, std::string& to) const;
  // Whether this byte begins a character of two bytes.
  bool isLead(unsigned char byte) const;

 private:
  struct Converter;
  explicit CodePage(std::shared_ptr<Converter> converter) : converter_(std::move(converter)) {}

  std::shared_ptr<Converter> converter_;
};

}  // namespace tarnix
