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

TickStore::TickStore(QString path, const QString& identity)
    : path_(std::move(path)),
      header_(QByteArray(kMark) + QCryptographicHash::hash(identity.toUtf8(), QCryptographicHash::Md5)) {
  if (!path_.isEmpty()) Load();
}

TickStore::~TickStore() {
  Flush();
}

const std::vector<Tick>& TickStore::Of(int codeNumber) const {
  static const std::vector<Tick> none;
  const auto found = ticks_.find(codeNumber);
  return found == ticks_.end() ? none : found->second;
}

std::vector<int> TickStore::CodeNumbers() const {
  std::vector<int> codeNumbers;
  for (const auto& [codeNumber, ticks] : ticks_) codeNumbers.push_back(codeNumber);
  return codeNumbers;
}

int TickStore::LastSecond() const {
  int last = -1;
  for (const auto& [codeNumber, ticks] : ticks_) last = std::max(last, ticks.back().second);
  return last;
}

void TickStore::Load() {
  QFile file(path_);
  if (!QFileInfo(path_).isFile() || file.size() > kMostBytes || !file.open(QIODevice::ReadOnly)) return;
  const QByteArray bytes = file.readAll();
  if (!bytes.startsWith(header_)) return;
  isOurs_ = true;
  size_ = header_.size();
  for (; size_ + kRowBytes <= bytes.size(); size_ += kRowBytes) {
    const char* row = bytes.constData() + size_;
    if (Get<quint16>(row, kChecksumAt) == ChecksumOf(row)) (void)Take(Get<qint32>(row, kCodeAt), TickOf(row));
  }
}

bool TickStore::Take(int codeNumber, const Tick& tick) {
  if (!CanBe(tick)) return false;
  const auto found = ticks_.find(codeNumber);
  if (found == ticks_.end() && ticks_.size() >= kMostSecurities) return false;
  std::vector<Tick>& ticks = found == ticks_.end() ? ticks_[codeNumber] : found->second;
  if (ticks.empty()) {
    ticks.push_back(tick);
  } else {
    Tick& last = ticks.back();
    const bool isSame = tick.price == last.price && tick.volume == last.volume && tick.amount == last.amount;
    if (tick.second < last.second || (isSame && !tick.isAfterGap)) return false;
    if (tick.second / kSlotSeconds == last.second / kSlotSeconds && !tick.isAfterGap) {
      const bool isAfterGap = last.isAfterGap;
      last = tick;
      last.isAfterGap = isAfterGap;
    } else {
      ticks.push_back(tick);
    }
  }
  return true;
}

bool TickStore::Add(int codeNumber, const Tick& tick) {
  const std::vector<Tick>& ticks = Of(codeNumber);
  const std::size_t before = ticks.size();
  const Tick last = ticks.empty() ? Tick() : ticks.back();
  if (!Take(codeNumber, tick)) return false;
  const bool wasOurs = isOurs_;
  if (unwritten_.contains(codeNumber) && ticks.size() > before) Write(codeNumber, last);
  if (isOurs_ == wasOurs) unwritten_.insert(codeNumber);  // a file that has just been made has all of it
  return true;
}

void TickStore::DropAfter(int second) {
  bool isAny = false;
  for (auto& [codeNumber, ticks] : ticks_)
    isAny = std::erase_if(ticks, [second](const Tick& tick) { return tick.second > second; }) > 0 || isAny;
  if (!isAny) return;
  std::erase_if(ticks_, [](const auto& item) { return item.second.empty(); });
  if (isOurs_) Rewrite();
}

void TickStore::Flush() {
  for (const int codeNumber : std::exchange(unwritten_, {})) {
    if (const std::vector<Tick>& ticks = Of(codeNumber); !ticks.empty()) Write(codeNumber, ticks.back());
  }
}

void TickStore::Write(int codeNumber, const Tick& tick) {
  if (path_.isEmpty() || !problem_.isEmpty()) return;
  if (!isOurs_) return Rewrite();
  if (!Open()) return;
  const QByteArray row = RowOf(codeNumber, tick);
  if (size_ + row.size() > kMostBytes) return;
  if (file_.write(row) == row.size()) {
    size_ += row.size();
    return;
  }
  const QString why = file_.errorString();
  file_.resize(size_);  // no half of a row before the next ones
  Fail(why);
}

void TickStore::Rewrite() {
  QByteArray bytes = header_;
  for (const auto& [codeNumber, ticks] : ticks_)
    for (const Tick& tick : ticks) bytes += RowOf(codeNumber, tick);
  file_.close();
  try {
    WriteFileAtomically(path_, bytes, Durability::Replaceable);
  } catch (const Error& error) {
    return Fail(QString::fromUtf8(error.what()));
  }
  QFile::setPermissions(path_, QFile::ReadOwner | QFile::WriteOwner);
  size_ = bytes.size();
  isOurs_ = true;
  unwritten_.clear();
}

bool TickStore::Open() {
  if (file_.isOpen()) return true;
  file_.setFileName(path_);
  // A torn row at the end goes: what follows must begin where a row begins.
  if (file_.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered) && file_.resize(size_) &&
      file_.seek(size_))
    return true;
  Fail(file_.errorString());
  return false;
}

void TickStore::Fail(const QString& why) {
  file_.close();
  problem_ = QStringLiteral("今天的分时数据没有保存到“%1”：%2").arg(path_, why);
}

}  // namespace holdwise
