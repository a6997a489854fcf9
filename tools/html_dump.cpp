#include "dump.h"
#include "platform/appkit/rich_text/conversions.h"
#include "platform/appkit/rich_text/html/html_reader.h"

int main(int count, char** arguments) {
  const std::string option = count == 3 ? arguments[1] : "";
  if (option != "--text" && option != "--runs" && option != "--rtf") {
    std::cerr << "Usage: html_dump --text FILE | --runs FILE | --rtf FILE\n";
    return 2;
  }
  const auto html = tarnix::tools::contentsOf(arguments[2]);
  if (!html) {
    std::cerr << "html_dump: " << arguments[2] << " can't be read.\n";
    return 1;
  }
  if (option != "--rtf") return tarnix::tools::printText(option, tarnix::attributedStringFromHtml(*html));
  std::cout << tarnix::rtfFromHtml(*html).value_or("").view();
  return 0;
}
