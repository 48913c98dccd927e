// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDataStream>
#include <QFile>
#include <QFileDialog>
#include <QIcon>
#include <QLineEdit>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <limits>
#include <set>
#include <string>
#include <utility>

#include "process/settings_file.h"
#include "window/app_icon.h"
#include "window/dialogs.h"
#include "window/splitter_memory.h"
#include "window/window_place.h"

namespace holdwise {
namespace {

class SettingsTest : public testing::Test {
 protected:
  [[nodiscard]] QString Path() const { return folder_.filePath(QStringLiteral("settings.ini")); }
  void Write(const QByteArray& text) const {
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
  }
  [[nodiscard]] static QByteArray Bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
  }
  const QTemporaryDir folder_;
};

TEST_F(SettingsTest, AMissingFileIsWellAndSoIsOneThatWasWritten) {
  EXPECT_EQ(SetAsideIfDamaged(Path()), QString());
  {
    QSettings settings(Path(), QSettings::IniFormat);
    settings.setValue("address", QStringLiteral("投资组合"));
    settings.setValue("geometry", QByteArray("\x01\xd9\x00\xff\n=[", 7));
    settings.setValue("splitters/Splitter1", QVariantList{174, 900});
  }
  EXPECT_EQ(SetAsideIfDamaged(Path()), QString());
  const QSettings back(Path(), QSettings::IniFormat);
  EXPECT_EQ(back.value("address").toString(), QStringLiteral("投资组合"));
  EXPECT_EQ(back.value("splitters/Splitter1").toList().value(1).toInt(), 900);
}

TEST_F(SettingsTest, ADamagedFileIsKeptUnderAnotherNameAndSaid) {
  for (const QByteArray& damaged :
       {QByteArray("\x00\x01theme=light\n", 14), QByteArray("theme=light\nno settings at all\n"),
        QByteArray("[General]\naddress=\xb9\xc9\n"), QByteArray((1 << 20) + 1, 'x')}) {
    Write(damaged);
    const QString said = SetAsideIfDamaged(Path());
    EXPECT_TRUE(said.contains(Path() + "”已损坏")) << said.toStdString();
    EXPECT_FALSE(QFile::exists(Path()));
    EXPECT_EQ(Bytes(Path() + ".damaged"), damaged);
  }
}

TEST_F(SettingsTest, ASplitterStandsWhereItWasDraggedTo) {
  QSettings settings(Path(), QSettings::IniFormat);
  const SplitterMemory memory(settings);
  const auto show = [](QSplitter& splitter, const char* name, int width) {
    splitter.setObjectName(QString::fromLatin1(name));
    splitter.addWidget(new QWidget);
    splitter.addWidget(new QWidget);
    splitter.setStretchFactor(1, 1);
    splitter.resize(width, 100);
    splitter.show();
    QTest::qWait(20);
  };
  {
    QSplitter first;
    show(first, "edge", 1000);
    QTest::mousePress(first.handle(1), Qt::LeftButton, {}, {1, 50});
    QTest::mouseMove(first.handle(1), {301 - first.sizes()[0], 50});
    QTest::mouseRelease(first.handle(1), Qt::LeftButton, {}, {1, 50});
    ASSERT_NEAR(first.sizes()[0], 300, 3);
  }
  const QList<int> kept = [&] {
    QSplitter again;
    show(again, "edge", 1400);
    return again.sizes();
  }();
  EXPECT_NEAR(kept[0], 300, 3) << "in a wider window, too";
  EXPECT_GT(kept[1], 1000);
  settings.setValue("splitters/edge", QVariantList{0, 5});
  QSplitter bad;
  show(bad, "edge", 1000);
  EXPECT_GT(bad.sizes()[0], 0) << "what cannot be is left alone";
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const auto& [first, second] : {std::pair{kMost, 1}, {1, kMost}, {kMost, kMost}, {1000, 1}}) {
    settings.setValue("splitters/edge", QVariantList{first, second});
    QSplitter large;
    show(large, "edge", 1000);
    EXPECT_GE(large.sizes()[0], 1) << first << ' ' << second;
    EXPECT_GE(large.sizes()[1], 100) << first << ' ' << second;
  }
  settings.setValue("splitters/three", QVariantList{kMost, kMost, kMost});
  QSplitter three;  // none is fixed
  three.addWidget(new QWidget);
  show(three, "three", 1000);
  for (const int size : three.sizes()) EXPECT_GT(size, 200);
}

/// As QWidget::saveGeometry writes it.
QByteArray SavedPlace(const QRect& place, bool isMaximized = false) {
  QByteArray saved;
  QDataStream stream(&saved, QIODevice::WriteOnly);
  stream.setVersion(QDataStream::Qt_4_0);
  stream << quint32{0x1D9D0CB} << quint16{3} << quint16{0} << place << place << qint32{0} << quint8{isMaximized}
         << quint8{0} << qint32{QGuiApplication::primaryScreen()->geometry().width()} << place;
  return saved;
}

TEST_F(SettingsTest, AWindowComesBackInAUsableSizeOnTheScreen) {
  for (const QRect& place :
       {QRect(100, 100, 1, 1), QRect(100, 100, -500, -500), QRect(0, 0, 2'000'000'000, 2'000'000'000),
        QRect(-90'000, -90'000, 600, 500), QRect(50'000, 50'000, 600, 500), QRect(50, 60, 640, 480)}) {
    for (const bool isMaximized : {false, true}) {
      QWidget window;
      window.resize(700, 550);
      RestorePlace(window, SavedPlace(place, isMaximized));
      const QRect screen = window.screen()->availableGeometry();
      for (const bool isShown : {false, true}) {
        window.setVisible(isShown);
        if (isShown) window.showNormal();
        QTest::qWait(1);
        const QRect got = window.geometry();
        const std::string which = QStringLiteral("%1, %2: %3 %4 %5 %6")
                                      .arg(place.width())
                                      .arg(isMaximized)
                                      .arg(got.x())
                                      .arg(got.y())
                                      .arg(got.width())
                                      .arg(got.height())
                                      .toStdString();
        EXPECT_TRUE(screen.contains(got)) << which;
        EXPECT_GE(got.width(), 480) << which;
        EXPECT_GE(got.height(), 320) << which;
      }
    }
  }
  QWidget well;
  RestorePlace(well, SavedPlace({50, 60, 640, 480}));
  EXPECT_EQ(well.size(), QSize(640, 480)) << "what can be is kept";
}

TEST_F(SettingsTest, AnEdgeBetweenAnUpperAndALowerPaneIsRememberedFromAbove) {
  QSettings settings(Path(), QSettings::IniFormat);
  const SplitterMemory memory(settings);
  const auto show = [](QSplitter& splitter, int height) {
    splitter.setObjectName(QStringLiteral("across"));
    splitter.setHandleWidth(0);
    for (int pane = 0; pane < 2; ++pane) splitter.addWidget(new QWidget);
    splitter.setStretchFactor(1, 1);
    splitter.setSizes({201, 201});
    splitter.resize(300, height);
    splitter.show();
    QTest::qWait(20);
  };
  {
    QSplitter first(Qt::Vertical);
    show(first, 600);
    QWidget& edge = *first.handle(1);
    const QPoint middle = edge.rect().center();
    QTest::mousePress(&edge, Qt::LeftButton, {}, middle);
    QTest::mouseMove(&edge, middle + QPoint(0, 99));
    QTest::mouseRelease(&edge, Qt::LeftButton, {}, middle + QPoint(0, 99));
    ASSERT_NEAR(first.sizes()[0], 300, 2);
  }
  QSplitter again(Qt::Vertical);
  show(again, 900);
  EXPECT_NEAR(again.sizes()[0], 300, 2) << "in a higher window, too";
}

TEST_F(SettingsTest, AFileDialogOpensWhereItWasLast) {
  QSettings settings(Path(), QSettings::IniFormat);
  KeepDialogFoldersIn(&settings);
  ASSERT_TRUE(QDir(folder_.path()).mkpath("deep/er"));
  QFile file(folder_.filePath("deep/er/p.csv"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  QString shown;
  const auto inDialog = [&](const std::function<void(QFileDialog&)>& act) {
    QTimer::singleShot(100, qApp, [&shown, act] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      shown = dialog->directory().absolutePath();
      act(*dialog);
    });
  };
  inDialog([&](QFileDialog& dialog) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(file.fileName());
    QTest::keyClick(name, Qt::Key_Return);
    QTimer::singleShot(3000, &dialog, [&dialog] { dialog.reject(); });
  });
  EXPECT_EQ(AskForFile(nullptr), file.fileName());
  inDialog([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(AskForFile(nullptr), QString());
  EXPECT_EQ(shown, folder_.filePath("deep/er"));
  EXPECT_EQ(settings.value("folders/import").toString(), folder_.filePath("deep/er"));
  settings.setValue("folders/backup", folder_.path());
  inDialog([](QFileDialog& dialog) { dialog.reject(); });
  EXPECT_EQ(AskForBackup(nullptr), QString());
  EXPECT_EQ(shown, folder_.path()) << "each has its own";
  KeepDialogFoldersIn(nullptr);
}

TEST(AppIconTest, IsPaintedInEverySize) {
  const QIcon icon = AppIcon();
  for (const int size : {16, 32, 64, 128}) {
    const QImage picture = icon.pixmap(size).toImage();
    ASSERT_EQ(picture.width(), size);
    EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << "round corners";
    std::set<QRgb> colours;
    for (int x = 0; x < size; ++x) colours.insert(picture.pixel(x, size * 3 / 4));
    EXPECT_GE(colours.size(), 2U) << size;
  }
}

}  // namespace
}  // namespace holdwise
