// SPDX-License-Identifier: MIT
#include "views/zxpz/stock_picker.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QScopeGuard>
#include <QVBoxLayout>
#include <algorithm>

#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "common/helpers/lists.h"
#include "common/host/codes.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/messages.h"
#include "common/host/theme_colors.h"
#include "edit_rules.h"
#include "host_stocks.h"
#include "stock_keypad.h"
#include "views/zxpz/holdings_editor.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zxpz");
const QString kOwnStocks = QStringLiteral("OptionalStock");
constexpr int kAShares = 10;
constexpr int kNoEntry = -1;
constexpr int kRowHeight = 18;
constexpr int kControlHeight = 24;
constexpr int kGap = 6;
constexpr int kSpeedButtonWidth = 44;

/// What two texts have in common when a person takes them for the same: width of characters, case and blanks left out.
QString SearchForm(const QString& text) {
  QString form = text.normalized(QString::NormalizationForm_KC).toCaseFolded();
  form.removeIf([](QChar one) { return one.isSpace(); });
  return form;
}

std::vector<std::int32_t> CodeNumbersOf(int source) {
  if (source == StockPicker::kOwnGroup) return ModuleHost().DataCenter().GetGroupCodeNumList(kOwnStocks);
  std::vector<std::int32_t> numbers = ModuleHost().CodeNums().CodeNumbersOf(kAShares);
  Quick_sort(numbers, static_cast<int>(numbers.size()) - 1);
  return numbers;
}

}  // namespace

StockPicker::StockPicker(HoldingsEditor& holdings, QWidget* parent)
    : FramePart(parent),
      RzComboBox1(new QComboBox(this)),
      StringGrid2(new TStringGrid(kUnit, QStringLiteral("StringGrid2"), this)),
      RzEdit3(new EntryField(kUnit, QStringLiteral("RzEdit3"), this)),
      RzPanel7(new StockKeypad(this)),
      SpeedButton1(new QPushButton(QStringLiteral("键盘"), this)),
      btnAdd(new QPushButton(QStringLiteral("添  加"), this)),
      Search(new EntryField(kUnit, QStringLiteral("Search"), this)),
      holdings_(holdings),
      sourceLabel_(new QLabel(QStringLiteral("股票："), this)),
      picks_(*StringGrid2) {
  RzComboBox1->setObjectName(QStringLiteral("RzComboBox1"));
  RzComboBox1->setAccessibleName(QStringLiteral("股票范围"));
  StringGrid2->setAccessibleName(QStringLiteral("可选的股票"));
  RzComboBox1->addItems({QStringLiteral("自选股"), QStringLiteral("沪深A股")});
  SpeedButton1->setObjectName(QStringLiteral("SpeedButton1"));
  SpeedButton1->setFocusPolicy(Qt::NoFocus);
  SpeedButton1->setFixedWidth(kSpeedButtonWidth);
  btnAdd->setObjectName(QStringLiteral("btnAdd"));
  for (QWidget* control : Controls()) {
    control->setFont(DesignFont());
    if (control != sourceLabel_) control->setFixedHeight(kControlHeight);
  }
  InitLayout();
  InitList();
  InitEntries();
  InitButtons();
}

std::vector<QWidget*> StockPicker::Controls() const {
  return {sourceLabel_, RzComboBox1, Search, RzEdit3, SpeedButton1, btnAdd};
}

void StockPicker::InitLayout() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kGap);
  const auto addRow = [&](std::initializer_list<QWidget*> controls, QWidget& wide) {
    auto* row = new QHBoxLayout;
    row->setSpacing(kGap);
    for (QWidget* control : controls) row->addWidget(control, control == &wide ? 1 : 0);
    layout->addLayout(row);
  };
  addRow({sourceLabel_, RzComboBox1}, *RzComboBox1);
  addRow({Search}, *Search);
  layout->addWidget(StringGrid2, 1);
  addRow({RzEdit3, SpeedButton1, btnAdd}, *RzEdit3);
  SetTabOrderOf(TabOrder());
}

std::vector<QWidget*> StockPicker::TabOrder() const {
  return {RzComboBox1, Search, RzEdit3, StringGrid2, btnAdd};
}

void StockPicker::InitList() {
  StringGrid2->setFocusPolicy(Qt::StrongFocus);
  StringGrid2->SetColCount(kColumns);
  StringGrid2->SetTitles({QStringLiteral("股票代码"), QStringLiteral("股票名称")});
  StringGrid2->SetDefaultRowHeight(kRowHeight);
  StringGrid2->SetWholeRows(true);
  StringGrid2->SetRangeSelect(true);
  StringGrid2->OnMouseDown = [this](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, const QPoint& position) {
    picks_.MouseDown(button, modifiers, position);
  };
  StringGrid2->OnDoubleClick = [this](const QPoint&) { Label4Click(); };
  StringGrid2->OnKeyDown = [this](int key, Qt::KeyboardModifiers) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) Label4Click();
  };
  StringGrid2->OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) {
    GridCellPaint shown = cell;
    shown.isSelected = picks_.StandsOut(cell);
    StringGrid2->DrawDefaultCell(painter, shown);
  };
  StringGrid2->OnClientWidthChanged = [this](int) { Fit(); };
}

void StockPicker::InitEntries() {
  RzEdit3->setPlaceholderText(QStringLiteral("代码"));
  RzEdit3->setAccessibleName(RzEdit3->placeholderText());
  RzEdit3->setValidator(new QRegularExpressionValidator(QRegularExpression(edit_rules::kCodeTexts), RzEdit3));
  RzEdit3->OnKeyPress = [this](QChar key) {
    if (key == edit_rules::kEnter) AddFrom(*RzEdit3);
    return edit_rules::IsCodeKey(key);
  };
  RzEdit3->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) {
    const bool isArrow = key == Qt::Key_Left || key == Qt::Key_Up || key == Qt::Key_Right || key == Qt::Key_Down;
    if (isArrow) WalkList(key, modifiers);
    return isArrow;
  };
  Search->setPlaceholderText(QStringLiteral("按名称、拼音首字母查找"));
  Search->setAccessibleName(Search->placeholderText());
  Search->OnKeyPress = [this](QChar key) {
    if (key == edit_rules::kEnter) AddFrom(*Search);
    return true;
  };
  Search->OnKeyDown = [this](int key, Qt::KeyboardModifiers modifiers) {
    const bool isArrow = key == Qt::Key_Up || key == Qt::Key_Down;
    if (isArrow) WalkList(key, modifiers);
    return isArrow;
  };
  for (EntryField* field : {RzEdit3, Search}) {
    connect(field, &QLineEdit::textChanged, this,
            [this] { GuardEvent(kUnit, QStringLiteral("RzEdit3Change"), [this] { RzEdit3Change(); }); });
  }
}

void StockPicker::InitButtons() {
  connect(RzComboBox1, &QComboBox::activated, this,
          [this] { GuardEvent(kUnit, QStringLiteral("RzComboBox1Change"), [this] { RzComboBox1Change(); }); });
  connect(btnAdd, &QPushButton::clicked, this,
          [this] { GuardEvent(kUnit, QStringLiteral("Label4Click"), [this] { Label4Click(); }); });
  connect(SpeedButton1, &QPushButton::clicked, this, [this] {
    PlaceKeypad();
    RzPanel7->setVisible(RzPanel7->isHidden());
  });
  RzPanel7->OnKey = [this](const QString& caption) {
    GuardEvent(kUnit, QStringLiteral("RzPanel11Click"), [&] { RzPanel11Click(caption); });
  };
}

void StockPicker::SelectSource(int place) {
  if (place < 0 || place >= RzComboBox1->count()) return;
  RzComboBox1->setCurrentIndex(place);
  RzComboBox1Change();
}

void StockPicker::RzComboBox1Change() {
  picks_.Clear();
  searchForms_.clear();
  ClearStrnGrd(*StringGrid2);
  holdings_.UpdateEditor();
  const CodeNumServices& codes = ModuleHost().CodeNums();
  std::vector<HoldingRow> stocks;
  for (const int number : CodeNumbersOf(RzComboBox1->currentIndex())) {
    const QString text = QString::number(number);
    if (number == kNoEntry || (!codes.IsShanghaiStock(text) && !codes.IsShenzhenStock(text))) continue;
    stocks.push_back({GetCodeCNum(text), codes.NameOf(text), {}, {}});
  }
  ShowStocks(stocks);
  Fit();
  RzEdit3Change();
}

void StockPicker::ShowStocks(const std::vector<HoldingRow>& stocks) {
  const GridBatch batch(*StringGrid2);
  StringGrid2->SetRowCount(static_cast<int>(stocks.size()));
  for (int row = 0; row < static_cast<int>(stocks.size()); ++row) {
    const HoldingRow& stock = stocks[static_cast<std::size_t>(row)];
    StringGrid2->SetCells(kCode, row, stock.code);
    StringGrid2->SetCells(kName, row, stock.name);
  }
}

void StockPicker::RzEdit3Change() {
  if (StringGrid2->IsEmpty()) return StringGrid2->SetEmptyText({});
  const QString digits = RzEdit3->text();
  const QString searched = SearchForm(Search->text());
  if (!searched.isEmpty() && searchForms_.empty())
    for (int row = 0; row < StringGrid2->RowCount(); ++row)
      searchForms_.push_back({SearchForm(StringGrid2->Cells(kName, row)), ReadingsOf(StringGrid2->Cells(kCode, row))});
  StringGrid2->ShowRows([&](int row) {
    const QString& code = StringGrid2->Cells(kCode, row);
    if (!code.startsWith(digits)) return false;
    if (searched.isEmpty() || code.contains(searched)) return true;
    const auto& [name, readings] = searchForms_[static_cast<std::size_t>(row)];
    return name.contains(searched) || edit_rules::IsTypedByInitials(readings, searched);
  });
  const int first = StringGrid2->GetVisualTopRow();
  if (first >= 0) StringGrid2->SelectCell(kCode, first);
  // Both fields count, and one may have been forgotten.
  QStringList sought;
  if (!digits.isEmpty()) sought << QStringLiteral("代码“%1”").arg(digits);
  if (!searched.isEmpty()) sought << QStringLiteral("名称“%1”").arg(Search->text().trimmed());
  StringGrid2->SetEmptyText(QStringLiteral("没有符合%1的股票").arg(sought.join(QStringLiteral("和"))));
}

void StockPicker::FocusFirstVisible() {
  const int first = StringGrid2->GetVisualTopRow();
  if (first >= 0) StringGrid2->SelectCell(kCode, first);
  StringGrid2->setFocus();
}

void StockPicker::AddFrom(EntryField& field) {
  if (StringGrid2->GetVisualTopRow() < 0) return;
  const QPointer<EntryField> alive(&field);
  // What has been typed since is meant, not what was picked before and is out of sight.
  picks_.IsEmpty() || picks_.IsOneShown() ? Label4Click() : static_cast<void>(Add(Selected()));
  // The next code can be typed at once.
  if (!alive.isNull()) field.selectAll();
}

void StockPicker::WalkList(int key, Qt::KeyboardModifiers modifiers) {
  StringGrid2->setFocus();
  QKeyEvent walk(QEvent::KeyPress, key, modifiers);
  QCoreApplication::sendEvent(StringGrid2, &walk);
}

void StockPicker::RzEdit3Enter() {
  ModuleHost().KeyCodes().SetCaptureEnabled(false);
}

void StockPicker::RzEdit3Exit() {
  ModuleHost().KeyCodes().SetCaptureEnabled(true);
}

void StockPicker::RzPanel11Click(const QString& caption) {
  if (caption == StockKeypad::kClearCaption) return RzEdit3->clear();
  RzEdit3Enter();
  if (caption.size() == 3 && caption != StockKeypad::kBackCaption) {
    RzEdit3->setText(caption);
    RzEdit3->setFocus();
    RzEdit3->setCursorPosition(static_cast<int>(caption.size()));
    return;
  }
  const bool isBack = caption == StockKeypad::kBackCaption;
  QKeyEvent press(QEvent::KeyPress, isBack ? Qt::Key_Backspace : Qt::Key_unknown, {}, isBack ? QString() : caption);
  QCoreApplication::sendEvent(RzEdit3, &press);
  // Although the code field may still have the focus: intended.
  RzEdit3Exit();
}

std::vector<HoldingRow> StockPicker::StocksIn(const std::function<bool(int row)>& isMeant) const {
  std::vector<HoldingRow> stocks;
  if (StringGrid2->IsEmpty()) return stocks;
  for (int row = 0; row < StringGrid2->RowCount(); ++row) {
    if (isMeant(row)) stocks.push_back({StringGrid2->Cells(kCode, row), StringGrid2->Cells(kName, row), {}, {}});
  }
  return stocks;
}

std::vector<HoldingRow> StockPicker::Selected() const {
  const GridRange selected = StringGrid2->Selection();
  return StocksIn([&](int row) { return selected.Contains(row) && StringGrid2->RowHeight(row) > 0; });
}

void StockPicker::Label4Click() {
  if (picks_.IsEmpty()) {
    Add(Selected());
  } else if (Add(StocksIn([this](int row) { return picks_.IsPicked(row); }))) {
    picks_.Clear();
  }
}

bool StockPicker::Add(const std::vector<HoldingRow>& stocks) {
  const QPointer<HoldingsEditor> alive(&holdings_);
  const auto close = qScopeGuard([this, alive] {
    if (alive.isNull()) return;
    holdings_.CalGridWidth();
    holdings_.UpdateEditor();
  });
  const std::size_t before = holdings_.Rows().size();
  for (HoldingRow stock : stocks) {
    const std::vector<HoldingRow> rows = holdings_.Rows();
    if (rows.size() >= kMostHoldings) {
      Tell(QStringLiteral("组合记录数应小于10"));
      return false;
    }
    const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.code == stock.code; });
    if (found != rows.end() && static_cast<std::size_t>(found - rows.begin()) < before) {
      Tell(stock.name + QStringLiteral("在组合里已经存在"));
      if (alive.isNull()) return false;
      continue;
    }
    stock.price = CurrentPriceText(stock.code);
    // One that comes twice in the same add comes twice into the portfolio: intended.
    holdings_.AddRow(found == rows.end() ? stock : *found);
  }
  return true;
}

void StockPicker::PlaceKeypad() {
  RzPanel7->adjustSize();
  // Above the button, over the list.
  const QPoint corner(SpeedButton1->geometry().right() - RzPanel7->width() + 1, RzEdit3->geometry().top());
  RzPanel7->move(std::max(corner.x(), 0), std::max(corner.y() - RzPanel7->height(), 0));
  RzPanel7->raise();
}

void StockPicker::resizeEvent(QResizeEvent* event) {
  FramePart::resizeEvent(event);
  PlaceKeypad();
}

void StockPicker::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  for (QWidget* control : Controls()) ApplyControlTheme(*control);
  StringGrid2->SetColors(ReadGridColors(ModuleHost().ColorTheme().Colors()));
  RzPanel7->ApplyTheme();
}

void StockPicker::Fit() {
  const int width = StringGrid2->ClientWidth();
  StringGrid2->SetColWidths({width / kColumns, width - width / kColumns});
}

}  // namespace holdwise
