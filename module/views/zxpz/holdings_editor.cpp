// SPDX-License-Identifier: MIT
#include "views/zxpz/holdings_editor.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QValidator>
#include <memory>
#include <utility>

#include "common/frames/frame_parts.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/messages.h"
#include "common/host/theme_colors.h"
#include "edit_rules.h"
#include "editor_layout.h"
#include "host_stocks.h"
#include "pasted_holdings.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zxpz");
constexpr int kGap = 8;
constexpr int kButtonHeight = 24;
constexpr QMargins kEditorInset{5, 3, 5, 3};  // of the cell that it lies in
constexpr QMargins kBoxInset{4, 2, 4, 2};
constexpr unsigned kEditorColor = 15269887;  // given: red in the lowest byte, then green, then blue
constexpr int kInkShade = 1000;              // percent; in both themes the box is as light as paper

const ColumnTable& HoldingTable() {
  static const ColumnTable table = [] {
    ColumnTable columns;
    for (const QString& title : editor::CaptionsOf(editor::TitleMode::OneLine).holdings) {
      columns.push_back({.title = title});
    }
    return columns;
  }();
  return table;
}

bool IsEdited(int column) {
  return column == kHoldingPrice || column == kHoldingQuantity;
}

/// What is pasted or dropped comes past the key filter.
class CellTexts : public QValidator {
 public:
  CellTexts(int column, QString opened, QObject* owner)
      : QValidator(owner), column_(column), opened_(std::move(opened)) {}
  State validate(QString& input, int& /*caret*/) const override {
    return edit_rules::MayStand(column_, input, opened_) ? Acceptable : Invalid;
  }

 private:
  int column_;
  QString opened_;
};

void ColorEditor(QWidget& editor) {
  const auto paper = QColor::fromRgb(kEditorColor & 0xFF, kEditorColor >> 8 & 0xFF, kEditorColor >> 16);
  QPalette palette = editor.palette();
  palette.setColor(QPalette::Base, paper);
  palette.setColor(QPalette::Text, paper.darker(kInkShade));
  editor.setPalette(palette);
}

}  // namespace

bool TRzEdit::event(QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    const bool isTab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    if (isTab && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
      keyPressEvent(key);
      return true;
    }
  }
  return EntryField::event(event);
}

void TRzEdit::keyPressEvent(QKeyEvent* event) {
  EntryField::keyPressEvent(event);
  // No key of the box is one of the grid behind it.
  event->accept();
}

void TRzEdit::focusOutEvent(QFocusEvent* event) {
  EntryField::focusOutEvent(event);
  if (OnExit) GuardEvent(kUnit, objectName(), OnExit);
}

HoldingsEditor::HoldingsEditor(QWidget* parent)
    : FramePart(parent),
      StringGrid3(new TStringGrid(kUnit, QStringLiteral("StringGrid3"), this)),
      FInplaceEdit(new TRzEdit(kUnit, QStringLiteral("FInplaceEdit"), StringGrid3->viewport())),
      btnDel(new QPushButton(QStringLiteral("删  除"), this)),
      header_(new HeaderStrip(*StringGrid3, HoldingTable(), this)),
      hint_(new QLabel(QStringLiteral("提示: 按SHIFT键连续多选，或按CTRL键不连续多选。"), this)),
      picks_(*StringGrid3) {
  btnDel->setObjectName(QStringLiteral("btnDel"));
  StringGrid3->setAccessibleName(QStringLiteral("新组合的持仓"));
  btnDel->setFixedHeight(kButtonHeight);
  for (QWidget* control : {static_cast<QWidget*>(btnDel), static_cast<QWidget*>(hint_)}) control->setFont(DesignFont());
  auto* layout = StackedIn(*this);
  layout->addWidget(header_);
  layout->addWidget(StringGrid3, 1);
  auto* below = new QHBoxLayout;
  below->setContentsMargins(0, kGap, 0, 0);
  below->setSpacing(kGap);
  below->addWidget(btnDel);
  below->addWidget(hint_, 1);
  layout->addLayout(below);
  InitGrid();
  InitEditor();
  connect(btnDel, &QPushButton::clicked, this,
          [this] { GuardEvent(kUnit, QStringLiteral("Label5Click"), [this] { Label5Click(); }); });
}

void HoldingsEditor::InitGrid() {
  StringGrid3->setFocusPolicy(Qt::StrongFocus);
  StringGrid3->SetRangeSelect(true);
  StringGrid3->SetEmptyText(QStringLiteral("还没有股票。从股票列表添加，或粘贴“代码、数量、价格”三列。"));
  StringGrid3->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position) {
    StringGrid3MouseDown(button, modifiers, position);
  };
  // Wherever it is clicked, also below the rows: intended.
  StringGrid3->OnDoubleClick = [this](const QPoint&) { Label5Click(); };
  StringGrid3->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) { StringGrid3KeyDown(key, modifiers); };
  StringGrid3->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) {
    StringGrid3DrawCell(painter, cell);
  };
  StringGrid3->OnClientWidthChanged = [this](int) { Fit(); };
  StringGrid3->OnContextMenu = [this](QMenu& menu) {
    connect(menu.addAction(QStringLiteral("粘贴持仓")), &QAction::triggered, this,
            [this] { GuardEvent(kUnit, QStringLiteral("PasteHoldings"), [this] { PasteHoldings(); }); });
  };
}

void HoldingsEditor::InitEditor() {
  FInplaceEdit->setFocusPolicy(Qt::ClickFocus);
  FInplaceEdit->setAlignment(Qt::AlignHCenter);
  ColorEditor(*FInplaceEdit);
  FInplaceEdit->hide();
  FInplaceEdit->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) {
    return FInplaceEditKeyDown(key, modifiers);
  };
  FInplaceEdit->OnKeyPress = [this](QChar key) { return FInplaceEditKeyPress(key); };
  FInplaceEdit->OnExit = [this] { Commit(); };
}

bool HoldingsEditor::GetIshaveData() const {
  return StringGrid3->IsEmpty();
}

std::vector<HoldingRow> HoldingsEditor::Rows() const {
  std::vector<HoldingRow> rows;
  if (GetIshaveData()) return rows;
  const auto text = [this](int column, int row) { return StringGrid3->Cells(column, row); };
  for (int row = 0; row < StringGrid3->RowCount(); ++row) {
    rows.push_back(
        {text(kHoldingCode, row), text(kHoldingName, row), text(kHoldingPrice, row), text(kHoldingQuantity, row)});
  }
  return rows;
}

void HoldingsEditor::SetRows(const std::vector<HoldingRow>& rows) {
  UpdateEditor();
  picks_.Clear();
  const GridBatch batch(*StringGrid3);
  ClearStrnGrd(*StringGrid3);
  for (const HoldingRow& row : rows) AddRow(row);
  StringGrid3->SelectCell(kHoldingCode, 0);
  CalGridWidth();
}

void HoldingsEditor::AddRow(const HoldingRow& row) {
  const int place = GetIshaveData() ? 0 : StringGrid3->RowCount();
  {
    const GridBatch batch(*StringGrid3);
    StringGrid3->SetRowCount(place + 1);
    StringGrid3->SetCells(kHoldingCode, place, row.code);
    StringGrid3->SetCells(kHoldingName, place, row.name);
    StringGrid3->SetCells(kHoldingPrice, place, row.price);
    StringGrid3->SetCells(kHoldingQuantity, place, row.quantity);
  }
  StringGrid3->BringIntoView(place);
}

void HoldingsEditor::EditCell(int column, int row) {
  Commit();
  edited_ = {column, row};
  ShowEditor();
}

void HoldingsEditor::ShowEditor() {
  if (GetIshaveData() || !StringGrid3->SelectCell(edited_.column, edited_.row)) return;
  const QString& text = StringGrid3->Cells(edited_.column, edited_.row);
  const std::unique_ptr<const QValidator> former(FInplaceEdit->validator());
  FInplaceEdit->setValidator(new CellTexts(edited_.column, text, FInplaceEdit));
  FInplaceEdit->setText(text);
  FInplaceEdit->show();
  PlaceEditor();
  FInplaceEdit->setFocus();
  FInplaceEdit->selectAll();
}

void HoldingsEditor::PlaceEditor() {
  if (FInplaceEdit->isHidden()) return;
  FInplaceEdit->setGeometry(StringGrid3->CellRect(edited_.column, edited_.row).marginsRemoved(kEditorInset));
}

void HoldingsEditor::FInplaceEditExit() {
  ModuleHost().KeyCodes().SetCaptureEnabled(true);
  Commit();
}

void HoldingsEditor::Commit() {
  if (FInplaceEdit->isHidden()) return;
  StringGrid3->SetCells(edited_.column, edited_.row, FInplaceEdit->text());
}

void HoldingsEditor::UpdateEditor() {
  edited_ = {};
  FInplaceEdit->clear();
  if (FInplaceEdit->hasFocus()) StringGrid3->setFocus();
  FInplaceEdit->hide();
}

void HoldingsEditor::MoveTo(const GridCell& cell) {
  FInplaceEditExit();
  const bool isThere = cell.row >= 0 && cell.row < StringGrid3->RowCount();
  if (isThere) edited_ = cell;
  ModuleHost().KeyCodes().SetCaptureEnabled(false);
  ShowEditor();
}

bool HoldingsEditor::FInplaceEditKeyDown(int key, Qt::KeyboardModifiers modifiers) {
  const bool isPrice = edited_.column == kHoldingPrice;
  const int other = isPrice ? kHoldingQuantity : kHoldingPrice;
  const bool isBack = key == Qt::Key_Backtab || modifiers.testFlag(Qt::ShiftModifier);
  switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      // Across the row's end to the row before or behind.
      if (isPrice == isBack) {
        MoveTo({other, edited_.row + (isBack ? -1 : 1)});
      } else {
        MoveTo({other, edited_.row});
      }
      return true;
    case Qt::Key_Up:
      MoveTo({edited_.column, edited_.row - 1});
      return true;
    case Qt::Key_Down:
      MoveTo({edited_.column, edited_.row + 1});
      return true;
    default:
      return false;
  }
}

bool HoldingsEditor::FInplaceEditKeyPress(QChar key) {
  const QLineEdit& edit = *FInplaceEdit;
  const int caret = edit.hasSelectedText() ? edit.selectionStart() : edit.cursorPosition();
  const auto verdict = edit_rules::HoldingKey(edited_.column, edit.text(), caret, key);
  if (verdict.clearsFirst) FInplaceEdit->clear();
  if (key != edit_rules::kEnter) return verdict.isTaken;
  const bool isLast = edited_ == GridCell{kHoldingQuantity, StringGrid3->RowCount() - 1};
  if (!isLast) return FInplaceEditKeyDown(Qt::Key_Tab, {});
  FInplaceEditExit();
  UpdateEditor();
  return true;
}

void HoldingsEditor::StringGrid3MouseDown(Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
                                          const QPoint& position) {
  // The other buttons' clicks are the context menu's.
  if (button != Qt::LeftButton) return;
  picks_.MouseDown(button, modifiers, position);
  const GridCell cell = StringGrid3->MouseToCell(position);
  if (IsEdited(cell.column)) {
    EditCell(cell.column, cell.row);
  } else {
    UpdateEditor();
  }
}

void HoldingsEditor::StringGrid3KeyDown(int key, Qt::KeyboardModifiers modifiers) {
  if (modifiers.testFlag(Qt::ControlModifier) && key == Qt::Key_V) return PasteHoldings();
  if (key == Qt::Key_Delete) return Label5Click();
  const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (isEnter && !GetIshaveData()) EditCell(kHoldingPrice, StringGrid3->Row());
}

void HoldingsEditor::Label5Click() {
  if (GetIshaveData()) return;
  if (picks_.IsEmpty()) {
    const GridRange selected = StringGrid3->Selection();
    StringGrid3->DeleteRow(selected.top, selected.Count());
  } else {
    for (int row = StringGrid3->RowCount() - 1; row >= 0; --row) {
      if (picks_.IsPicked(row)) StringGrid3->DeleteRow(row, 1);
    }
    picks_.Clear();
  }
  CalGridWidth();
  UpdateEditor();
}

void HoldingsEditor::PasteHoldings() {
  Commit();
  QStringList present;
  for (const HoldingRow& row : Rows()) present << row.code;
  const PastedHoldings pasted = ReadPastedHoldings(QGuiApplication::clipboard()->text(), present, FindStock);
  for (HoldingRow row : pasted.rows) {
    if (row.price.isEmpty()) row.price = CurrentPriceText(row.code);
    AddRow(row);
  }
  CalGridWidth();
  UpdateEditor();
  const QString message = PasteMessage(pasted);
  if (!message.isEmpty()) Tell(message);
}

void HoldingsEditor::CalGridWidth() {
  header_->FitColumns();
}

void HoldingsEditor::SetTitles(const QStringList& four) {
  header_->SetTitles(four);
}

void HoldingsEditor::StringGrid3DrawCell(QPainter& painter, const GridCellPaint& cell) const {
  GridCellPaint shown = cell;
  shown.isSelected = picks_.StandsOut(cell) && !IsEdited(cell.column);
  if (!IsEdited(cell.column)) return StringGrid3->DrawDefaultCell(painter, shown);
  PaintCellBackground(painter, shown, StringGrid3->Colors());
  const QRect box = cell.rect.marginsRemoved(kBoxInset);
  painter.setPen(boxColor_);
  painter.drawRect(box.adjusted(0, 0, -1, -1));
  shown.rect = box;
  PaintCellText(painter, shown, TextColor(shown, StringGrid3->Colors()), StringGrid3->Cells(cell.column, cell.row),
                Qt::AlignHCenter);
}

void HoldingsEditor::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  header_->ApplyTheme();
  ApplyControlTheme(*btnDel);
  ApplyControlTheme(*hint_);
  boxColor_ = ModuleHost().ColorTheme().Colors().ColorOf(theme::kGridTitleBackground);
}

void HoldingsEditor::Fit() {
  CalGridWidth();
  PlaceEditor();
}

}  // namespace holdwise
