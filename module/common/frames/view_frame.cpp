// SPDX-License-Identifier: MIT
#include "common/frames/view_frame.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>
#include <utility>

#include "common/frames/frame_part.h"
#include "common/frames/frame_parts.h"
#include "common/grid/string_grid.h"
#include "common/host/event_guard.h"
#include "edge_splitter.h"

namespace holdwise {

void SendFrameMessage(QWidget& frame, FrameMessage message) {
  FrameEvent event(message);
  QCoreApplication::sendEvent(&frame, &event);
  if (event.failure) std::rethrow_exception(event.failure);
}

void ViewNotice::Add(const QString& line) {
  if (line.isEmpty()) return;
  if (text.isEmpty()) text = QStringLiteral("数据不完整");
  hint = hint.isEmpty() ? line : hint + QLatin1Char('\n') + line;
}

TViewFrame::TViewFrame(QString unit, QWidget* parent) : QWidget(parent), unit_(std::move(unit)) {
  StackedIn(*this);
}

void TViewFrame::AddPart(FramePart& part, bool stretches) {
  parts_.push_back(&part);
  static_cast<QVBoxLayout*>(layout())->addWidget(&part, stretches ? 1 : 0);
}

void TViewFrame::AddParts(FramePart& upper, int upperHeight, FramePart& lower) {
  constexpr int kLeastHeight = 100;
  for (FramePart* part : {&upper, &lower}) {
    parts_.push_back(part);
    part->setMinimumHeight(kLeastHeight);
  }
  auto* splitter = new EdgeSplitter(upper, lower, this);
  splitter->setObjectName(unit_ + QStringLiteral(".Splitter"));
  splitter->setSizes({upperHeight, upperHeight});
  static_cast<QVBoxLayout*>(layout())->addWidget(splitter, 1);
}

void TViewFrame::KeepSelection() {
  for (FramePart* part : parts_) part->KeepSelection();
}

std::vector<QWidget*> TViewFrame::Panes() const {
  std::vector<QWidget*> panes;
  for (const FramePart* part : parts_) {
    const auto grids = part->findChildren<TStringGrid*>();
    panes.insert(panes.end(), grids.begin(), grids.end());
    if (!grids.isEmpty()) continue;
    const auto controls = part->findChildren<QWidget*>();
    const auto first = std::find_if(controls.begin(), controls.end(), [](const QWidget* control) {
      return control->isEnabled() && (control->focusPolicy() & Qt::TabFocus);
    });
    if (first != controls.end()) panes.push_back(*first);
  }
  const auto placeOf = [this](const QWidget* pane) {
    const QPoint place = pane->mapTo(this, QPoint());
    return std::tuple(place.y(), place.x());
  };
  std::stable_sort(panes.begin(), panes.end(), [&](auto* a, auto* b) { return placeOf(a) < placeOf(b); });
  return panes;
}

void TViewFrame::msg_changeskin() {
  SetPanelColor(*this, ThemeBackground());
  for (FramePart* part : parts_) part->ApplyTheme();
}

void TViewFrame::FrameResize() {
  for (FramePart* part : parts_) part->Fit();
}

std::vector<const TStringGrid*> TViewFrame::CatalogueGrids() const {
  std::vector<const TStringGrid*> grids;
  for (const FramePart* part : parts_) {
    const auto ofPart = part->Grids();
    grids.insert(grids.end(), ofPart.begin(), ofPart.end());
  }
  return grids;
}

ViewCatalogue::Holdings TViewFrame::HoldingsGrid() const {
  ViewCatalogue::Holdings holdings;
  for (const FramePart* part : parts_) {
    if (holdings.gridName.isEmpty()) holdings.gridName = part->HoldingsGridName();
    holdings.portfolioIds << part->PortfolioIds();
  }
  return holdings;
}

bool TViewFrame::SelectPortfolio(const QString& portfolioId) {
  return std::any_of(parts_.begin(), parts_.end(), [&](FramePart* part) { return part->SelectPortfolio(portfolioId); });
}

QByteArray TViewFrame::Place() const {
  QVariantList places;
  for (const FramePart* part : parts_) places << part->Place();
  QByteArray place;
  QDataStream stream(&place, QIODevice::WriteOnly);
  stream << unit_ << places;
  return place;
}

void TViewFrame::PutPlace(const QByteArray& place) {
  QString unit;
  QVariantList places;
  QDataStream stream(place);
  stream >> unit >> places;
  const bool isOfThis = stream.status() == QDataStream::Ok && unit == unit_;
  if (!isOfThis || places.size() != static_cast<qsizetype>(parts_.size())) return;
  for (std::size_t part = 0; part < parts_.size(); ++part)
    parts_[part]->PutPlace(places[static_cast<qsizetype>(part)].toMap());
}

QString TViewFrame::SetInput(const QString& name, const QString& /*value*/) {
  return QStringLiteral("这个页面没有输入项“%1”。").arg(name);
}

QString TViewFrame::PutInput(const QString& name, const QString& value) {
  return TViewFrame::SetInput(name, value);
}

bool TViewFrame::event(QEvent* event) {
  auto* message = dynamic_cast<FrameEvent*>(event);
  if (message == nullptr) return QWidget::event(event);
  try {
    switch (static_cast<FrameMessage>(event->type())) {
      case FrameMessage::Init:
        DoInit_();
        return true;
      case FrameMessage::ChangeSkin:
        msg_changeskin();
        return true;
      case FrameMessage::ReflashNowPrice:
        ReflashNowPrice();
        return true;
      case FrameMessage::Hidden:
        KeepSelection();
        return true;
    }
  } catch (...) {
    message->failure = std::current_exception();
  }
  return true;
}

void TViewFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  GuardEvent(unit_, QStringLiteral("FrameResize"), [this] { FrameResize(); });
}

}  // namespace holdwise
