#include <gtest/gtest.h>

#include "backends/linux/any_property_list.h"
#include "backends/linux/defaults_file.h"
#include "backends/linux/property_list_reader.h"
#include "backends/linux/property_list_writer.h"
#include "backends/linux/temporary_directory.h"

namespace tarnix::linux_desktop {
namespace {

// Each start of the program sets a few values, some anew, and finds all that the starts before it have set.
TEST(AnySettings, comeBackAtTheNextStartAsTheyWereSet) {
  constexpr unsigned kStarts = 30;
  constexpr int kValues = 10;
  const TemporaryDirectory directory;
  PropertyList::Dictionary expected;
  for (unsigned start = 0; start < kStarts; ++start) {
    AnyPropertyList any(start);
    FileDefaultsStorage storage(directory / "settings.plist", [&](const StorageFailure& failure) {
      ADD_FAILURE() << "start " << start << ": kind " << static_cast<int>(failure.kind);
    });
    ASSERT_EQ(storage.contents(), expected) << "start " << start;
    ASSERT_EQ(xmlPropertyList({storage.contents()}), xmlPropertyList({expected})) << "zeros have signs";
    PropertyList::Dictionary values;
    for (int i = 0; i < kValues; ++i)
      values.emplace(any.text(), storedForm(any.value(kPropertyListDepthLimit - 2)));
    const String key = std::to_string(start % 7);
    expected.insert_or_assign(key, PropertyList{values});
    storage.setObject(key, {values});
  }
}

}  // namespace
}  // namespace tarnix::linux_desktop
