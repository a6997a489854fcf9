#include "platform/swiftui/text_form.h"

#include <sstream>

namespace tarnix::text_form {

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '\n') {
      result += "\\n";
      continue;
    }
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string number(double value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

}  // namespace tarnix::text_form
