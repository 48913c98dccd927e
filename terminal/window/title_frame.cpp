// SPDX-License-Identifier: MIT
#include "window/title_frame.h"

#include <QPainter>
#include <QSplitter>
#include <QSplitterHandle>
#include <QVBoxLayout>
#include <algorithm>

namespace holdwise {
namespace {

constexpr int kCaptionHeight = 30;
constexpr int kCaptionIndent = 14;
constexpr int kNarrowestPane = 120;

/// The bar above the client panel.
class CaptionBar : public QWidget {
 public:
  CaptionBar(const ThemeServices& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setFixedHeight(kCaptionHeight);
  }
  void SetText(const QString& text) {
    text_ = text;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.drawPixmap(rect(),
                       theme_.Images().PictureOf(QStringLiteral("Grid_TitleUpBg"), size() * devicePixelRatioF()));
    painter.fillRect(QRect(0, 7, 3, height() - 14), theme_.Colors().ColorOf(QStringLiteral("Section_BigTxtColor")));
    painter.setPen(theme_.Colors().ColorOf(QStringLiteral("QM_TitleFontColor")));
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.drawText(rect().adjusted(kCaptionIndent, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, text_);
  }

 private:
  const ThemeServices& theme_;
  QString text_;
};

class TitleFrame : public TFrmQMTitle {
 public:
  explicit TitleFrame(const ThemeServices& theme)
      : theme_(theme), caption_(new CaptionBar(theme, this)), client_(new QWidget(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(caption_);
    layout->addWidget(client_, 1);
    setAutoFillBackground(true);
    TitleFrame::RefreshTheme();
  }

  void SetCaptionText(const QString& text) override { caption_->SetText(text); }
  void SetLayoutKind(int /*kind*/) override {}  // there is only one
  QWidget* ClientPanel() override { return client_; }

  void RefreshTheme() override {
    QPalette own = palette();
    own.setColor(QPalette::Window, theme_.Colors().ColorOf(QStringLiteral("Qm_BGCorlor")));
    setPalette(own);
    update();
    caption_->update();
  }

  void SplitterMoved(QSplitter* splitter) override {
    // A pane dragged to nothing would be hard to find again; less than twice the least width is left alone.
    QList<int> sizes = splitter->sizes();
    if (sizes.size() != 2 || sizes[0] + sizes[1] < 2 * kNarrowestPane) return;
    const int total = sizes[0] + sizes[1];
    const int first = std::clamp(sizes[0], kNarrowestPane, total - kNarrowestPane);
    if (first != sizes[0]) splitter->setSizes({first, total - first});
  }

  void SplitterPaint(QSplitter* splitter) override {
    for (int index = 1; index < splitter->count(); ++index) {
      QSplitterHandle* handle = splitter->handle(index);
      if (!handle->testAttribute(Qt::WA_WState_InPaintEvent)) continue;
      QPainter painter(handle);
      painter.fillRect(handle->rect(), theme_.Colors().ColorOf(QStringLiteral("Qm_BGCorlor")));
      painter.setPen(theme_.Colors().ColorOf(QStringLiteral("KTR_BorderColor")));
      const int middle = handle->width() / 2;
      painter.drawLine(middle, 0, middle, handle->height());
    }
  }

 private:
  const ThemeServices& theme_;
  CaptionBar* caption_;
  QWidget* client_;
};

}  // namespace

std::unique_ptr<TFrmQMTitle> MakeTitleFrame(const ThemeServices& theme) {
  return std::make_unique<TitleFrame>(theme);
}

}  // namespace holdwise
