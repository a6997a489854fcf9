#include <memory>
#include <utility>

#include "backends/qt/presenters/preview_host.h"
#include "backends/qt/presenters/text_host.h"
#include "platform/swiftui/elements.h"

namespace tarnix::qt {

template <>
std::unique_ptr<Presenter> presenterFor<elements::HostedView>(Rendering& rendering, const Element& element) {
  auto text = textPresenterFor(rendering, element);
  return text ? std::move(text) : previewPresenterFor(rendering, element);
}

}  // namespace tarnix::qt
