// SPDX-License-Identifier: MIT
#include "window/help_dialogs.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "window/app_icon.h"

namespace holdwise {
namespace {

constexpr int kIconSize = 64;
constexpr int kDialogWidth = 720;
constexpr int kMostRowsShown = 20;
constexpr int kColumnGap = 16;

struct Key {
  const char* where;
  const char* key;
  const char* does;
};
constexpr Key kKeys[] = {
    {"全部页面", "F1", "这张表"},
    {"全部页面", "Ctrl+O", "导入组合或券商持仓表"},
    {"全部页面", "Ctrl+S", "导出全部视图的图片和表格"},
    {"全部页面", "Ctrl+Q", "退出"},
    {"全部页面", "Alt+F、Alt+V、Alt+H", "打开文件、视图、帮助菜单"},
    {"全部页面", "Tab、Shift+Tab", "到下一处、上一处"},
    {"投资组合", "F6、Shift+F6", "到下一栏、上一栏：导航、列表、持仓"},
    {"全部页面", "数字、字母", "按代码、名称的拼音首字母找股票；Esc 放弃"},
    {"找到的股票", "Enter", "打开分时走势"},
    {"找到的股票", "Ctrl+Enter", "加入自选，或从自选移出"},
    {"分时走势", "←、→", "十字线前后移动一分钟"},
    {"分时走势", "Esc", "回到原来的页面"},
    {"全部页面", "Alt+N", "有新一天的行情时：现在就换上"},
    {"页签（有焦点时）", "←、→", "前一页、后一页"},
    {"左边的导航", "↑、↓", "上一个、下一个视图"},
    {"左边的导航", "←、→", "到所属的组、到组里的第一个视图"},
    {"表格", "↑、↓、PageUp、PageDown、Home、End", "选择一行"},
    {"表格", "Ctrl+C", "复制选中的行，连同标题；可粘贴到电子表格软件"},
    {"表格", "Ctrl+Shift+C", "复制整张表格，连同标题"},
    {"表格", "鼠标右键、菜单键", "菜单：复制单元格、行、表格；这一行的操作"},
    {"组合列表", "Enter", "到它的持仓；在自选配置中修改它"},
    {"组合列表", "Delete", "删除组合（先询问；组合表现、自选配置）"},
    {"组合列表上方的筛选", "↓、Enter；Esc", "到列表；重新列出全部（20 个组合起有此框）"},
    {"持仓表", "Enter", "打开分时走势"},
    {"自选配置", "Ctrl+Enter", "确定"},
    {"自选配置的持仓表", "Ctrl+V", "粘贴代码、数量、价格各列"},
    {"自选配置的组合表", "F4、F2、Delete", "保存、修改、删除"},
    {"导入、导出、计算中", "Esc", "取消"},
};

QTableWidget* TableOf(const std::vector<QStringList>& rows, const QStringList& titles) {
  auto* table = new QTableWidget(static_cast<int>(rows.size()), static_cast<int>(rows.front().size()));
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  table->verticalHeader()->hide();
  table->setHorizontalHeaderLabels(titles);
  table->horizontalHeader()->setVisible(!titles.isEmpty());
  table->horizontalHeader()->setHighlightSections(false);
  table->setShowGrid(false);
  table->setWordWrap(true);
  for (int row = 0; row < table->rowCount(); ++row) {
    for (int column = 0; column < table->columnCount(); ++column) {
      const QString& text = rows[static_cast<std::size_t>(row)][column];
      auto* item = new QTableWidgetItem(text);
      item->setToolTip(text);
      table->setItem(row, column, item);
    }
  }
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table->resizeColumnsToContents();
  for (int column = 0; column < table->columnCount(); ++column)
    table->setColumnWidth(column, table->columnWidth(column) + kColumnGap);
  const int shown = std::min(table->rowCount(), kMostRowsShown);
  table->setMinimumHeight(table->verticalHeader()->defaultSectionSize() * (shown + (titles.isEmpty() ? 0 : 1)) + 4);
  return table;
}

/// As wide as all of the table's texts, as far as the screen goes; where that is not far enough, rows get higher.
void ShowWhole(QDialog& dialog, QTableWidget& table, const QWidget* window) {
  constexpr int kBorders = 40;
  int width = kBorders + table.verticalScrollBar()->sizeHint().width();
  for (int column = 0; column < table.columnCount(); ++column) width += table.columnWidth(column);
  const int most = (window == nullptr ? dialog.screen() : window->screen())->availableGeometry().width() - kBorders;
  dialog.resize(std::clamp(width, kDialogWidth, std::max(kDialogWidth, most)), dialog.sizeHint().height());
  table.horizontalHeader()->setStretchLastSection(true);
  QObject::connect(table.horizontalHeader(), &QHeaderView::sectionResized, &table, &QTableWidget::resizeRowsToContents);
}

QDialogButtonBox* CloseButton(QDialog& dialog) {
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(QStringLiteral("确定"), QDialogButtonBox::AcceptRole);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  return buttons;
}

}  // namespace

void ShowAbout(QWidget* window, const Lines& facts) {
  QDialog dialog(window);
  dialog.setWindowTitle(QStringLiteral("关于"));
  auto* layout = new QVBoxLayout(&dialog);
  auto* head = new QHBoxLayout;
  auto* icon = new QLabel;
  icon->setPixmap(AppIcon().pixmap(kIconSize));
  head->addWidget(icon);
  const QString about = QStringLiteral(
      "Holdwise 1.0.0\n投资组合终端：沪深 A 股组合的配置、跟踪与评价。\n"
      "按 MIT 许可证发布（见随源代码的 LICENSE），不提供任何担保；所示数据不构成投资建议。");
  auto* text = new QLabel(about);
  text->setTextFormat(Qt::PlainText);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  head->addWidget(text, 1);
  layout->addLayout(head);
  std::vector<QStringList> rows;
  QString all = about;
  for (const auto& [what, how] : facts) {
    rows.push_back({what, how});
    all += QLatin1Char('\n') + what + QStringLiteral("：") + how;
  }
  QTableWidget* table = TableOf(rows, {});
  table->setAccessibleName(QStringLiteral("版本和位置"));
  layout->addWidget(table);
  QDialogButtonBox* buttons = CloseButton(dialog);
  QPushButton* copy = buttons->addButton(QStringLiteral("复制(&C)"), QDialogButtonBox::ActionRole);
  QObject::connect(copy, &QPushButton::clicked, &dialog, [all] { QGuiApplication::clipboard()->setText(all); });
  layout->addWidget(buttons);
  ShowWhole(dialog, *table, window);
  dialog.exec();
}

void ShowKeys(QWidget* window) {
  QDialog dialog(window);
  dialog.setWindowTitle(QStringLiteral("键盘"));
  auto* layout = new QVBoxLayout(&dialog);
  std::vector<QStringList> rows;
  for (const Key& key : kKeys)
    rows.push_back({QString::fromUtf8(key.where), QString::fromUtf8(key.key), QString::fromUtf8(key.does)});
  QTableWidget* table = TableOf(rows, {QStringLiteral("在哪里"), QStringLiteral("键"), QStringLiteral("做什么")});
  table->setAccessibleName(QStringLiteral("键盘"));
  layout->addWidget(table);
  layout->addWidget(CloseButton(dialog));
  ShowWhole(dialog, *table, window);
  dialog.exec();
}

}  // namespace holdwise
