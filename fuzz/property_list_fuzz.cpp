#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "backends/linux/files/property_list_reader.h"
#include "backends/linux/files/property_list_writer.h"

namespace {

using namespace tarnix::linux_desktop;

// Fails however the program is built.
void require(bool condition) {
  if (!condition) std::abort();
}

// Whatever was read can be written, and reads back as the same. What is "not a number" equals nothing, and
// shows in the text only.
void requireItSurvives(const tarnix::PropertyList& value) {
  const std::optional<std::string> xml = xmlPropertyList(value);
  require(xml.has_value());
  const PropertyListReading again = readXMLPropertyList(*xml);
  if (again.fault == PropertyListFault::tooLarge) return;  // The document was shorter.
  require(again.value.has_value());
  require(again.value == value || xml->find("<real>nan</real>") != std::string::npos);
  require(xmlPropertyList(*again.value) == xml);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const PropertyListReading reading = readXMLPropertyList({reinterpret_cast<const char*>(data), size});
  require(reading.value.has_value() == (reading.fault == PropertyListFault::none));
  if (reading.value) requireItSurvives(*reading.value);
  return 0;
}
