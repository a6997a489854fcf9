#include <thread>
#include <vector>

#include "settings/observation/updates.h"
#include "settings/settings_test.h"
#include "settings/store.h"

namespace tarnix {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UpdatesTest : public SettingsTest {
 protected:
  static Task collect(AsyncStream<int> stream, std::vector<int>* values) {
    while (const auto value = co_await stream.next()) values->push_back(*value);
    values->push_back(-1);
  }
  static Task count(AsyncStream<Void> stream, int* elements) {
    while (const auto element = co_await stream.next()) *elements += element.has_value() ? 1 : 0;
  }

  Defaults::Key<int> number{"number", 7};
  std::vector<int> values;
};

TEST_F(UpdatesTest, severalKeysHaveOneInitialElement) {
  const Defaults::Key<bool> a("a", false), b("b", false);
  int elements = 0;
  const Task task = count(Defaults::updates({number, a, b}), &elements);
  runLoop();
  EXPECT_EQ(elements, 1);
  defaults[a] = true;
  defaults[number] = 1;
  defaults[b] = true;
  runLoop();
  EXPECT_EQ(elements, 4);
}

TEST_F(UpdatesTest, droppingTheTaskEndsTheObservation) {
  {
    const Task task = collect(Defaults::updates(number), &values);
    runLoop();
    EXPECT_THAT(values, ElementsAre(7));
  }
  defaults[number] = 1;
  runLoop();
  EXPECT_THAT(values, ElementsAre(7));  // Nothing behind the wait has run either.
  Task neverRun = collect(Defaults::updates(number), &values);
  neverRun.cancel();
  EXPECT_FALSE(neverRun.isRunning());
  runLoop();
  EXPECT_THAT(values, ElementsAre(7));
}

}  // namespace
}  // namespace tarnix
