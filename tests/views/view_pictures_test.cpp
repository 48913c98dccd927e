// SPDX-License-Identifier: MIT
// What the views look like, against pictures that somebody has looked at. They are renewed by tools/renew pictures, and
// looked at again before they are kept.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <algorithm>
#include <cstdlib>

#include "allocation_tables.h"
#include "holdwise/packet/packet_file.h"
#include "portfolio_view_fixture.h"
#include "theme/theme_pictures.h"
#include "theme/theme_table.h"
#include "views/zxpz/editor_band.h"
#include "views/zxpz/holdings_editor.h"
#include "views/zxpz/stock_picker.h"

namespace holdwise::test {
namespace {

constexpr int kHeight = 640;
constexpr int kNarrow = 900;  // the narrowest that is promised
constexpr int kAllocation = 1001;
constexpr int kEditor = 1002;
constexpr int kStress = 2003;
constexpr int kRisk = 2002;
constexpr int kOther = 2001;
/// Fonts are drawn a little differently from one version of their library to the next.
constexpr int kSameColour = 48;           // difference of a channel that nobody sees in the edge of a character
constexpr double kMostDifferent = 0.004;  // of all pixels; a bar that is gone, a column that moved are more

QString FolderOfPictures() {
  return qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/tests/views/pictures/");
}

bool AreAlike(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))}) <=
         kSameColour;
}

double ShareOfDifferentPixels(const QImage& a, const QImage& b) {
  if (a.size() != b.size()) return 1;
  int different = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) different += AreAlike(a.pixel(x, y), b.pixel(x, y)) ? 0 : 1;
  }
  return static_cast<double>(different) / (a.width() * a.height());
}

struct Picture {
  int node;
  ThemeKind theme;
  int width;
};

class ViewPictures : public PortfolioViewTest, public testing::WithParamInterface<Picture> {
 protected:
  ViewPictures() : PortfolioViewTest(GetParam().node) {
    for (const ThemeColor& color : ThemeColors()) bench.host.theme.colors[color.key] = Of(color.key);
    bench.host.theme.colors[kRiseTextKey] = *RiseTextColor(GetParam().theme, RiseFall::RedRises);
    bench.host.theme.colors[kFallTextKey] = *FallTextColor(GetParam().theme, RiseFall::RedRises);
    for (const char* key : {"Grid_TitleUpBg", "GridTitle"}) bench.host.theme.colors[key] = Of("ktr_gridtitlebk");
    bench.host.theme.paint = [](const QString& key, const QSize& size) {
      return key.startsWith(QStringLiteral("Qm_Save")) ? PaintThemePicture(GetParam().theme, key, size) : QPixmap();
    };
  }
  static QColor Of(const char* key) { return ThemeColorOf(GetParam().theme, key); }

  void AddPortfolios() {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 2000, 1, 9.5}});
    bench.AddPortfolio(2, QStringLiteral("银行与酒"), {{1600000, 1000, 0.36, 10.4}, {1600519, 10, 0.64, 1850}});
    bench.AddPortfolio(3, QStringLiteral("进取"), {{1600000, 10000, 0.9, 9}, {1000001, 1000, 0.1, 10}});
    for (const auto& [id, figures] :
         {std::pair{
              1, "ZSCLOSEPRICE=2000, BETA=0.5, ZHBZC=0.011, FC=0.000121, ALPHA=0.00021, SHARP=0.034, TREYNOR=0.0007"},
          std::pair{
              2,
              "ZSCLOSEPRICE=2300, BETA=0.9, ZHBZC=0.016, FC=0.000256, ALPHA=-0.00034, SHARP=-0.012, TREYNOR=-0.0002"},
          std::pair{
              3, "ZSCLOSEPRICE=2000, BETA=1.2, ZHBZC=0.02, FC=0.0004, ALPHA=0.00055, SHARP=0.056, TREYNOR=0.0009"}}) {
      Execute(QStringLiteral("update alg_commain set %1 where ID = %2").arg(QString::fromLatin1(figures)).arg(id));
    }
    for (const auto& [code, deviation] :
         {std::pair{1, "0.025"}, {1600000, "0.0182"}, {1000001, "0.0215"}, {1600519, "0.0167"}}) {
      Execute(QStringLiteral("insert into alg_stockstatistic (secucode,hqtype,hqdate,sylbzc) values (%1,0,20240528,%2)")
                  .arg(code)
                  .arg(QString::fromLatin1(deviation)));
    }
    Execute(QStringLiteral(
        "insert into alg_rmbinterestrate (ID,DEPOSITTYPE,TERM,INTEREST) values (1,'定期存款整存整取','一年',2.25)"));
    bench.host.dataCenter.indices[1] = {2200, 2190};
  }
  static QByteArray RiskFile() {
    ResultSet table;
    const int code = table.AddColumn("code", ColumnType::Text);
    for (const char* name : {"beta", "alpha", "treynor", "sharpe"}) table.AddColumn(name, ColumnType::Real);
    int row = 0;
    for (const char* text : {"600000", "000001", "600519"}) {
      table.AppendRow();
      table.SetText(row, code, text);
      for (int column = 1; column <= 4; ++column) table.SetReal(row, code + column, 0.8125 / column - 0.25 * row);
      ++row;
    }
    return EncodePacket(table);
  }
  void Execute(const QString& statement) { bench.database.Service().Execute(statement); }

  /// A portfolio half built, two that are not saved, the keyboard in the stock list.
  void FillEditor() {
    Execute(QStringLiteral("update alg_commain set SAVEFLAG = 0 where ID > 1"));
    SendFrameMessage(*frame, FrameMessage::Init);
    auto& band = *static_cast<EditorBand*>(frame->findChild<QWidget*>(QStringLiteral("RzPanel1")));
    band.RzEdit1->setText(QStringLiteral("银行与酒（二）"));
    band.Holdings->SetRows(
        {{QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("10.00"), QStringLiteral("1000")},
         {QStringLiteral("600519"), QStringLiteral("贵州茅台"), QStringLiteral("1710.00"), {}}});
    QApplication::setActiveWindow(&bench.host.system.workArea);
    band.Picker->StringGrid2->setFocus();
  }

  static QByteArray Candidates() {
    std::vector<CandidateLine> lines;
    for (const char* style : {"稳健型", "平衡型", "进取型", "分散型", "红利型"}) {
      const auto row = static_cast<int>(lines.size());
      lines.push_back({style, 0.0612 + 0.0213 * row, 0.000081 + 0.000047 * row, 0.6125 + 0.17 * row,
                       QStringLiteral("zh_5_%1.dat").arg(row + 1)});
    }
    return CandidateList(lines);
  }
  static QByteArray Parts() {
    return CompositionFile({{"600000", 0.3125}, {"000001", 0.27}, {"600519", 0.2375}, {"000002", 0.18}});
  }
  /// A candidate's holdings, one of which the capital does not buy, and the slider with the focus.
  void FillAllocation() {
    const auto download = bench.host.DownFile(QStringLiteral("InfoAsynDownFileRole1"));
    frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("62.5"));
    while (!download->Pending().empty()) {
      const QString file = download->Pending().front();
      download->WriteAndReceive(file, file.count(QLatin1Char('_')) == 1 ? Candidates() : Parts());
    }
    QApplication::setActiveWindow(&bench.host.system.workArea);
    frame->findChild<QWidget*>(QStringLiteral("Slider"))->setFocus();
  }

  QImage Grab() {
    AddPortfolios();
    bench.host.system.workArea.resize(GetParam().width, kHeight);
    Open(GetParam().width);
    const auto download = bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
    for (const QString& file : download->Pending()) download->WriteAndReceive(file, RiskFile());
    bench.DeliverPrices(PricesOfThree());
    // Shown again, now that the prices are in.
    bench.ClickNode(GetParam().node == kOther ? kRisk : kOther);
    ShowView();
    if (GetParam().node == kAllocation) FillAllocation();
    if (GetParam().node == kEditor) FillEditor();
    if (GetParam().node == kStress) {
      frame->SetInput(QStringLiteral("Edit1"), QStringLiteral("-10"));
      QApplication::setCursorFlashTime(0);
      QApplication::setActiveWindow(&bench.host.system.workArea);
      frame->findChild<QWidget*>(QStringLiteral("Edit1"))->setFocus();
    }
    QTest::qWait(50);
    return bench.mainFrame->grab().toImage().convertToFormat(QImage::Format_RGB32);
  }
};

QString NameOf(const Picture& picture) {
  return QStringLiteral("%1-%2-%3.png").arg(picture.node).arg(ThemeKindName(picture.theme)).arg(picture.width);
}

std::vector<Picture> All() {
  std::vector<Picture> pictures;
  for (const int node : {kAllocation, kEditor, 2001, 2002, kStress, 3001, 3002}) {
    for (const ThemeKind theme : {ThemeKind::Dark, ThemeKind::Light}) {
      for (const int width : {1024, 1920}) pictures.push_back({node, theme, width});
      if (node < kOther) pictures.push_back({node, theme, kNarrow});
    }
  }
  return pictures;
}

std::string CaseOf(const testing::TestParamInfo<Picture>& one) {
  return NameOf(one.param).chopped(4).replace(QLatin1Char('-'), QLatin1Char('_')).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Views, ViewPictures, testing::ValuesIn(All()), CaseOf);

TEST_P(ViewPictures, LookAsTheyWereSeenToBeRight) {
  if (!QFontDatabase::hasFamily(QStringLiteral("Noto Sans CJK SC"))) GTEST_SKIP() << "the pictures' font is missing";
  const QString path = FolderOfPictures() + NameOf(GetParam());
  const QImage now = Grab();
  if (qEnvironmentVariableIsSet("HOLDWISE_RENEW")) {
    ASSERT_TRUE(now.save(path, "PNG", 0));
    return;
  }
  QImage reference(path);
  ASSERT_FALSE(reference.isNull()) << path.toStdString();
  reference = reference.convertToFormat(QImage::Format_RGB32);
  const double share = ShareOfDifferentPixels(now, reference);
  const QString seen = QDir::temp().filePath(QStringLiteral("holdwise-") + NameOf(GetParam()));
  if (share > kMostDifferent) now.save(seen);
  EXPECT_LE(share, kMostDifferent) << "what it looks like now: " << seen.toStdString();
}

TEST(PictureComparison, SeesABarThatIsGoneAndNotAnEdgeThatIsBlurred) {
  QImage a(1024, 640, QImage::Format_RGB32);
  a.fill(QColor(20, 30, 40));
  QImage b = a;
  for (int x = 0; x < 1024; ++x) b.setPixel(x, 100, qRgb(20 + kSameColour, 30, 40));
  EXPECT_EQ(ShareOfDifferentPixels(a, b), 0);
  for (int y = 300; y < 340; ++y) {
    for (int x = 500; x < 584; ++x) b.setPixel(x, y, qRgb(90, 160, 240));
  }
  EXPECT_GT(ShareOfDifferentPixels(a, b), kMostDifferent);
  EXPECT_EQ(ShareOfDifferentPixels(a, QImage(1024, 641, QImage::Format_RGB32)), 1);
}

}  // namespace
}  // namespace holdwise::test
