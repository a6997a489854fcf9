#pragma once

#include <memory>

#include "backends/qt/presenter.h"

namespace tarnix::qt {

// A presenter for the element's kind, or null when elements of this kind are not shown by themselves.
std::unique_ptr<Presenter> makePresenter(Rendering& rendering, const Element& element);

// The makers, each beside the presenter that it makes.
std::unique_ptr<Presenter> makeText(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeImage(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeLabel(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeVStack(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeHStack(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeSpacer(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeDivider(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeNavigationView(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeList(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeToggle(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeButton(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeTextView(Rendering& rendering, const Element& element);
std::unique_ptr<Presenter> makeConfirmationDialog(Rendering& rendering, const Element& element);

}  // namespace tarnix::qt
