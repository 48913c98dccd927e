#pragma once
#include <QEvent>
#include <QWidget>
#include <exception>
#include <vector>

#include "holdwise/sdk/catalogue.h"

namespace holdwise {

class TStringGrid;

/// The messages between the main frame and its views.
enum class FrameMessage : int {
  Init = 5096,            ///< load the data; on every show and after a recalculation
  Hidden = 5097,          ///< another view has taken the place
  ChangeSkin = 5098,      ///< re-apply the theme
  ReflashNowPrice = 5099  ///< prices were read again
};

/// Carries a frame message; a failure of the handler comes back in it.
class FrameEvent : public QEvent {
 public:
  explicit FrameEvent(FrameMessage message) : QEvent(static_cast<QEvent::Type>(message)) {}
  std::exception_ptr failure;
};

/// Sends a message synchronously: the handler has finished when this returns. What the handler throws is thrown here,
/// on the sender's side of the widget library. A widget can be sent messages from its construction on.
void SendFrameMessage(QWidget& frame, FrameMessage message);

/// Base of the view frames: turns the messages into calls, and answers for the view in the catalogue. User-interface
/// thread only.
class TViewFrame : public QWidget {
 public:
  using QWidget::QWidget;

  /// The frame id: the node id of the view.
  [[nodiscard]] int Tag() const noexcept { return tag_; }
  void SetTag(int tag) noexcept { tag_ = tag; }

  /// Handlers of the messages. Nobody handles FrameMessage::Hidden.
  virtual void DoInit_() {}
  virtual void msg_changeskin() {}
  virtual void ReflashNowPrice() {}
  /// Lays the parts out again for the present size; also called when the frame's size changes.
  virtual void FrameResize() {}

  /// The view's grids, in the order they are shown.
  [[nodiscard]] virtual std::vector<const TStringGrid*> CatalogueGrids() const { return {}; }
  [[nodiscard]] virtual ViewCatalogue::Holdings HoldingsGrid() const { return {}; }
  /// Selects the portfolio as a click on its row does; false when it is not listed.
  virtual bool SelectPortfolio(const QString& portfolioId);
  /// False while the view waits for something of its own (a download).
  [[nodiscard]] virtual bool IsSettled() const { return true; }

 protected:
  /// Unit named in the debug log.
  [[nodiscard]] virtual QString UnitName() const = 0;
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  int tag_ = 0;
};

}  // namespace holdwise
