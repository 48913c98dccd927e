// SPDX-License-Identifier: MIT
#pragma once
#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include "datacentre/folder_state.h"
#include "datacentre/market_data.h"

namespace holdwise {

/// Follows a loaded data folder: a changed or replaced quotes.dat (or market.dat) is read into the market data; one
/// that cannot be read, is gone, or belongs to another date, is logged and reported, and the earlier quotes stay until
/// one can be read again. The folder may be removed, renamed, replaced and put back: notifications of the system are a
/// short cut, a look every two seconds notices what they do not tell. User-interface thread.
class QuotesWatcher final : public QObject {
  Q_OBJECT

 public:
  /// Starts watching `data.Folder()`; both must outlive it.
  QuotesWatcher(MarketData& data, DebugServers& log);
  /// What Refused will say when quotes.dat is not there at this moment; empty when it is. One look at the file.
  [[nodiscard]] QString MissingNow() const;

 Q_SIGNALS:
  /// New quotes have been taken over from the file.
  void Reloaded();
  /// The quotes are not followed for now: the text says why, for a person to act on.
  void Refused(const QString& text);
  /// The folder is there and has been replaced or put back, or files came, went or were replaced in its subfolders:
  /// what was missing there may be there now. Comes once things have been quiet for half a second.
  void FolderChanged();

 private:
  struct QuotesState {
    FileIdentity quotes;
    FileIdentity market;
    bool operator==(const QuotesState&) const = default;
  };

  [[nodiscard]] QuotesState Now() const;
  void Look();
  void Reload();
  void ReportMissing();
  void Watch();
  void Refuse(const QString& whole);

  MarketData& data_;
  DebugServers& log_;
  QString quotesPath_;
  QString marketPath_;
  QuotesState seen_;
  bool isMissing_ = false;
  SubfolderState subfolders_;
  FileIdentity watchedFolder_;
  QFileSystemWatcher watcher_;
  QTimer poll_;
  QTimer lookSoon_;
  QTimer settleQuotes_;
  QTimer settleFolder_;
  QTimer missing_;
};

}  // namespace holdwise
