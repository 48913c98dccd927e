// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAbstractItemDelegate>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyleOptionViewItem>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <vector>

#include "accessible_names.h"
#include "pages/host_pages.h"
#include "pages/notice_page.h"
#include "parts/process_parts.h"
#include "theme/theme_services.h"
#include "window/dialogs.h"
#include "window/help_dialogs.h"
#include "window/import_dialog.h"
#include "window/main_window.h"
#include "window/restore_dialog.h"
#include "window/urgent_notice.h"

namespace holdwise {
namespace {

/// Looks at the dialog that `show` opens and closes it with Escape.
void InDialog(const std::function<void()>& show, const std::function<void(QDialog&)>& look) {
  bool isSeen = false;
  QTimer::singleShot(50, qApp, [&] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    look(*dialog);
    isSeen = true;
    QTest::keyClick(dialog, Qt::Key_Escape);
  });
  show();
  EXPECT_TRUE(isSeen);
}

QPushButton* ButtonWith(const QWidget& parent, const QString& text) {
  for (QPushButton* button : parent.findChildren<QPushButton*>())
    if (button->text() == text) return button;
  return nullptr;
}

QString AllTexts(const QWidget& parent) {
  QString texts;
  for (const QLabel* label : parent.findChildren<QLabel*>()) texts += label->text() + QLatin1Char('\n');
  return texts;
}

TEST(About, HasLicenceVersionsAndPathsAndCopiesThem) {
  const auto show = [] {
    ShowAbout(nullptr, {{QStringLiteral("Qt"), QStringLiteral("6.4.2")},
                        {QStringLiteral("数据目录"), QStringLiteral("/home/user/market")}});
  };
  InDialog(show, [](QDialog& dialog) {
    const QString said = AllTexts(dialog);
    EXPECT_TRUE(said.contains(QStringLiteral("Holdwise 1.0.0")));
    EXPECT_TRUE(said.contains(QStringLiteral("MIT")));
    const auto* table = dialog.findChild<QTableWidget*>();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->item(1, 1)->text(), QStringLiteral("/home/user/market"));
    QPushButton* copy = ButtonWith(dialog, QStringLiteral("复制(&C)"));
    ASSERT_NE(copy, nullptr);
    QTest::mouseClick(copy, Qt::LeftButton);
    const QString copied = QGuiApplication::clipboard()->text();
    for (const char* part : {"Holdwise 1.0.0", "MIT", "Qt：6.4.2", "数据目录：/home/user/market"})
      EXPECT_TRUE(copied.contains(QString::fromUtf8(part))) << part;
    int named = 0;
    EXPECT_EQ(test::UnnamedControls(dialog, named).join('\n').toStdString(), "");
    EXPECT_GE(named, 3);
  });
}

TEST(Keys, EveryRowSaysWhereWhichAndWhatForAndNothingIsCut) {
  InDialog([] { ShowKeys(nullptr); },
           [](QDialog& dialog) {
             const auto* table = dialog.findChild<QTableWidget*>();
             ASSERT_NE(table, nullptr);
             ASSERT_EQ(table->columnCount(), 3);
             QStringList keys;
             for (int row = 0; row < table->rowCount(); ++row) {
               keys.append(table->item(row, 1)->text());
               for (int column = 0; column < 3; ++column) {
                 const QString text = table->item(row, column)->text();
                 EXPECT_FALSE(text.isEmpty()) << row;
                 const QModelIndex cell = table->model()->index(row, column);
                 QStyleOptionViewItem option;
                 option.initFrom(table);
                 option.features = QStyleOptionViewItem::WrapText;
                 option.rect = QRect(0, 0, table->columnWidth(column), 0);
                 const QSize needed = table->itemDelegate()->sizeHint(option, cell);
                 EXPECT_LE(needed.width(), table->columnWidth(column)) << text.toStdString();
                 EXPECT_LE(needed.height(), table->rowHeight(row)) << text.toStdString();
               }
             }
             for (const char* key : {"F1", "Ctrl+O", "Ctrl+Enter", "Ctrl+C", "Esc"})
               EXPECT_TRUE(keys.contains(QString::fromLatin1(key))) << key;
             int named = 0;
             EXPECT_EQ(test::UnnamedControls(dialog, named).join('\n').toStdString(), "");
             EXPECT_GE(named, 2);
           });
}

TEST(ToolbarPageTest, SaysWhatItIsForAndLeadsBack) {
  ToolbarPage page;
  int returns = 0;
  page.OnReturn = [&returns] { ++returns; };
  page.SetParameter({});
  page.resize(600, 300);
  page.show();
  QApplication::setActiveWindow(&page);
  EXPECT_TRUE(AllTexts(page).contains(QStringLiteral("没有打开任何工具。")));
  EXPECT_TRUE(AllTexts(page).contains(QStringLiteral("插件可以在这一页打开它自己的工具")));
  QPushButton* back = ButtonWith(page, QStringLiteral("返回(&B)"));
  ASSERT_NE(back, nullptr);
  QTest::mouseClick(back, Qt::LeftButton);
  EXPECT_EQ(returns, 1);
  QTest::keyClick(&page, Qt::Key_Escape);
  back->setFocus();
  QTest::keyClick(back, Qt::Key_Escape);
  EXPECT_EQ(returns, 3);
  page.SetParameter(QStringLiteral("基金"));
  EXPECT_TRUE(AllTexts(page).startsWith(QStringLiteral("参数：基金\n")));
}

TEST(NoticePageTest, CopiesItsCommandsAndDoesWhatItsButtonsSay) {
  int pressed = 0;
  NoticePage page(QStringLiteral("没有行情"), QStringLiteral("说明"), QStringLiteral("holdwise-market build"),
                  {{QStringLiteral("重新检查"), [&pressed] { ++pressed; }}});
  page.show();
  QPushButton* copy = ButtonWith(page, QStringLiteral("复制命令(&C)"));
  ASSERT_NE(copy, nullptr);
  QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
  QTest::mouseClick(copy, Qt::LeftButton);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("holdwise-market build"));
  QPushButton* again = ButtonWith(page, QStringLiteral("重新检查"));
  ASSERT_NE(again, nullptr);
  QTest::keyClick(again, Qt::Key_Space);
  EXPECT_EQ(pressed, 1);
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(page, named).join('\n').toStdString(), "");
  EXPECT_EQ(named, 3) << "the commands and two buttons";
}

TEST(NoticePageTest, WithoutCommandsThereIsNothingToCopy) {
  NoticePage page(QStringLiteral("没有插件"), QStringLiteral("说明"), QString(), {});
  EXPECT_EQ(page.findChild<QPlainTextEdit*>(), nullptr);
  EXPECT_TRUE(page.findChildren<QPushButton*>().isEmpty());
}

TEST(AccessibleNames, TheLogHasOne) {
  SystemClock clock;
  const QTemporaryDir folder;
  DebugLog log(folder.filePath("log"), clock);
  LogPage page(log);
  page.show();
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(page, named).join('\n').toStdString(), "");
  EXPECT_EQ(named, 1);
}

/// What a screen reader cannot name in the dialog that `show` opens; `least`: so many controls have a name.
void ExpectNames(const std::function<void()>& show, int least) {
  InDialog(show, [least](QDialog& dialog) {
    int named = 0;
    EXPECT_EQ(test::UnnamedControls(dialog, named).join('\n').toStdString(), "") << dialog.windowTitle().toStdString();
    EXPECT_GE(named, least) << dialog.windowTitle().toStdString();
  });
}

TEST(AccessibleNames, TheDialogsOfAnImportHaveThemAll) {
  ExpectNames(
      [] {
        ImportDialog(nullptr, {"p.csv", "第一行", "我的组合", 3}, [](const QString&) { return QString(); }).exec();
      },
      5);
  ExpectNames([] { ShowReport(nullptr, QStringLiteral("导入组合"), QStringLiteral("导入了 2 个组合。")); }, 2);
}

TEST(AccessibleNames, TheDialogsOfDamageAndRestoringHaveThemAll) {
  const auto preview = [](const QString&, bool) { return RestorePreview{QStringLiteral("甲：恢复"), true}; };
  ExpectNames(
      [&] {
        RestoreDialog(nullptr, {{"a.csv", "今天", "2", "4"}}, preview, [] { return QString(); }).exec();
      },
      7);
  ExpectNames(
      [] {
        UrgentNotice(nullptr, QStringLiteral("数据的位置不在了"), QStringLiteral("说明"),
                     QStringLiteral("另存全部组合(&S)…"), [] {})
            .exec();
      },
      2);
}

TEST(AccessibleNames, TheFileDialogsHaveThemAll) {
  for (const auto& ask : std::vector<std::function<QString()>>{
           [] { return AskForFile(nullptr); }, [] { return AskForFolder(nullptr); },
           [] { return AskForDataFolder(nullptr); }, [] { return AskForBackup(nullptr); },
           [] { return AskForNewFile(nullptr, QStringLiteral("组合.csv")); }})
    ExpectNames([&ask] { EXPECT_EQ(ask(), QString()); }, 8);
}

TEST(AccessibleNames, TheWindowHasThemAll) {
  class NoLog final : public DebugServers {
    void WriteLog(const QString& /*text*/) override {}
  } log;
  const ThemeServices theme(ThemeKind::Light, log);
  MainWindow window(theme, {});
  window.SetAddresses({QStringLiteral("投资组合"), QStringLiteral("日志")}, {QStringLiteral("投资组合")});
  window.OfferNewDay(QStringLiteral("换上(&N)"), {});
  window.SetIncomplete({QStringLiteral("甲：缺少行情")});
  window.ShowProgress(1, 2);
  window.show();
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(window, named).join('\n').toStdString(), "");
  EXPECT_GE(named, 8) << "three menus, a tab, progress, three buttons";
}

}  // namespace
}  // namespace holdwise
