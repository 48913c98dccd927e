// SPDX-License-Identifier: MIT
#include "day_change.h"

#include <QApplication>
#include <QEvent>
#include <QThread>
#include <chrono>
#include <exception>
#include <utility>

#include "transfer/view_exporter.h"

namespace holdwise {
namespace {

using namespace std::chrono_literals;

constexpr auto kBetweenLooks = 500ms;
/// After a folder that could not be read: reading one is work.
constexpr auto kBetweenTries = 10s;
constexpr std::chrono::milliseconds kQuiet = 2s;

bool IsOfTheUser(QEvent::Type type) {
  return type == QEvent::KeyPress || type == QEvent::MouseButtonPress || type == QEvent::Wheel ||
         type == QEvent::InputMethod;
}

}  // namespace

PagePlace PlaceOf(const PageSide& pages, const MarketData& data) {
  PagePlace place;
  place.code = data.CurrentCode();
  if (pages.Current() == nullptr) return place;
  place.address = pages.Current()->Name();
  place.parameter = pages.Parameter();
  TAddressItem* item = pages.ViewAddress();
  if (item == nullptr || item != pages.Current()) return place;
  place.view = item->Views()->Current();
  place.inputs = item->Views()->Inputs();
  place.inView = item->Views()->Place();
  return place;
}

void ReturnTo(const PagePlace& place, PageSide& pages, MarketData& data) {
  if (!pages.GoTo(place.address, place.parameter)) (void)pages.GoTo(QString(), QString());
  if (place.view != 0) {
    ViewCatalogue& views = *pages.EnterViews();
    if (views.Current() == place.view || views.Show(place.view)) {
      PutBackInputs(views, place.inputs);
      views.PutPlace(place.inView);
    }
  }
  // Last: an address that is entered may choose one of its own.
  if (data.IsKnownSecurity(place.code) || data.IsIndex(place.code)) data.SetCurrentCode(place.code);
}

DayChange::DayChange(const DayChangeParts& parts) : parts_(parts) {
  connect(&look_, &QTimer::timeout, this, &DayChange::Look);
}

void DayChange::Follow() {
  Wait({});
  if (parts_.process.Asked().IsBatch()) return;
  MarketConnection& connection = parts_.market->Connection();
  connect(&connection, &MarketConnection::QuotesChanged, this, [this, &connection] { Wait(connection.LaterDate()); });
}

void DayChange::Wait(const QString& date) {
  const bool isNew = date != std::exchange(date_, date);
  if (!isNew) return;
  problem_.clear();
  qApp->removeEventFilter(this);
  look_.stop();
  if (date_.isEmpty()) return parts_.window.Window().OfferNewDay({}, {});
  parts_.process.Log().WriteLog(QStringLiteral("%1 的行情已到，等待换上").arg(date_));
  quiet_.start();
  qApp->installEventFilter(this);
  look_.start(kBetweenLooks);
}

bool DayChange::eventFilter(QObject* watched, QEvent* event) {
  if (IsOfTheUser(event->type())) quiet_.start();
  return QObject::eventFilter(watched, event);
}

bool DayChange::IsDisturbing() const {
  // Below a nested event loop somebody stands on the pages.
  return parts_.pages == nullptr || isBusy() || QThread::currentThread()->loopLevel() > 1 ||
         QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr ||
         QApplication::mouseButtons() != Qt::NoButton || parts_.pages->IsTyping();
}

QString DayChange::WaitsFor() const {
  const QStringList unstored = parts_.pages->Unstored();
  if (!unstored.isEmpty()) return unstored.join(QStringLiteral("，")) + QStringLiteral("，存好后自动换上");
  return problem_.isEmpty() ? QStringLiteral("停止操作后自动换上") : problem_;
}

void DayChange::Look() {
  if (parts_.market == nullptr || parts_.pages == nullptr) return Wait({});
  const bool isQuiet = quiet_.hasExpired(kQuiet.count());
  if (isQuiet && parts_.pages->Unstored().isEmpty() && !IsDisturbing()) return Take();
  parts_.window.Window().OfferNewDay(QStringLiteral("%1 的行情已到，换上(&N)").arg(date_), WaitsFor());
}

void DayChange::TakeAsked() {
  if (date_.isEmpty() || IsDisturbing()) return;
  const QStringList unstored = parts_.pages->Unstored();
  if (!unstored.isEmpty()) {
    using Box = MessageBoxService;
    const QString question =
        QStringLiteral("%1，换上 %2 的行情后就没有了。\n现在换上吗?").arg(unstored.join(QStringLiteral("，")), date_);
    if (parts_.window.Messages().Vex_MessageBox(question, QStringLiteral("询问"), Box::kOkAndCancel, Box::kQuestion) !=
        Box::kOk)
      return;
    // The folder has got its former data back meanwhile, or a command has come.
    if (date_.isEmpty() || IsDisturbing()) return;
  }
  Take();
}

void DayChange::Take() {
  MainWindow& window = parts_.window.Window();
  try {
    take();
  } catch (const std::exception& error) {
    const QString text =
        QStringLiteral("没有换到 %1 的行情，继续使用原有行情。%2").arg(date_, QString::fromUtf8(error.what()));
    look_.start(kBetweenTries);
    if (text == std::exchange(problem_, text)) return;
    parts_.process.Log().WriteLog(text);
    return window.TellFailure(text);
  }
  if (parts_.market == nullptr) return;  // which an obstacle tells
  const QString text = QStringLiteral("已换到 %1 的行情").arg(parts_.market->Data().CurrentDateText());
  parts_.process.Log().WriteLog(text);
  window.Tell(text);
}

}  // namespace holdwise
