#pragma once
#include <QColor>
#include <QFont>
#include <QLabel>
#include <QString>
#include <QStringList>
#include <vector>

#include "common/host/font.h"

class QVBoxLayout;

/// What every frame is put together from: coloured panels, title and header strips.
namespace holdwise {

class TStringGrid;

/// Gives a panel a vertical layout without margins and gaps.
QVBoxLayout* StackedIn(QWidget& panel);

/// Fills a panel with a colour; its children keep theirs.
void SetPanelColor(QWidget& panel, const QColor& color);
void SetTextColor(QWidget& label, const QColor& color);

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

/// Columns of a grid.
struct GridDesign {
  int columns = 0;
  QStringList titles;              ///< of the shown columns, which come first
  std::vector<int> hiddenColumns;  ///< keys and inputs
  /// Widths of all columns for a client width, pixels.
  std::vector<int> (*widths)(int clientWidth) = nullptr;
};

/// The strip above a grid: one transparent label over each titled column. Labels follow the visible part of their
/// columns and are aligned like them.
class HeaderStrip : public PictureStrip {
  Q_OBJECT
 public:
  static constexpr int kHeight = 23;  ///< pixels

  /// Gives the grid, which must live longer, the columns of the design.
  HeaderStrip(TStringGrid& grid, const GridDesign& design, QWidget* parent);
  /// Re-reads the colours of the labels and of the grid, and the picture.
  void ApplyTheme();
  /// Fits the columns to the grid's client width and the labels to the columns.
  void FitColumns();
  [[nodiscard]] const std::vector<QLabel*>& Labels() const noexcept { return labels_; }

 private:
  void FollowColumns();

  TStringGrid& grid_;
  std::vector<int> (*widths_)(int clientWidth);
  std::vector<QLabel*> labels_;
};

/// A strip with one transparent caption label at a fixed place.
class TitleStrip : public PictureStrip {
  Q_OBJECT
 public:
  static constexpr int kHeight = 35;  ///< pixels

  TitleStrip(const QString& caption, const QFont& font, QPoint place, QWidget* parent);
  [[nodiscard]] QLabel& Caption() const { return *caption_; }
  void SetCaption(const QString& caption);
  /// Re-reads the caption's colour and the picture.
  void ApplyTheme();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceCaption();

  QPoint place_;
  QLabel* caption_;
};

}  // namespace holdwise
