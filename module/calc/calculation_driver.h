// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

namespace holdwise::calc {

/// The two reference files.
enum class Reference { InterestRate, EstimateValue };
[[nodiscard]] QString RemoteNameOf(Reference reference);

/// Sequence of one run of the calculation: three streams (base data one file after the other, and the two reference
/// files) go side by side, and when all are done the portfolios may be calculated, once. Pure state: it says what comes
/// next, somebody else does it. It takes no event that it does not wait for, so one that comes twice, late or after
/// Close changes nothing.
class CalculationDriver {
 public:
  /// A new run. `codes`: the securities as the database stores them and, last, "1" for the index file. `parts`: the
  /// progress bar's parts before the fixed three (index file and reference files).
  /// Too many parts for an int: Error(Refused).
  void Start(QStringList codes, std::int64_t parts);
  /// The run is over, done or not.
  void Close() { closed_ = true; }
  [[nodiscard]] bool IsClosed() const { return closed_; }

  [[nodiscard]] int TotalParts() const { return totalParts_; }
  [[nodiscard]] int PartsComplete() const { return partsComplete_; }

  [[nodiscard]] bool HasCodes() const { return !codes_.isEmpty(); }
  /// The remote file of the current index, now waited for; none when every file has been handled: the base data is
  /// done then.
  [[nodiscard]] std::optional<QString> NextBaseFile();
  /// An event for that base-data file: is it the one waited for?
  [[nodiscard]] bool TakeBaseEvent(const QString& remoteName);
  /// Code of the current base-data file. Past the end: a range error, Error(Refused).
  [[nodiscard]] const QString& CurrentCode() const;
  /// Done with the current base-data file, well or not.
  void BaseFileHandled();

  void ExpectReference(Reference reference);
  [[nodiscard]] bool TakeReferenceEvent(Reference reference);
  /// The reference table is up to date, or its file is given up.
  void ReferenceHandled(Reference reference);

  /// True once a run, when all three streams are done.
  [[nodiscard]] bool BeginCalculation();
  void PortfolioHandled() { ++partsComplete_; }

 private:
  enum class ReferenceState { Idle, Waiting, Taken, Done };

  QStringList codes_;
  int index_ = 0;
  std::optional<QString> waitsForBase_;
  bool baseDone_ = false;
  std::array<ReferenceState, 2> references_ = {};
  bool calculating_ = false;
  bool closed_ = false;
  int totalParts_ = 0;
  int partsComplete_ = 0;
};

}  // namespace holdwise::calc
