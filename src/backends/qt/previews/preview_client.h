#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QSize>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "backends/qt/previews/preview_answer.h"
#include "backends/qt/previews/preview_channel.h"
#include "backends/qt/previews/preview_source.h"
#include "backends/qt/previews/previewer_process.h"

namespace tarnix::qt {

// Asks a previewer about one source at a time, and checks what it says. Never waits; a previewer that doesn't
// answer within two seconds, dies or talks nonsense is a failure like any other.
class PreviewClient : public QObject {
 public:
  using Answered = std::function<void(PreviewAnswer)>;

  // The picture that is wanted at most, and how many pixels a point has.
  struct Wanted {
    QSize pixels;
    double scale = 1;
  };

  explicit PreviewClient(Answered answered);
  ~PreviewClient() override;

  // Drops the source before this one with its previewer. The answers come in later turns of the loop.
  void ask(PreviewSource source, Wanted wanted);
  // A page of the document that was the last answer; one at a time.
  void askPage(std::size_t page, QSize pixels);
  void drop();
  // Of the previewer at work; 0 while there is none.
  pid_t processId() const { return process_ ? process_->id() : 0; }

 private:
  enum class Stage { idle, first, entries, pages };
  class HandOver;

  void start();
  void open(int bytes);
  void receive(previewing::MessageKind kind, std::string payload);
  std::optional<PreviewAnswer> firstAnswer(previewing::MessageKind kind, std::string payload);
  std::optional<PreviewAnswer> nextEntries(const std::string& payload);
  std::optional<PreviewAnswer> nextPage(std::string payload);
  void fail(const QString& reason);
  void endIfDone();

  Answered answered_;
  Stage stage_ = Stage::idle;
  PreviewSource source_;
  Wanted wanted_;
  std::size_t entriesLeft_ = 0;
  std::size_t pages_ = 0;
  std::optional<previewing::PageRequest> page_;
  QTimer rest_;
  QTimer patience_;
  std::unique_ptr<HandOver> handOver_;
  std::unique_ptr<PreviewerProcess> process_;
  std::unique_ptr<PreviewChannel> channel_;
};

}  // namespace tarnix::qt
