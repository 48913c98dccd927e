// SPDX-License-Identifier: MIT
#pragma once
#include <QEvent>
#include <QWidget>
#include <exception>
#include <functional>
#include <vector>

#include "common/store/incomplete_portfolios.h"
#include "holdwise/sdk/catalogue.h"

namespace holdwise {

class FramePart;
class TStringGrid;

/// What a reader of a view's figures has to know.
struct ViewNotice {
  QString text;                              ///< of the view as a whole, short; empty for nothing
  QString hint;                              ///< the whole story of it, and what to do
  std::vector<IncompletePortfolio> lacking;  ///< what its figures lack beside what the stored ones lack
  QString awaited = {};  ///< further story, of what comes with the calculation; not told when it could not be done

  /// Adds a line to the story, and "数据不完整" where there is no short text; nothing for an empty line.
  void Add(const QString& line);
};

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

/// A view: parts from top to bottom, which it wires to the data. Turns the messages into calls, and answers for the
/// view in the catalogue. User-interface thread only.
class TViewFrame : public QWidget {
 public:
  /// `unit` is named in the debug log.
  TViewFrame(QString unit, QWidget* parent);

  /// The frame id: the node id of the view.
  [[nodiscard]] int Tag() const noexcept { return tag_; }
  void SetTag(int tag) noexcept { tag_ = tag; }

  /// Handlers of the messages. On FrameMessage::Hidden the parts keep their selection for the next time.
  virtual void DoInit_() {}
  /// Re-reads the theme for the frame and its parts.
  virtual void msg_changeskin();
  virtual void ReflashNowPrice() {}
  /// Lays the parts out again for the present size; also called when the frame's size changes.
  virtual void FrameResize();

  /// The view's grids, in the order they are shown.
  [[nodiscard]] std::vector<const TStringGrid*> CatalogueGrids() const;
  [[nodiscard]] ViewCatalogue::Holdings HoldingsGrid() const;
  /// Selects the portfolio as a click on its row does; false when it is not listed.
  bool SelectPortfolio(const QString& portfolioId);
  /// Where the user has got to in the parts, for PutPlace of a view of the same kind.
  [[nodiscard]] QByteArray Place() const;
  void PutPlace(const QByteArray& place);
  /// The data is going to be read again, not anew: what is selected stays so, unless the list has changed.
  void KeepSelection();
  /// What the keys can be given to, from top to bottom and from left to right: the grids, and of a part without one its
  /// first control.
  [[nodiscard]] std::vector<QWidget*> Panes() const;
  /// What a user can set in the view, with what stands there now.
  [[nodiscard]] virtual std::vector<ViewCatalogue::Input> Inputs() const { return {}; }
  /// Sets one as the user would, and applies it. @return what the user would be told when it is refused; empty when
  /// done
  virtual QString SetInput(const QString& name, const QString& value);
  /// Puts into one what the user has typed or chosen there and not applied. @return as SetInput
  virtual QString PutInput(const QString& name, const QString& value);
  /// What the user is working on in the view and has not stored, in words; empty when nothing.
  [[nodiscard]] virtual QString Unstored() const { return {}; }
  /// Read after each message but FrameMessage::ChangeSkin, and when the view says that it has changed.
  [[nodiscard]] virtual ViewNotice Notice() const { return {}; }
  std::function<void()> OnNoticeChanged;
  /// The view has added, changed or deleted portfolios.
  std::function<void()> OnPortfoliosChanged;
  /// The view has stored portfolios whose figures are to be calculated now. Returns when that is done; the view may be
  /// gone then.
  std::function<void()> OnDownData;
  /// False while the view waits for something of its own (a download).
  [[nodiscard]] virtual bool IsSettled() const { return true; }

 protected:
  void NoticeChanged() {
    if (OnNoticeChanged) OnNoticeChanged();
  }
  void PortfoliosChanged() {
    if (OnPortfoliosChanged) OnPortfoliosChanged();
  }
  /// Puts a part below the ones there are; a part that stretches takes the height that is left.
  void AddPart(FramePart& part, bool stretches);
  /// Puts two parts below the ones there are, with an edge between them that can be dragged; the upper one is so high
  /// at first, the lower one takes what is left.
  void AddParts(FramePart& upper, int upperHeight, FramePart& lower);
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QString unit_;
  int tag_ = 0;
  std::vector<FramePart*> parts_;
};

}  // namespace holdwise
