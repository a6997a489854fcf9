#pragma once

#include <QStackedLayout>
#include <QTimer>
#include <QWidget>

#include "backends/qt/previews/preview_client.h"
#include "backends/qt/previews/preview_source.h"
#include "backends/qt/widgets/hairline.h"

namespace tarnix::qt {

class FolderPreview;
class PagePreview;

// Shows what a source holds, in all the room that it is given and never in more. The former preview stays
// until the next one is there, though not for long.
class PreviewWidget : public QWidget {
 public:
  explicit PreviewWidget(QWidget* parent = nullptr);
  ~PreviewWidget() override;

  // `name` is what people call it. Asks anew, also about an equal source.
  void setSource(PreviewSource source, const QString& name);
  void clear();
  const PreviewClient& client() const { return client_; }

  QSize sizeHint() const override { return {320, 240}; }
  QSize minimumSizeHint() const override { return {1, 1}; }

 private:
  void take(PreviewAnswer answer);
  void wait();
  template <typename Part>
  Part& showPart();
  // Shows it, and lets go of the others.
  void showOnly(QWidget* part);

  QString name_;
  QStackedLayout* parts_;
  Hairline* edge_;  // Below what scrolls.
  QTimer slowness_;
  FolderPreview* folder_ = nullptr;
  PagePreview* pages_ = nullptr;
  PreviewClient client_;  // The last, since it tells the others.
};

}  // namespace tarnix::qt
