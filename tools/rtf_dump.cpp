#include "dump.h"
#include "platform/appkit/rich_text/rtf/rtf_reader.h"

int main(int count, char** arguments) {
  const std::string option = count == 3 ? arguments[1] : "";
  if (option != "--text" && option != "--runs") {
    std::cerr << "Usage: rtf_dump --text FILE | --runs FILE\n";
    return 2;
  }
  const auto rtf = tarnix::tools::contentsOf(arguments[2]);
  const auto text = rtf ? tarnix::attributedStringFromRtf(*rtf) : std::nullopt;
  if (!text) {
    std::cerr << "rtf_dump: " << arguments[2] << (rtf ? " is no RTF.\n" : " can't be read.\n");
    return 1;
  }
  return tarnix::tools::printText(option, *text);
}
