// SPDX-License-Identifier: MIT
#include "view_bench.h"

#include <QTest>
#include <algorithm>

#include "common/host/host_access.h"

namespace holdwise::test {

bool MessageSpy::eventFilter(QObject* watched, QEvent* event) {
  const int type = event->type();
  if (watched != &frame_ || type < 5096 || type > 5099) return false;
  messages.push_back(type);
  if (OnMessage) OnMessage(type);
  return false;
}

int MessageSpy::Count(FrameMessage message) const {
  return static_cast<int>(std::count(messages.begin(), messages.end(), static_cast<int>(message)));
}

ViewBench::ViewBench() {
  host.SetUserData(database.Service());
  SetModuleHost(&host);
  host.codeNums.Add({QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("银行"), 1, {10.0, 9.8}});
  host.codeNums.Add({QStringLiteral("000001"), QStringLiteral("平安银行"), QStringLiteral("银行"), 2, {12.0, 12.5}});
  host.codeNums.Add({QStringLiteral("600519"),
                     QStringLiteral("贵州茅台"),
                     QStringLiteral("酒、饮料和精制茶制造业及其相关服务"),
                     1,
                     {1710, 1700}});
  host.codeNums.Add({QStringLiteral("000002"), QStringLiteral("万科A"), QStringLiteral("房地产"), 2, {8.0, 0}});
  AddClose(1600000, 1, 20240524, 9.5);
  AddClose(1600000, 2, 20240430, 9.0);
  AddClose(1600519, 1, 20240524, 1650);
}

ViewBench::~ViewBench() {
  mainFrame.reset();
  SetModuleHost(nullptr);
}

void ViewBench::OpenMainFrame(int width) {
  host.system.workArea.resize(width, 640);
  mainFrame = std::make_unique<TMainFrm>();
  host.system.ShowFrame(mainFrame.get());
  host.system.workArea.show();
  QTest::qWait(20);
  mainFrame->InitProc();
}

void ViewBench::AddPortfolio(int id, const QString& name, const std::vector<HoldingRow>& holdings, int saveFlag) {
  UserDataServices& service = database.Service();
  // Calculated today, so that no calculation dialog comes up.
  service.Execute(QStringLiteral("insert into alg_commain (ID,COMNAME,ISFINISHED,CALCDATE,EDITDATE,SAVEFLAG) values "
                                 "(%1,'%2',1,20240529,'2024-05-2%3',%4)")
                      .arg(id)
                      .arg(name)
                      .arg(id % 10)
                      .arg(saveFlag));
  for (const HoldingRow& holding : holdings) {
    service.Execute(QStringLiteral("insert into alg_comdetail (ID,MAINID,SecuCode,PZSL,PZBL,BUYPRICE) values "
                                   "(%1,%2,%3,%4,%5,%6)")
                        .arg(nextHolding_++)
                        .arg(id)
                        .arg(holding.code)
                        .arg(holding.quantity)
                        .arg(holding.weight)
                        .arg(holding.buyPrice));
  }
}

void ViewBench::AddClose(int code, int periodType, int date, double close) {
  database.Service().Execute(
      QStringLiteral("insert into alg_stockstatistic (secucode,closeprice,hqtype,hqdate) values (%1,%2,%3,%4)")
          .arg(code)
          .arg(close)
          .arg(periodType)
          .arg(date));
}

std::shared_ptr<ScriptedDataDown> ViewBench::PriceRole() const {
  return host.DataDown(QStringLiteral("FDSBVexDownDataRoleNowPrice"));
}

void ViewBench::DeliverPrices(const std::vector<std::pair<QString, Decimal>>& prices) {
  PriceRole()->Deliver(PriceReply(prices));
}

void ViewBench::ClickNode(int id) {
  NavigationTree& tree = mainFrame->dxTL();
  const QRect rect = tree.visualItemRect(Node(id));
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, {rect.left() + 20, rect.center().y()});
}

std::vector<HoldingRow> ThreeHoldings() {
  return {{1600000, 1000, 0.4, 9.0}, {1000001, 500, 0.25, 12.0}, {1600519, 10, 0.35, 1800}};
}

std::vector<std::pair<QString, Decimal>> PricesOfThree() {
  return {{QStringLiteral("600000"), {1000, 2}},
          {QStringLiteral("000001"), {1200, 2}},
          {QStringLiteral("600519"), {171000, 2}}};
}

}  // namespace holdwise::test
