#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/swiftui/elements.h"

namespace tarnix {

// What a view is made of; seen by the graph and the view itself only.
struct View::Node {
  ElementContent content;
  std::shared_ptr<const Composite> composite;  // When present, stands in place of `content`.
  std::vector<View> children;
  std::optional<Rows> rows;
  std::vector<modifiers::Modifier> modifiers;
  std::vector<View> attachments;
  std::vector<ChangeHook> changeHooks;
  std::vector<ReceiveHook> receiveHooks;
  std::optional<UUID> identity;
};

}  // namespace tarnix
