// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSplitter>
#include <QStatusBar>
#include <QStyleOption>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QTreeView>
#include <functional>
#include <memory>
#include <vector>

#include "contrast.h"
#include "hung_file.h"
#include "pages/host_pages.h"
#include "parts/process_parts.h"
#include "parts/terminal_application.h"
#include "scripted_host.h"
#include "theme/theme_services.h"
#include "window/dialogs.h"
#include "window/main_window.h"
#include "window/message_boxes.h"
#include "window/terminal_style.h"
#include "window/title_frame.h"
#include "window/work_area.h"

namespace holdwise {
namespace {

class RecordingLog : public DebugServers {
 public:
  void WriteLog(const QString& text) override { lines.append(text); }
  QStringList lines;
};

// --- dialogs ---

/// In the dialog that comes up: chooses the folder in the list, presses Delete, agrees to what is asked, and leaves.
void PressDelete(QFileDialog& dialog, const QString& shown, const QString& chosen) {
  dialog.setDirectory(shown);
  auto* list = dialog.findChild<QListView*>("listView");
  ASSERT_NE(list, nullptr);
  const auto found = [&] {
    return list->model()->match(list->model()->index(0, 0, list->rootIndex()), Qt::DisplayRole, chosen);
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return found().size() == 1; }));
  list->setCurrentIndex(found().constFirst());
  list->setFocus();
  QTimer agree;
  QObject::connect(&agree, &QTimer::timeout, [&dialog] {
    QWidget* question = QApplication::activeModalWidget();
    if (auto* box = qobject_cast<QMessageBox*>(question); box != nullptr && box->button(QMessageBox::Yes) != nullptr)
      box->button(QMessageBox::Yes)->click();
    else if (question != &dialog)
      question->close();
  });
  agree.start(100);
  QTest::keyClick(list, Qt::Key_Delete);
  QTest::qWait(400);
}

TEST(DialogsTest, TheDeleteKeyTakesNothingAway) {
  for (const auto& ask : {AskForFile, AskForFolder}) {
    const QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath("work/log"));
    QTimer::singleShot(0, qApp, [&folder] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      if (dialog == nullptr) return;
      PressDelete(*dialog, folder.path(), "work");
      dialog->reject();
    });
    EXPECT_EQ(ask(nullptr), QString());
    EXPECT_TRUE(QDir(folder.filePath("work/log")).exists());
  }
}

TEST(DialogsTest, TheTitlesOfAllColumnsCanBeRead) {
  for (const auto& ask : {AskForFile, AskForFolder}) {
    QTimer::singleShot(100, qApp, [] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      const auto* list = dialog->findChild<QTreeView*>("treeView");
      const QHeaderView& header = *list->header();
      EXPECT_EQ(header.count(), 4);
      int width = 0;
      for (int column = 0; column < header.count(); ++column) {
        EXPECT_GE(header.sectionSize(column), header.sectionSizeHint(column)) << column;
        width += header.sectionSize(column);
      }
      EXPECT_LE(width, list->viewport()->width()) << "nothing has to be scrolled for";
      EXPECT_GE(header.sectionSize(0), 200) << "room for names";
      dialog->reject();
    });
    EXPECT_EQ(ask(nullptr), QString());
  }
}

/// Of a file that does not answer only the name is looked at.
TEST(DialogsTest, AFileThatDoesNotAnswerStopsNothing) {
  const QTemporaryDir folder;
  for (const char* name : {"unknown", "p.csv"}) ASSERT_TRUE(QFile(folder.filePath(name)).open(QIODevice::WriteOnly));
  test::HungFile file(folder.filePath("unknown"));
  if (!file.IsHung()) GTEST_SKIP() << "no leases here";
  QElapsedTimer timer;
  QTimer::singleShot(0, qApp, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    timer.start();
    dialog->setDirectory(folder.path());
    auto* list = dialog->findChild<QListView*>("listView");
    EXPECT_TRUE(QTest::qWaitFor([list] { return list->model()->rowCount(list->rootIndex()) == 1; })) << "the table";
    QTest::qWait(200);
    dialog->reject();
  });
  EXPECT_EQ(AskForFile(nullptr), QString());
  EXPECT_LT(timer.elapsed(), 5000);
}

/// What a person reads in a widget and all that is in it, with its tool tips.
QStringList TextsIn(const QWidget& widget) {
  QStringList texts{widget.windowTitle()};
  for (const QWidget* child : widget.findChildren<QWidget*>()) {
    if (child->isHidden()) continue;
    texts << child->toolTip();
    if (const auto* label = qobject_cast<const QLabel*>(child)) texts << label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(child)) texts << button->text();
    if (const auto* header = qobject_cast<const QHeaderView*>(child)) {
      for (int column = 0; column < header->count(); ++column)
        texts << header->model()->headerData(column, Qt::Horizontal).toString();
    }
  }
  for (const QAction* action : widget.findChildren<QAction*>()) texts << action->text() << action->toolTip();
  texts.removeAll(QString());
  return texts;
}

/// Words of two Latin letters or more; keys and names of file types are no words.
QStringList EnglishIn(const QStringList& texts) {
  static const QRegularExpression word(QStringLiteral("[A-Za-z]{2,}"));
  QStringList found;
  for (QString text : texts) {
    text.remove(QRegularExpression(QStringLiteral("<[^>]*>|Ctrl|Alt|Shift|\\*\\.[a-z]+|/\\S+")));
    if (text.contains(word)) found << text;
  }
  return found;
}

TEST(DialogsTest, FileDialogsAndTheLogsMenuSpeakChinese) {
  TerminalApplication::Translate();
  const std::unique_ptr<QTranslator> translator(qApp->findChild<QTranslator*>());
  ASSERT_NE(translator, nullptr);
  const auto askForNew = [](QWidget* window) { return AskForNewFile(window, QStringLiteral("组合.csv")); };
  const std::vector<std::function<QString(QWidget*)>> all{AskForFile, AskForFolder, AskForDataFolder, askForNew,
                                                          AskForBackup};
  for (const auto& ask : all) {
    QTimer::singleShot(200, qApp, [] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      const QStringList texts = TextsIn(*dialog);
      EXPECT_GT(texts.size(), 15);
      EXPECT_EQ(EnglishIn(texts), QStringList());
      dialog->reject();
    });
    (void)ask(nullptr);
  }
  SystemClock clock;
  const QTemporaryDir folder;
  DebugLog log(folder.filePath("log"), clock);
  LogPage page(log);
  const std::unique_ptr<QMenu> menu(page.createStandardContextMenu());
  QStringList texts;
  for (const QAction* action : menu->actions()) texts << action->text();
  EXPECT_EQ(EnglishIn(texts), QStringList());
}

// --- widgets ---

TEST(WorkAreaTest, ShowsOneFrameAndFillsItself) {
  auto area = std::make_unique<WorkArea>();
  area->resize(400, 300);
  area->show();
  int painted = 0;
  area->OnFirstPaint = [&painted] { ++painted; };
  QWidget first;
  QWidget second;
  area->ShowFrame(&first);
  EXPECT_EQ(first.size(), QSize(400, 300));
  ASSERT_TRUE(QTest::qWaitFor([&] { return painted == 1; }, 30000));
  area->resize(500, 350);
  QCoreApplication::processEvents();
  EXPECT_EQ(first.size(), QSize(500, 350));
  area->ShowFrame(&second);
  EXPECT_EQ(first.parentWidget(), nullptr);
  EXPECT_EQ(area->Frame(), &second);
  second.setParent(nullptr);
  EXPECT_EQ(area->Frame(), nullptr);
  area->ShowFrame(&second);
  area.reset();
  EXPECT_EQ(second.parentWidget(), nullptr);
  EXPECT_EQ(painted, 1);
}

TEST(TitleFrameTest, KeepsPanesWideEnough) {
  RecordingLog log;
  const ThemeServices theme(ThemeKind::Dark, log);
  const std::unique_ptr<TFrmQMTitle> frame = MakeTitleFrame(theme);
  auto* splitter = new QSplitter(frame->ClientPanel());
  splitter->addWidget(new QWidget);
  splitter->addWidget(new QWidget);
  splitter->resize(800, 100);
  splitter->show();
  splitter->setSizes({10, 790});
  frame->SplitterMoved(splitter);
  EXPECT_EQ(splitter->sizes().at(0), 120);
  splitter->setSizes({300, 490});
  const QList<int> chosen = splitter->sizes();
  frame->SplitterMoved(splitter);
  EXPECT_EQ(splitter->sizes(), chosen);
}

TEST(MessageBoxesTest, AnswersOneForOkAndTwoForCancelOrClosing) {
  MessageBoxes boxes;
  QStringList buttons;
  const auto answerWith = [&](int key) {
    QTimer::singleShot(0, qApp, [&, key] {
      QWidget* box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr);
      buttons.clear();
      for (const QPushButton* button : box->findChildren<QPushButton*>()) buttons.append(button->text());
      QTest::keyClick(box, static_cast<Qt::Key>(key));
    });
  };
  answerWith(Qt::Key_Return);
  EXPECT_EQ(boxes.Vex_MessageBox("text", "caption", 1, 128), 1);
  answerWith(Qt::Key_Return);
  EXPECT_EQ(boxes.Vex_MessageBox("text", "caption", 1, 32), 2) << "a question is not agreed to by accident";
  buttons.sort();
  EXPECT_EQ(buttons, QStringList({"取消", "确定"}));
  answerWith(Qt::Key_Escape);
  EXPECT_EQ(boxes.Vex_MessageBox("text", "caption", 1, 32), 2);
  answerWith(Qt::Key_Return);
  EXPECT_EQ(boxes.Vex_MessageBox("text", "caption", 0, 128), 1);
  EXPECT_EQ(buttons, QStringList{"确定"});
}

// --- window ---

// A part of the user interface needs 3 : 1, as WCAG 2.1 has it.
TEST(TerminalStyleTest, ABoxToTickIsSeenInEitherTheme) {
  RecordingLog log;
  TerminalStyle style;
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    const QPalette palette = ThemeServices(kind, log).WindowPalette();
    for (const QStyle::PrimitiveElement element : {QStyle::PE_IndicatorCheckBox, QStyle::PE_IndicatorRadioButton}) {
      QImage picture(16, 16, QImage::Format_RGB32);
      picture.fill(palette.color(QPalette::Window));
      QStyleOptionButton option;
      option.rect = picture.rect();
      option.palette = palette;
      option.state = QStyle::State_Enabled | QStyle::State_Off;
      QPainter painter(&picture);
      style.drawPrimitive(element, &option, &painter, nullptr);
      EXPECT_GE(Contrast(picture.pixelColor(0, 8), palette.color(QPalette::Window)), 3)
          << ThemeKindName(kind).toStdString() << ' ' << element;
    }
  }
}

// No control, so it may be quieter: but in neither theme may a menu run into the page below it.
TEST(TerminalStyleTest, TheOutlineOfAMenuIsSeenInEitherTheme) {
  RecordingLog log;
  TerminalStyle style;
  QMenu menu;
  for (const ThemeKind kind : {ThemeKind::Dark, ThemeKind::Light}) {
    const QPalette palette = ThemeServices(kind, log).WindowPalette();
    QImage picture(40, 40, QImage::Format_RGB32);
    picture.fill(palette.color(QPalette::Window));
    QStyleOption option;
    option.rect = picture.rect();
    option.palette = palette;
    QPainter painter(&picture);
    style.drawPrimitive(QStyle::PE_FrameMenu, &option, &painter, &menu);
    for (const QPoint edge : {QPoint(0, 20), QPoint(39, 20), QPoint(20, 0), QPoint(20, 39)})
      EXPECT_GE(Contrast(picture.pixelColor(edge), palette.color(QPalette::Window)), 2)
          << ThemeKindName(kind).toStdString() << ' ' << edge.x() << ',' << edge.y();
  }
}

TEST(MainWindowTest, OffersANewDayInTheStatusBar) {
  RecordingLog log;
  const ThemeServices theme(ThemeKind::Dark, log);
  WindowActions actions;
  int taken = 0;
  actions.takeNewDay = [&taken] { ++taken; };
  MainWindow window(theme, actions);
  window.show();
  auto* button = window.statusBar()->findChild<QPushButton*>("newDay");
  ASSERT_NE(button, nullptr);
  EXPECT_FALSE(button->isVisible());
  window.OfferNewDay("新的一天(&N)", "等待");
  EXPECT_TRUE(button->isVisible());
  EXPECT_EQ(button->text(), "新的一天(&N)");
  EXPECT_EQ(button->toolTip(), "等待");
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(taken, 1);
  window.OfferNewDay({}, {});
  EXPECT_FALSE(button->isVisible());
}

TEST(MainWindowTest, TheColoursOfRisesAndFallsAreChosenInTheViewMenu) {
  RecordingLog log;
  ThemeServices theme(ThemeKind::Dark, log);
  WindowActions actions;
  actions.setRiseFall = [&theme](RiseFall choice) { theme.SetRiseFall(choice); };
  MainWindow window(theme, actions);
  theme.OnChanged = [&window] { window.ShowTheme(); };
  window.ShowTheme();
  window.show();
  window.SetIndices({{"上证指数", 101, 100}, {"深证成指", 99, 100}, {"沪深300", 100, 100}});
  QMenu* menu = nullptr;
  for (auto* one : window.findChildren<QMenu*>())
    if (one->title() == "涨跌颜色(&C)") menu = one;
  ASSERT_NE(menu, nullptr);
  const auto state = [&] {
    QStringList checked;
    for (const QAction* action : menu->actions())
      if (action->isChecked()) checked << action->text();
    const auto colour = [&](const char* name) {
      const QString text = window.statusBar()->findChild<QLabel*>(name)->text();
      return QRegularExpression("color:(#[0-9a-f]{6})").match(text).captured(1);
    };
    return checked << colour("index0") << colour("index1");
  };
  const QString red = theme.ColorOfChange(1).name();
  const QString green = theme.ColorOfChange(-1).name();
  EXPECT_EQ(state(), QStringList({"红涨绿跌(&R)", red, green}));
  menu->popup({0, 0});
  QTest::keyClick(menu, Qt::Key_G);
  EXPECT_EQ(state(), QStringList({"绿涨红跌(&G)", green, red})) << "at once";
  menu->popup({0, 0});
  QTest::keyClick(menu, Qt::Key_N);
  const QString plain = theme.Colors().ColorOf("Grid_UnSelTxtColor").name();
  EXPECT_EQ(state(), QStringList({"不着色(&N)", plain, plain}));
}

}  // namespace
}  // namespace holdwise
