#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tarnix::test {

// Bytes that an owner hands out under one or several target names.
struct Representation {
  std::vector<std::string> targets;
  std::shared_ptr<const std::string> bytes;
};

// What a scripted selection owner does. The defaults make a well-behaved owner; each mode of the command line
// is a set of deviations from it.
struct OwnerScript {
  enum class Conduct { serve, ignore, die };
  enum class OddTargets { none, many, invalid, longNames };

  std::vector<Representation> representations;
  Conduct onTargets = Conduct::serve;
  Conduct onData = Conduct::serve;
  OddTargets oddTargets = OddTargets::none;
  bool isTargetsTypeHonest = true;
  bool isDataTypeHonest = true;
  std::uint8_t dataFormat = 8;
  // Whoever asks for anything but the hint is reported with the line `leaked TARGET`.
  bool isSecret = false;
  // Goes on after another program has taken the selection.
  bool outlivesLoss = false;
  std::chrono::milliseconds answerDelay{0};

  // Texts longer than this go out in pieces.
  std::size_t incrementalAbove = 256 * 1024;
  std::size_t chunkSize = 1024 * 1024;
  std::chrono::milliseconds chunkDelay{0};
  // How many pieces are sent before the owner stops; what it does then.
  std::size_t chunksToSend = SIZE_MAX;
  Conduct afterLastChunk = Conduct::ignore;

  // How often the selection is taken. Every copy but the last is the text with the copy's number behind it.
  int copies = 1;
  std::chrono::milliseconds copyInterval{0};
  std::chrono::milliseconds timeLimit{60'000};
  // When given, a top-level window of this class is shown, so that the copy has a visible source.
  std::string windowClass;
  std::size_t oddTargetCount = 100'000;
};

// The script that the command line asks for. Prints what is wrong with it and ends the program otherwise.
OwnerScript parseOwnerScript(const std::vector<std::string>& arguments);

}  // namespace tarnix::test
