#pragma once
#include <QColor>
#include <QFont>
#include <QLabel>
#include <QString>
#include <vector>

class QVBoxLayout;

/// What every frame is put together from: the design font, coloured panels, title and header strips.
namespace holdwise {

class TStringGrid;

/// The design font in pixels, with the names under which its Chinese characters are found elsewhere.
inline constexpr int kDesignFontPixels = 12;
[[nodiscard]] QFont DesignFont(int pixels = kDesignFontPixels, bool bold = false);

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

/// The strip above a grid: one transparent label over each titled column. Labels follow the visible part of their
/// columns and are aligned like them.
class HeaderStrip : public PictureStrip {
  Q_OBJECT
 public:
  static constexpr int kHeight = 23;  ///< pixels

  /// The grid's columns and titles must be set.
  HeaderStrip(const TStringGrid& grid, QWidget* parent);
  void ApplyTheme(const QColor& text, const QString& pictureKey);
  void FollowColumns();
  [[nodiscard]] const std::vector<QLabel*>& Labels() const noexcept { return labels_; }

 private:
  const TStringGrid& grid_;
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

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceCaption();

  QPoint place_;
  QLabel* caption_;
};

}  // namespace holdwise
