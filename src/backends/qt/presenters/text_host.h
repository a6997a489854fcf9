#pragma once

#include <memory>

#include "backends/qt/tree/presenter.h"

namespace tarnix::qt {

// Of an element that hosts a text view; null for any other.
std::unique_ptr<Presenter> textPresenterFor(Rendering& rendering, const Element& element);

}  // namespace tarnix::qt
