// SPDX-License-Identifier: MIT
#include "portfolio_band.h"

#include <QMenu>
#include <QSplitter>
#include <QVBoxLayout>

#include "common/frames/frame_parts.h"
#include "common/frames/portfolio_list.h"
#include "common/grid/operation_picture.h"
#include "common/host/event_guard.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "portfolio_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zxpz");
const QString kListPlace = QStringLiteral("list");
const QString kHoldingsPlace = QStringLiteral("holdings");
constexpr int kDetailWidth = 190;
constexpr int kSplitterWidth = 5;
constexpr int kLeastListWidth = 300;
constexpr int kLeastDetailWidth = 120;

void Call(const std::function<void(int row)>& handler, int row) {
  if (handler) handler(row);
}

}  // namespace

PortfolioBand::PortfolioBand(QWidget* parent)
    : FramePart(parent),
      Splitter1(new QSplitter(Qt::Horizontal, this)),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kUnsavedPortfolios,
                               .columns = editor::PortfolioTable(),
                               .keyColumn = editor::kNumber,
                               .emptyText = [] { return QStringLiteral("暂无未保存的组合，请在上方选股建立"); },
                               .nameColumn = editor::kName},
                              Splitter1)),
      detailPanel_(new QWidget(Splitter1)),
      details_(new TStringGrid(kUnit, QStringLiteral("StringGrid1"), detailPanel_)),
      detailHeader_(new HeaderStrip(*details_, editor::DetailTable(), detailPanel_)),
      links_(list_->Grid(), editor::kOperation,
             {{.normal = SavePicture(false),
               .pressed = SavePicture(true),
               .hint = QStringLiteral("保存"),
               .onPress = [this](int row) { Call(OnSave, row); }},
              {.normal = DeletePicture(false),
               .pressed = DeletePicture(true),
               .hint = QStringLiteral("删除"),
               .onPress = [this](int row) { Call(OnDelete, row); }},
              {.normal = ModifyPicture(false),
               .pressed = ModifyPicture(true),
               .hint = QStringLiteral("修改"),
               .onPress = [this](int row) { Call(OnModify, row); },
               .staysPressed = true}},
             CellButtons::Places::FromLeft) {
  setObjectName(QStringLiteral("RzPanel2"));
  details_->setAccessibleName(QStringLiteral("成分股"));
  Splitter1->setObjectName(QStringLiteral("ZXPZ.Splitter1"));
  Splitter1->setHandleWidth(kSplitterWidth);
  Splitter1->setChildrenCollapsible(false);
  StackedIn(*this)->addWidget(Splitter1);
  BuildDetails();

  list_->setMinimumWidth(kLeastListWidth);
  Splitter1->setStretchFactor(0, 1);
  Splitter1->setStretchFactor(1, 0);
  Splitter1->setSizes({kLeastListWidth, kDetailWidth});
  list_->SetButtons(links_);
  list_->Grid().setFocusPolicy(Qt::StrongFocus);
  // What a picture does, without the mouse.
  list_->OnEnter = [this](int row) { Call(OnModify, row); };
  list_->OnDelete = [this](int row) { Call(OnDelete, row); };
  list_->OnKey = [this](int key, int row) {
    if (key == Qt::Key_F2) Call(OnModify, row);
    if (key == Qt::Key_F4) Call(OnSave, row);
  };
  list_->OnClear = [this] { ClearStrnGrd(*details_); };
  list_->OnFill = [this](const ResultSet& portfolios) { editor::ShowPortfolios(portfolios, list_->Grid()); };
  list_->OnShow = [this](int row) { ShowDetails(row); };
  list_->OnMenu = [this](QMenu& menu, int row) { FillMenu(menu, row); };
}

void PortfolioBand::BuildDetails() {
  auto* layout = StackedIn(*detailPanel_);
  layout->addWidget(detailHeader_);
  layout->addWidget(details_, 1);
  detailPanel_->setMinimumWidth(kLeastDetailWidth);
  detailPanel_->resize(kDetailWidth, height());
  details_->OnClientWidthChanged = [this](int) { detailHeader_->FitColumns(); };
}

TStringGrid& PortfolioBand::List() const {
  return list_->Grid();
}

void PortfolioBand::UpdateGrid_() {
  list_->ReflashData();
}

void PortfolioBand::SetTitles(const editor::Captions& captions) {
  list_->SetTitles(captions.list);
  detailHeader_->SetTitles(captions.details);
}

int PortfolioBand::TitleWidth() const {
  return list_->TitleWidth();
}

void PortfolioBand::ShowDetails(int row) {
  if (row < 0) return;
  QString statement;
  // A name that no statement can hold must not keep the page from opening.
  if (!GuardEvent(kUnit, QStringLiteral("ShowDetails"),
                  [&] { statement = sql::PortfolioByName(List().Cells(editor::kName, row)); })) {
    return ClearStrnGrd(*details_);
  }
  const auto id = Database().Count(statement);
  if (id < 0) return;
  editor::ShowDetails(Database().Query(sql::HoldingsOf(QString::number(id))), *details_);
}

void PortfolioBand::FillMenu(QMenu& menu, int row) {
  const auto add = [&](const QString& text, const std::function<void(int row)>& act) {
    connect(menu.addAction(text), &QAction::triggered, this,
            [act, row] { GuardEvent(kUnit, QStringLiteral("FillMenu"), [&] { Call(act, row); }); });
  };
  add(QStringLiteral("保存\tF4"), OnSave);
  add(QStringLiteral("修改\tF2"), OnModify);
  add(QStringLiteral("删除\tDelete"), OnDelete);
}

void PortfolioBand::SelectRow(int row) {
  (void)list_->SelectRow(row);
}

void PortfolioBand::KeepSelection() {
  list_->KeepSelection();
}

std::vector<QWidget*> PortfolioBand::TabStops() const {
  return list_->TabStops();
}

void PortfolioBand::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  SetPanelColor(*Splitter1, ThemeBackground());
  SetPanelColor(*detailPanel_, ThemeBackground());
  list_->ApplyTheme();
  detailHeader_->ApplyTheme();
}

void PortfolioBand::Fit() {
  list_->Fit();
  detailHeader_->FitColumns();
}

std::vector<const TStringGrid*> PortfolioBand::Grids() const {
  return {&List(), details_};
}

QStringList PortfolioBand::PortfolioIds() const {
  return list_->PortfolioIds();
}

bool PortfolioBand::SelectPortfolio(const QString& portfolioId) {
  return list_->SelectPortfolio(portfolioId);
}

QString PortfolioBand::HoldingsGridName() const {
  return details_->objectName();
}

QVariantMap PortfolioBand::Place() const {
  return {{kListPlace, list_->Place()}, {kHoldingsPlace, PlaceIn(*details_)}};
}

void PortfolioBand::PutPlace(const QVariantMap& place) {
  list_->PutPlace(place.value(kListPlace).toMap());
  PutPlaceIn(*details_, place.value(kHoldingsPlace).toMap());
}

}  // namespace holdwise
