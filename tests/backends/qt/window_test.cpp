#include "backends/qt/window.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <csignal>

#include "backends/qt/run_loop_driver.h"
#include "backends/qt/stage.h"
#include "backends/qt/termination_signals.h"

namespace tarnix::qt {
namespace {

// Shows a number and counts how often it is asked for.
struct Counted {
  static auto state() { return std::tuple{&Counted::number}; }
  View body() const {
    ++*evaluations;
    return Text(std::to_string(*number));
  }
  State<int> number;
  std::shared_ptr<int> evaluations = std::make_shared<int>(0);
};

class WindowTest : public testing::Test {
 protected:
  // The window as the toolkit knows it.
  QWidget& widget() {
    for (QWidget* const each : QApplication::topLevelWidgets()) {
      if (each->windowTitle() == "Tarnix") return *each;
    }
    throw std::logic_error("no window");
  }
  void turn() {
    Stage::settle();
    loop_.runDue();
    Stage::settle();
  }

  RunLoop loop_{[] { return RunLoop::Instant(0); }};
  Counted view_;
  ViewGraph graph_{view_, loop_};
  Window window_{graph_};
};

TEST_F(WindowTest, showsWhatItsGraphSays) {
  window_.show();
  view_.number.set(7);
  turn();
  EXPECT_EQ(widget().findChild<QLabel*>()->text(), "7");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&widget())->role(), QAccessible::Window);
}

TEST_F(WindowTest, aHiddenOrMinimisedWindowIsNotEvaluated) {
  window_.show();
  turn();
  for (const bool isMinimised : {false, true}) {
    isMinimised ? widget().showMinimized() : widget().hide();
    turn();
    const int before = *view_.evaluations;
    view_.number.set(*view_.number + 1);
    turn();
    EXPECT_EQ(*view_.evaluations, before) << isMinimised;
    widget().showNormal();
    turn();
    EXPECT_EQ(*view_.evaluations, before + 1) << isMinimised;
    EXPECT_EQ(widget().findChild<QLabel*>()->text(), QString::number(*view_.number));
  }
}

TEST(WindowFocus, startsInTheRows) {
  RunLoop loop{[] { return RunLoop::Instant(0); }};
  std::optional<UUID> selection;
  String search;
  ViewGraph graph(VStack({List(bindingTo(selection), {Section("Tarnix", {})})
                              .searchable(bindingTo(search), modifiers::SearchFieldPlacement::sidebar)}),
                  loop);
  Window window(graph);
  window.show();
  Stage::settle();
  EXPECT_NE(dynamic_cast<QAbstractItemView*>(QApplication::focusWidget()), nullptr);
}

TEST(TerminationSignals, callFromTheEventLoopAndGiveTheSignalsBack) {
  int calls = 0;
  {
    const TerminationSignals termination([&] { ++calls; });
    for (const int signal : TerminationSignals::kSignals) {
      std::raise(signal);
      Stage::settle();
    }
    EXPECT_EQ(calls, 3);
  }
  struct sigaction now {};
  sigaction(SIGHUP, nullptr, &now);
  EXPECT_NE(now.sa_handler, SIG_IGN);
}

}  // namespace
}  // namespace tarnix::qt
