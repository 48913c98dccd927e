// SPDX-License-Identifier: MIT
#include "intraday/tick_store.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "holdwise/packet/atomic_file.h"
#include "holdwise/packet/error.h"
#include "intraday/trading_day.h"

namespace holdwise {
namespace {

constexpr qsizetype kRowBytes = 28;
constexpr qsizetype kCodeAt = 0, kSecondAt = 4, kChecksumAt = 6, kPriceAt = 8, kVolumeAt = 12, kAmountAt = 20;
constexpr quint16 kGapBit = 0x8000;
constexpr char kMark[] = "HWTICKS1";
/// Twice what a day of all securities can have.
constexpr qint64 kMostBytes = qint64{2} * static_cast<qint64>(TickStore::kMostSecurities) *
                              (kDaySeconds / TickStore::kSlotSeconds + 1) * kRowBytes;

template <typename Number>
void Put(QByteArray& row, qsizetype place, Number number) {
  qToLittleEndian(number, row.data() + place);
}

template <typename Number>
Number Get(const char* row, qsizetype place) {
  return qFromLittleEndian<Number>(row + place);
}

quint16 ChecksumOf(const char* row) {
  char bytes[kRowBytes];
  std::memcpy(bytes, row, kRowBytes);
  std::memset(bytes + kChecksumAt, 0, sizeof(quint16));
  return qChecksum(QByteArrayView(bytes, kRowBytes));
}

QByteArray RowOf(int codeNumber, const Tick& tick) {
  QByteArray row(kRowBytes, '\0');
  Put(row, kCodeAt, static_cast<qint32>(codeNumber));
  Put(row, kSecondAt, static_cast<quint16>(static_cast<quint16>(tick.second) | (tick.isAfterGap ? kGapBit : 0)));
  Put(row, kPriceAt, static_cast<quint32>(tick.price));
  Put(row, kVolumeAt, static_cast<qint64>(tick.volume));
  Put(row, kAmountAt, static_cast<qint64>(tick.amount));
  Put(row, kChecksumAt, ChecksumOf(row.constData()));
  return row;
}

Tick TickOf(const char* row) {
  const auto second = Get<quint16>(row, kSecondAt);
  return {second & ~kGapBit, Get<quint32>(row, kPriceAt), Get<qint64>(row, kVolumeAt), Get<qint64>(row, kAmountAt),
          (second & kGapBit) != 0};
}

bool CanBe(const Tick& tick) {
  return tick.second >= 0 && tick.second <= kDaySeconds && tick.price > 0 &&
         tick.price <= std::numeric_limits<quint32>::max();
}

}  // namespace

TickStore::TickStore(QString path, const QString& identity, const std::function<bool(int)>& isKnown)
    : path_(std::move(path)),
      header_(QByteArray(kMark) + QCryptographicHash::hash(identity.toUtf8(), QCryptographicHash::Md5)) {
  if (!path_.isEmpty()) Load(isKnown);
}

TickStore::~TickStore() {
  Flush();
}

const std::vector<Tick>& TickStore::Of(int codeNumber) const {
  static const std::vector<Tick> none;
  const auto found = days_.find(codeNumber);
  return found == days_.end() ? none : found->second.ticks;
}

std::vector<int> TickStore::CodeNumbers() const {
  std::vector<int> codeNumbers;
  for (const auto& [codeNumber, day] : days_) codeNumbers.push_back(codeNumber);
  return codeNumbers;
}

int TickStore::LastSecond() const {
  int last = -1;
  for (const auto& [codeNumber, day] : days_) last = std::max(last, day.ticks.back().second);
  return last;
}

void TickStore::Load(const std::function<bool(int)>& isKnown) {
  QFile file(path_);
  if (!QFileInfo(path_).isFile() || file.size() > kMostBytes || !file.open(QIODevice::ReadOnly)) return;
  const QByteArray bytes = file.readAll();
  if (!bytes.startsWith(header_)) return;
  isOurs_ = true;
  size_ = header_.size();
  for (; size_ + kRowBytes <= bytes.size(); size_ += kRowBytes) {
    const char* row = bytes.constData() + size_;
    if (Get<quint16>(row, kChecksumAt) != ChecksumOf(row)) continue;
    const int codeNumber = Get<qint32>(row, kCodeAt);
    const Tick tick = TickOf(row);
    if (tick.price == 0)
      days_.erase(codeNumber);
    else if (!isKnown || isKnown(codeNumber))
      (void)Take(codeNumber, tick);
  }
  for (auto& [codeNumber, day] : days_) day.written = day.ticks.size();
}

bool TickStore::Take(int codeNumber, const Tick& tick) {
  if (!CanBe(tick)) return false;
  const auto found = days_.find(codeNumber);
  if (found == days_.end() && days_.size() >= kMostSecurities) return false;
  Day& day = found == days_.end() ? days_[codeNumber] : found->second;
  if (day.ticks.empty()) {
    day.ticks.push_back(tick);
    return true;
  }
  Tick& last = day.ticks.back();
  const bool isSame = tick.price == last.price && tick.volume == last.volume && tick.amount == last.amount;
  if (tick.second < last.second || (isSame && !tick.isAfterGap)) return false;
  if (tick.second / kSlotSeconds == last.second / kSlotSeconds && !tick.isAfterGap) {
    const bool isAfterGap = last.isAfterGap;
    last = tick;
    last.isAfterGap = isAfterGap;
    day.written = std::min(day.written, day.ticks.size() - 1);
  } else {
    day.ticks.push_back(tick);
  }
  return true;
}

bool TickStore::Add(int codeNumber, const Tick& tick) {
  if (!Take(codeNumber, tick)) return false;
  // The last one may still change.
  Day& day = days_[codeNumber];
  if (problem_.isEmpty() && day.ticks.size() - day.written > 1) Write(codeNumber, day, day.ticks.size() - 1);
  return true;
}

void TickStore::DropAfter(int second) {
  bool isAny = false;
  for (auto& [codeNumber, day] : days_)
    isAny = std::erase_if(day.ticks, [second](const Tick& tick) { return tick.second > second; }) > 0 || isAny;
  if (!isAny) return;
  std::erase_if(days_, [](const auto& item) { return item.second.ticks.empty(); });
  for (auto& [codeNumber, day] : days_) day.written = std::min(day.written, day.ticks.size());
  if (isOurs_) Rewrite();
}

void TickStore::Forget(int codeNumber) {
  const auto found = days_.find(codeNumber);
  if (found == days_.end()) return;
  const bool isInFile = isOurs_ && found->second.written > 0;
  days_.erase(found);
  // A row without a price takes back those before it.
  if (isInFile && (!problem_.isEmpty() || !Append(RowOf(codeNumber, {})))) isOurs_ = false;
}

void TickStore::Flush() {
  if (path_.isEmpty()) return;
  if (!problem_.isEmpty() && !isOurs_ && !Rewrite()) return;
  for (auto& [codeNumber, day] : days_)
    if (day.written < day.ticks.size() && !Write(codeNumber, day, day.ticks.size())) return;
  problem_.clear();
}

bool TickStore::Write(int codeNumber, Day& day, std::size_t end) {
  if (path_.isEmpty()) return true;
  QByteArray rows;
  for (std::size_t place = day.written; place < end; ++place) rows += RowOf(codeNumber, day.ticks[place]);
  if (!isOurs_ || size_ + rows.size() > kMostBytes) return Rewrite();
  if (!Append(rows)) return false;
  day.written = end;
  return true;
}

bool TickStore::Append(const QByteArray& rows) {
  if (!Open()) return false;
  if (file_.write(rows) == rows.size()) {
    size_ += rows.size();
    return true;
  }
  const QString why = file_.errorString();
  file_.resize(size_);  // no half of a row before the next ones
  return Fail(why);
}

bool TickStore::Rewrite() {
  QByteArray bytes = header_;
  for (const auto& [codeNumber, day] : days_)
    for (const Tick& tick : day.ticks) bytes += RowOf(codeNumber, tick);
  file_.close();
  isOurs_ = false;
  try {
    WriteFileAtomically(path_, bytes, Durability::Replaceable);
  } catch (const Error& error) {
    return Fail(QString::fromUtf8(error.what()));
  }
  QFile::setPermissions(path_, QFile::ReadOwner | QFile::WriteOwner);
  size_ = bytes.size();
  isOurs_ = true;
  for (auto& [codeNumber, day] : days_) day.written = day.ticks.size();
  return true;
}

bool TickStore::Open() {
  if (file_.isOpen()) return true;
  file_.setFileName(path_);
  // A torn row at the end goes: what follows must begin where a row begins.
  if (file_.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered) && file_.resize(size_) &&
      file_.seek(size_))
    return true;
  if (!QFileInfo::exists(path_)) isOurs_ = false;
  return Fail(file_.errorString());
}

bool TickStore::Fail(const QString& why) {
  file_.close();
  problem_ = QStringLiteral("今天的分时数据没有保存到“%1”：%2").arg(path_, why);
  return false;
}

}  // namespace holdwise
