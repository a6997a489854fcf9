#pragma once

#include <functional>
#include <tuple>

#include "platform/swiftui/view.h"

namespace tarnix::test {

// A view that is whatever the test makes of it, and is made anew when the test says so.
struct ChangingView {
  std::function<View()> make;
  State<int> changes{0};

  void change() const { changes.set(*changes + 1); }
  static auto state() { return std::tuple{&ChangingView::changes}; }
  View body() const { return make(); }
};

}  // namespace tarnix::test
