#pragma once

#include <memory>
#include <optional>

#include "platform/appkit/attributed_string.h"
#include "platform/combine/observable_object.h"

namespace tarnix {

class RtfReader;

// Reads the formatted text that is on show, once for the same bytes. A long document takes several turns of
// the main run loop, at whose end the observers are told.
class RtfReading : public ObservableObject {
 public:
  struct Result {
    std::optional<NSAttributedString> text;  // Absent as well for what is no RTF.
    bool isBeingRead = false;
  };

  RtfReading();
  ~RtfReading() override;

  // Of the document that was asked for last only; another one starts afresh.
  Result textOf(const String& rtf);
  // Nothing is on show any more.
  void forget() { textOf({}); }

 private:
  void readOn();
  void scheduleTurn();

  String rtf_;
  std::optional<NSAttributedString> text_;
  std::unique_ptr<RtfReader> reader_;  // While there is more to read.
  bool isTurnScheduled_ = false;
};

}  // namespace tarnix
