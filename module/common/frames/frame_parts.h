// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QFont>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <vector>

#include "common/frames/column_table.h"
#include "common/host/font.h"

class QVBoxLayout;

/// What every frame is put together from: coloured panels, title and header strips.
namespace holdwise {

/// Gives a panel a vertical layout without margins and gaps.
QVBoxLayout* StackedIn(QWidget& panel);

/// Has Tab visit the widgets in that order.
void SetTabOrderOf(const std::vector<QWidget*>& widgets);

/// Fills a panel with a colour; its children keep theirs.
void SetPanelColor(QWidget& panel, const QColor& color);
void SetTextColor(QWidget& label, const QColor& color);
/// The theme's colour of panels.
[[nodiscard]] QColor ThemeBackground();

/// A strip of fixed height with a stretched picture of the theme behind its labels.
class PictureStrip : public QWidget {
  Q_OBJECT
 public:
  PictureStrip(int height, QWidget* parent);
  /// Re-reads the picture of that key.
  void ApplyPicture(const QString& key);
  [[nodiscard]] QLabel& Picture() const { return *picture_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QLabel* picture_;
};

/// The strip above a grid: one transparent label over each titled column. Labels follow the visible part of their
/// columns and are aligned like them; under the mouse they say what the table of title hints knows.
class HeaderStrip : public PictureStrip {
  Q_OBJECT
 public:
  static constexpr int kHeight = 23;         ///< pixels
  static constexpr int kTwoLineHeight = 36;  ///< while a title has two lines

  /// Gives the grid, which must live longer, these columns.
  HeaderStrip(TStringGrid& grid, ColumnTable columns, QWidget* parent);
  /// Re-reads the colours of the labels and of the grid, and the picture.
  void ApplyTheme();
  /// Fits the columns to the grid's client width and the labels to the columns.
  void FitColumns();
  /// Other captions over the shown columns, in their order; a "\r" breaks the line, and the strip gets the height for
  /// it. The grid keeps the titles it goes by in the catalogue.
  void SetTitles(const QStringList& titles);
  [[nodiscard]] const std::vector<QLabel*>& Labels() const noexcept { return labels_; }

 private:
  void FollowColumns();

  TStringGrid& grid_;
  ColumnTable columns_;
  std::vector<QLabel*> labels_;
};

/// A strip with one transparent caption label at a fixed place and, at its right end, a quiet notice.
class TitleStrip : public PictureStrip {
  Q_OBJECT
 public:
  static constexpr int kHeight = 35;  ///< pixels

  TitleStrip(const QString& caption, const QFont& font, QPoint place, QWidget* parent);
  [[nodiscard]] QLabel& Caption() const { return *caption_; }
  /// Replaces the caption; empty for none. The notice makes way for it.
  void SetCaption(const QString& caption);
  /// A line about the figures below, with the whole story under the mouse; the empty text takes it away. It keeps clear
  /// of the caption.
  void SetNotice(const QString& text, const QString& hint);
  [[nodiscard]] QLabel& Notice() const { return *notice_; }
  /// Re-reads the texts' colours and the picture.
  void ApplyTheme();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceTexts();

  QPoint place_;
  QLabel* caption_;
  QLabel* notice_;
};

}  // namespace holdwise
