#pragma once
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include "datacentre/market_data.h"

namespace holdwise {

/// Follows quotes.dat of a loaded data folder: a changed or atomically replaced file is read into the market data; one
/// that cannot be read, or belongs to another date, is logged and the earlier quotes stay. User-interface thread.
class QuotesWatcher final : public QObject {
  Q_OBJECT

 public:
  /// Starts watching `data.Folder()`; both must outlive it.
  QuotesWatcher(MarketData& data, DebugServers& log);

 Q_SIGNALS:
  /// New quotes have been taken over from the file.
  void Reloaded();
  /// The file holds quotes that are not taken over; the text says why.
  void Refused(const QString& text);

 private:
  void Look();
  void Reload();
  void Watch();

  MarketData& data_;
  DebugServers& log_;
  QString path_;
  QString lastState_;
  QFileSystemWatcher watcher_;
  QTimer settle_;
};

}  // namespace holdwise
