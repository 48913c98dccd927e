// SPDX-License-Identifier: MIT
// A whole plug-in in one file: the page "自选行情" with the user's own stocks and their prices.
#include <QHeaderView>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

#include "holdwise/sdk/host.h"

namespace {

using holdwise::Host;

const QString kAddress = QStringLiteral("自选行情");
constexpr std::uint16_t kAddressNumber = 100;
constexpr int kRefreshMilliseconds = 1000;
enum Column { kCode, kName, kPrice, kChange, kColumns };

QString ChangeText(const holdwise::NowData& now) {
  if (now.currentPrice <= 0 || now.previousClose <= 0) return QStringLiteral("—");
  const double percent = (now.currentPrice / now.previousClose - 1) * 100;
  return QString::number(percent, 'f', 2) + QLatin1Char('%');
}

class OwnStocksPage final : public QTableWidget {
 public:
  explicit OwnStocksPage(Host& host) : QTableWidget(0, kColumns), host_(host) {
    setHorizontalHeaderLabels(
        {QStringLiteral("代码"), QStringLiteral("名称"), QStringLiteral("最新价"), QStringLiteral("涨跌幅")});
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    timer_.callOnTimeout(this, [this] { Refresh(); });
  }

  void Follow() {
    Refresh();
    timer_.start(kRefreshMilliseconds);
  }
  void Rest() { timer_.stop(); }

 private:
  void Refresh() {
    const std::vector<int> stocks = host_.DataCenter().GetGroupCodeNumList(QStringLiteral("OptionalStock"));
    setRowCount(static_cast<int>(stocks.size()));
    int row = 0;
    for (const int stock : stocks) {
      const QString code = QString::number(stock);
      const holdwise::NowData now = host_.DataCenter().StockNowData(stock);
      Write(row, kCode, code.mid(1));
      Write(row, kName, host_.CodeNums().NameOf(code));
      Write(row, kPrice, now.currentPrice > 0 ? QString::number(now.currentPrice, 'f', 2) : QStringLiteral("—"));
      Write(row, kChange, ChangeText(now));
      ++row;
    }
  }

  void Write(int row, Column column, const QString& text) {
    if (item(row, column) == nullptr) setItem(row, column, new QTableWidgetItem);
    item(row, column)->setText(text);
    item(row, column)->setTextAlignment((column < kPrice ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
  }

  Host& host_;
  QTimer timer_;
};

class OwnStocksAddress final : public holdwise::TAddressItem {
 public:
  explicit OwnStocksAddress(Host& host) : TAddressItem(kAddress, kAddressNumber, QString(), false, true), host_(host) {}

  void EnterAddress(const QString& /*parameter*/) override {
    if (title_ == nullptr) MakePage();
    host_.System().ShowFrame(title_.get());
    page_->Follow();
    isEntered_ = true;
  }
  void LeaveAddress() override {
    page_->Rest();
    isEntered_ = false;
  }
  [[nodiscard]] bool GetIsWorkState() const override { return isEntered_; }
  void ChangeColorTheme() override {
    if (title_ != nullptr) title_->RefreshTheme();
  }

 private:
  void MakePage() {
    title_ = host_.MakeTitleFrame();
    title_->SetCaptionText(kAddress);
    QWidget* panel = title_->ClientPanel();
    if (panel->layout() == nullptr) panel->setLayout(new QVBoxLayout);  // a host may have given it one
    panel->layout()->setContentsMargins(0, 0, 0, 0);
    page_ = new OwnStocksPage(host_);
    panel->layout()->addWidget(page_);
  }

  Host& host_;
  std::unique_ptr<holdwise::TFrmQMTitle> title_;
  OwnStocksPage* page_ = nullptr;  ///< the title frame's
  bool isEntered_ = false;
};

Host* theHost = nullptr;
std::shared_ptr<OwnStocksAddress> theAddress;

}  // namespace

extern "C" {

Q_DECL_EXPORT int GetPlugInContract() {
  return holdwise::kSdkVersion;
}

Q_DECL_EXPORT bool Initialize(Host* host, int sdkVersion) {
  if (host == nullptr || sdkVersion != holdwise::kSdkVersion) return false;
  theHost = host;
  return true;
}

Q_DECL_EXPORT const char* GetPlugInName() {
  return "自选行情";
}

Q_DECL_EXPORT const char* GetPlugInVersion() {
  return "1.0";
}

Q_DECL_EXPORT void GetPlugInEnter() {
  theAddress = std::make_shared<OwnStocksAddress>(*theHost);
  theHost->Addresses().RegisterAddressItem(theAddress);
}

Q_DECL_EXPORT void GetPlugInExit() {
  theHost->Addresses().UnregisterAddressItem(theAddress);
}

Q_DECL_EXPORT void Finalize() {
  theAddress.reset();  // the page goes while the host's services still stand
  theHost = nullptr;
}
}
