#pragma once

#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "platform/appkit/attributed_string.h"
#include "platform/appkit/rich_text/text/plain_text.h"

// What the dumping programs have in common.
namespace tarnix::tools {

inline std::optional<std::string> contentsOf(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline nlohmann::json runsOf(const NSAttributedString& text) {
  auto list = nlohmann::json::array();
  std::size_t begin = 0;
  for (const auto& run : text.runs()) {
    const TextAttributes& look = text.attributesOf(run);
    nlohmann::json color;
    if (look.color) {
      char name[8];
      std::snprintf(name, sizeof name, "#%02x%02x%02x", look.color->red, look.color->green, look.color->blue);
      color = name;
    }
    list.push_back({{"text", text.string().view().substr(begin, run.end - begin)},
                    {"bold", look.font.isBold},
                    {"italic", look.font.isItalic},
                    {"underline", look.underline != LineStyle::none},
                    {"strikethrough", look.strikethrough != LineStyle::none},
                    {"size_pt", look.font.pointSize},
                    {"color_hex", color},
                    {"family", look.font.familyName.view()}});
    begin = run.end;
  }
  return list;
}

// Prints what `option` asks for; the exit code of a program.
inline int printText(const std::string& option, const NSAttributedString& text) {
  if (option == "--text") {
    std::cout << plainTextOf(text).view();
    return 0;
  }
  std::cout << runsOf(text).dump(1) << '\n';
  return 0;
}

}  // namespace tarnix::tools
