// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <vector>

namespace holdwise {

/// The host's security master. A code number is "1" and six digits for a stock ("1600000"), "1", "399001" and "399300"
/// for the three indices. Every function takes a code number or six digits, as text, unless it says otherwise; unknown
/// text is not an error. User-interface thread; the const functions may be called from any thread.
class CodeNumServices {
 public:
  virtual ~CodeNumServices() = default;

  /// First question about six digits: a fund or a bond?
  [[nodiscard]] virtual bool IsFundOrBond(const QString& code) const = 0;
  /// Second question about six digits: in the security master?
  [[nodiscard]] virtual bool IsKnownSecurity(const QString& code) const = 0;
  /// Third question about six digits: one of the indices?
  [[nodiscard]] virtual bool IsIndex(const QString& code) const = 0;
  /// Is the text a code number: seven digits, the first a 1, and known?
  [[nodiscard]] virtual bool IsCodeNumber(const QString& text) const = 0;
  /// Stock-kind question about a code number: a Shanghai A-share? False for an index.
  [[nodiscard]] virtual bool IsShanghaiStock(const QString& codeNumber) const = 0;
  /// The same: a Shenzhen A-share?
  [[nodiscard]] virtual bool IsShenzhenStock(const QString& codeNumber) const = 0;

  /// Name of a security or an index, empty when unknown.
  [[nodiscard]] virtual QString NameOf(const QString& code) const = 0;
  /// First letters by which the name of a code number, given as an integer, can be typed: capital letters and digits,
  /// every reading of a character together, the characters apart by a blank ("Y HX"). Empty when unknown, or when the
  /// host has none.
  [[nodiscard]] virtual QString InitialsOf(int /*codeNumber*/) const { return {}; }
  /// Industry of a code number given as an integer, empty when unknown.
  [[nodiscard]] virtual QString IndustryOf(int codeNumber) const = 0;
  /// 1 Shanghai, 2 Shenzhen; 0 when unknown.
  [[nodiscard]] virtual int MarketTypeOf(const QString& code) const = 0;
  /// Code numbers of a category as integers; category 10 = all A-shares. Unknown category: empty.
  [[nodiscard]] virtual std::vector<int> CodeNumbersOf(int category) const = 0;
  /// The market's current date, YYYYMMDD; 0 while none is known.
  [[nodiscard]] virtual int CurrentDate() const = 0;

  /// Makes it the security that the host's own pages show. Taken as it is, also unknown or empty text.
  virtual void SetCurrentCode(const QString& code) = 0;
  /// What was set last; empty before that.
  [[nodiscard]] virtual QString CurrentCode() const = 0;
};

}  // namespace holdwise
