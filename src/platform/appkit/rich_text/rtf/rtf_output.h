#pragma once

#include <string>
#include <string_view>

namespace tarnix {

// Rich Text Format as it is written: groups, control words and texts, in ASCII only.
class RtfOutput {
 public:
  void open() { put('{'); }
  void close() { put('}'); }
  // "\name", and "\nameN".
  void word(std::string_view name);
  void word(std::string_view name, int value);
  // "\*\name": a destination that readers that don't know it leave out.
  void hiddenDestination(std::string_view name);
  // UTF-8 text. Tabs, breaks of lines and of pages become their words.
  void text(std::string_view utf8);
  // A byte as \'xx.
  void byte(int value);
  // What is RTF already. It ends with a word, or with what text may stand behind.
  void raw(std::string_view rtf);
  // Which no reader sees, after a word or a group only.
  void lineBreak() { put('\n'); }

  const std::string& written() const { return written_; }

 private:
  void put(char c);
  void character(char32_t c);
  void unit(unsigned value);

  std::string written_;
  bool endsWithWord_ = false;  // A blank has to stand before text.
};

}  // namespace tarnix
