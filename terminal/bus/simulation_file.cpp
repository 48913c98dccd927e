// SPDX-License-Identifier: MIT
#include "simulation_file.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/atomic_file.h"

namespace holdwise {
namespace {

constexpr quint32 kMark = 0x48575331;
constexpr qint64 kMostBytes = 8 << 20;

QDataStream& operator<<(QDataStream& out, const LiveSimulation::State::Item& item) {
  const DayTrade& day = item.quote.day;
  return out << qint32(item.codeNumber) << item.exactPrice << qint64(item.quote.price.mantissa)
             << qint64(item.quote.previousClose.mantissa) << qint64(day.volume) << qint64(day.amount)
             << qint64(day.open) << qint64(day.high) << qint64(day.low);
}

LiveSimulation::State::Item ReadItem(QDataStream& in) {
  qint32 codeNumber = 0;
  double exactPrice = 0;
  qint64 price = 0, previousClose = 0, volume = 0, amount = 0, open = 0, high = 0, low = 0;
  in >> codeNumber >> exactPrice >> price >> previousClose >> volume >> amount >> open >> high >> low;
  return {codeNumber, exactPrice, {codeNumber, {price, 2}, {previousClose, 2}, {volume, amount, open, high, low}}};
}

}  // namespace

QString SimulationIdentity(const MarketData& data) {
  return data.CurrentDateText() + QLatin1Char('\n') + data.DataEdition() + QLatin1Char('\n') +
         QFileInfo(data.Folder()).canonicalFilePath();
}

void WriteSimulation(const QString& path, const QString& identity, const LiveSimulation::State& state) {
  QByteArray body;
  {
    QDataStream out(&body, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << identity << state.secondOfDay << state.marketMove << quint32(state.items.size());
    for (const LiveSimulation::State::Item& item : state.items) out << item;
  }
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setVersion(QDataStream::Qt_6_0);
  out << kMark << qChecksum(body) << body;
  WriteFileAtomically(path, bytes, Durability::Replaceable);
}

std::optional<LiveSimulation::State> ReadSimulation(const QString& path, const QString& identity) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || file.size() > kMostBytes || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  QDataStream outer(&file);
  outer.setVersion(QDataStream::Qt_6_0);
  quint32 mark = 0;
  quint16 checksum = 0;
  QByteArray body;
  outer >> mark >> checksum >> body;
  if (outer.status() != QDataStream::Ok || mark != kMark || checksum != qChecksum(body)) return std::nullopt;
  QDataStream in(body);
  in.setVersion(QDataStream::Qt_6_0);
  QString itsIdentity;
  LiveSimulation::State state;
  quint32 items = 0;
  in >> itsIdentity >> state.secondOfDay >> state.marketMove >> items;
  if (itsIdentity != identity) return std::nullopt;
  while (state.items.size() < items && in.status() == QDataStream::Ok) state.items.push_back(ReadItem(in));
  if (in.status() != QDataStream::Ok) return std::nullopt;
  return state;
}

}  // namespace holdwise
