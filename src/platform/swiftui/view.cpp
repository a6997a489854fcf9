#include "platform/swiftui/view.h"

#include "platform/swiftui/elements.h"
#include "platform/swiftui/view_node.h"

namespace tarnix {

View::View(ElementContent content, std::vector<View> children, std::optional<Rows> rows)
    : node_(std::make_shared<const Node>(Node{.content = std::move(content),
                                              .composite = nullptr,
                                              .children = std::move(children),
                                              .rows = std::move(rows),
                                              .modifiers = {},
                                              .attachments = {},
                                              .changeHooks = {},
                                              .receiveHooks = {},
                                              .identity = {}})) {}

View::View(std::shared_ptr<const Composite> composite) : View(elements::VStack{}) {
  *this = changed([&](Node& node) { node.composite = std::move(composite); });
}

View::View(std::shared_ptr<const ViewRepresentable> host)
    : View(elements::HostedView{.host = std::move(host), .view = nullptr}) {}

View View::changed(const std::function<void(Node&)>& change) const {
  auto node = std::make_shared<Node>(*node_);
  change(*node);
  View view = *this;
  view.node_ = std::move(node);
  return view;
}

View View::modified(modifiers::Modifier modifier) const {
  return changed([&](Node& node) { node.modifiers.push_back(std::move(modifier)); });
}

View View::watching(ChangeHook hook) const {
  return changed([&](Node& node) { node.changeHooks.push_back(std::move(hook)); });
}

View View::receiving(ReceiveHook hook) const {
  return changed([&](Node& node) { node.receiveHooks.push_back(std::move(hook)); });
}

View View::popover(Binding<bool> isPresented, View content) const {
  return changed([&](Node& node) {
    node.attachments.push_back(View(elements::Popover{std::move(isPresented)}, {std::move(content)}));
  });
}

View View::id(UUID identity) const {
  return changed([&](Node& node) { node.identity = identity; });
}

View View::toolbar(std::vector<View> items) const {
  return changed([&](Node& node) {
    for (View& item : items) node.attachments.push_back(std::move(item));
  });
}

View View::confirmationDialog(String title, Binding<bool> isPresented, std::vector<View> buttons,
                              String message) const {
  return changed([&](Node& node) {
    node.attachments.push_back(
        View(elements::ConfirmationDialog{std::move(title), std::move(message), std::move(isPresented)},
             std::move(buttons)));
  });
}

}  // namespace tarnix
