// SPDX-License-Identifier: MIT
#include "calc/calculation_driver.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "calculation_helpers.h"
#include "holdwise/packet/error.h"

namespace holdwise::calc {
namespace {

/// The index file and the two reference files.
constexpr int kFixedParts = 3;

std::size_t SlotOf(Reference reference) {
  return static_cast<std::size_t>(reference);
}

}  // namespace

QString RemoteNameOf(Reference reference) {
  return reference == Reference::InterestRate ? QStringLiteral("QMTL\\TZZH\\InterestRate.Dat")
                                              : QStringLiteral("QMTL\\TZZH\\GZ.dat");
}

void CalculationDriver::Start(QStringList codes, std::int64_t parts) {
  if (parts < 0 || parts > std::numeric_limits<int>::max() - kFixedParts) {
    throw Error(ErrorCategory::Refused, "integer overflow: " + std::to_string(parts) + " parts");
  }
  *this = {};
  codes_ = std::move(codes);
  totalParts_ = static_cast<int>(parts) + kFixedParts;
}

std::optional<QString> CalculationDriver::NextBaseFile() {
  waitsForBase_.reset();
  const auto last = static_cast<int>(codes_.size()) - 1;
  if (index_ < last) {
    waitsForBase_ =
        QStringLiteral("QMTL\\TZZH\\Day250\\股票\\") + GetCodeCNum(codes_.at(index_)) + QStringLiteral(".dat");
  } else if (index_ == last) {
    waitsForBase_ = QStringLiteral("QMTL\\TZZH\\Day250\\指数\\allzs.dat");
  } else {
    baseDone_ = true;
  }
  return waitsForBase_;
}

bool CalculationDriver::TakeBaseEvent(const QString& remoteName) {
  if (closed_ || waitsForBase_ != remoteName) return false;
  waitsForBase_.reset();
  return true;
}

const QString& CalculationDriver::CurrentCode() const {
  if (index_ >= codes_.size()) throw Error(ErrorCategory::Refused, "index past the list of securities");
  return codes_.at(index_);
}

void CalculationDriver::BaseFileHandled() {
  ++index_;
  ++partsComplete_;
}

void CalculationDriver::ExpectReference(Reference reference) {
  references_[SlotOf(reference)] = ReferenceState::Waiting;
}

bool CalculationDriver::TakeReferenceEvent(Reference reference) {
  ReferenceState& state = references_[SlotOf(reference)];
  if (closed_ || state != ReferenceState::Waiting) return false;
  state = ReferenceState::Taken;
  return true;
}

void CalculationDriver::ReferenceHandled(Reference reference) {
  references_[SlotOf(reference)] = ReferenceState::Done;
  ++partsComplete_;
}

bool CalculationDriver::BeginCalculation() {
  const bool referencesDone = std::all_of(references_.begin(), references_.end(),
                                          [](ReferenceState state) { return state == ReferenceState::Done; });
  if (closed_ || calculating_ || !baseDone_ || !referencesDone) return false;
  calculating_ = true;
  return true;
}

}  // namespace holdwise::calc
