// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <string>

#include "common/helpers/day_range.h"

/// Every statement of the module, once. Values are pasted in as they stand, as the host's service expects them: numbers
/// and day numbers plain, names and dates in single quotes, nothing escaped. A name with a single quote would become a
/// piece of its statement: wherever it comes from, there is Error(Refused) and no statement.
namespace holdwise::sql {

/// Portfolios.
inline const QString kAllPortfolios = QStringLiteral("select * from alg_commain");
inline const QString kSavedPortfolios = QStringLiteral("select * from alg_commain where SAVEFLAG = 1 order by ID desc");
inline const QString kCountPortfolios = QStringLiteral("select Count(*) from alg_commain");
inline const QString kCountSavedPortfolios = QStringLiteral("select Count(*) from alg_commain where SAVEFLAG = 1");
inline const QString kCountUnsavedPortfolios = QStringLiteral("select Count(*) from alg_commain where SAVEFLAG <> 1");
inline const QString kNextPortfolioId = QStringLiteral("select gen_id(ALG_ROWID_MAIN,1) from rdb$database");
[[nodiscard]] QString PortfolioByName(const QString& name);
/// Deletes the header and the holdings of the named portfolio in one statement.
[[nodiscard]] QString DeleteRecord(const QString& name);

/// Holdings.
inline const QString kAllHoldings = QStringLiteral("select * from alg_comdetail");
inline const QString kCountHoldings = QStringLiteral("select Count(*) from alg_comdetail");
inline const QString kHeldCodes = QStringLiteral("select distinct SECUCODE from alg_comdetail");
inline const QString kHoldingsForNowValues =
    QStringLiteral("select  SECUCODE,Mainid,PZSL from alg_comdetail order by MainId");
inline const QString kHoldingsForPreviousCloses =
    QStringLiteral("select PZSL,MAINID,SecuCode from alg_comdetail order by MAINID");
inline const QString kSavedHoldingsForCloses = QStringLiteral(
    "select MainID,SecuCode,PZSL from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = 1) "
    "order by MainID");
inline const QString kPortfolioCosts =
    QStringLiteral("select MainId,Sum(PZSL*BUYPRICE) as sum_value from alg_comdetail group by MainId");
[[nodiscard]] QString HoldingsOf(const QString& portfolioId);
[[nodiscard]] QString CodesOf(const QString& portfolioId);

/// The bank's one-year time-deposit rate, in percent.
inline const QString kOneYearDepositRate =
    QStringLiteral("select INTEREST from  alg_rmbinterestrate where DEPOSITTYPE = '定期存款整存整取' and term= '一年'");

/// Portfolios of the editor: those not saved yet. Names and numbers stand in the statements as they were typed.
inline const QString kUnsavedPortfolios = QStringLiteral("select * from alg_commain where SAVEFLAG <> 1 order by ID");
[[nodiscard]] QString CountOfName(const QString& name);
/// How many portfolios with another id have the name.
[[nodiscard]] QString CountOfNameElsewhere(const QString& name, std::int64_t portfolioId);
[[nodiscard]] QString IdOfName(const QString& name);
[[nodiscard]] QString FinishedOfName(const QString& name);
[[nodiscard]] QString SavePortfolio(const QString& name);
[[nodiscard]] QString DeletePortfolio(std::int64_t portfolioId);
[[nodiscard]] QString DeletePortfolioByName(const QString& name);
[[nodiscard]] QString DeleteHoldings(std::int64_t portfolioId);
/// A header without figures, unfinished and unsaved.
[[nodiscard]] QString InsertPortfolio(std::int64_t id, const QString& name, const QString& indexClose,
                                      const QString& editDate);
/// A holding whose id comes from the generator. `code` is a code number, `weight` a fraction.
[[nodiscard]] QString InsertHolding(std::int64_t portfolioId, const QString& code, const QString& quantity,
                                    const QString& weight, const QString& buyPrice);
/// Takes back the holdings of a portfolio that was not stored.
[[nodiscard]] QString UndoHoldings(std::int64_t portfolioId);
/// The header of a proposed portfolio: saved and unfinished.
struct ProposalTexts {
  QString id, style, targetReturn, variance, beta, indexClose, editDate, name;
};
[[nodiscard]] QString InsertProposal(const ProposalTexts& proposal);
/// An unsaved, unfinished copy of a portfolio under another id and name, and of what it holds. It was bought on the
/// same day at the same prices.
[[nodiscard]] QString CopyPortfolio(std::int64_t id, std::int64_t copyId, const QString& copyName);
[[nodiscard]] QString NameOfPortfolio(std::int64_t portfolioId);
[[nodiscard]] QString CopyHoldings(std::int64_t portfolioId, std::int64_t copyId);

/// Statistics.
inline const QString kLatestDay = QStringLiteral("select Max(HQDate) from alg_stockstatistic where hqtype = 0");
[[nodiscard]] QString LatestDayOf(const QString& code);
enum class PeriodType { Week = 1, Month = 2 };
/// Closes of the held securities whose period ends inside the range.
[[nodiscard]] QString HeldCloses(PeriodType type, const TDayRange& range);

/// Exchange files: rows with their own ids, then the generators moved past them. All values are texts of the file.
struct HoldingTexts {
  QString id, portfolioId, code, quantity, weight, buyPrice;
};
[[nodiscard]] QString RestoreHolding(const HoldingTexts& holding);
struct PortfolioTexts {
  QString id, name, indexClose, editDate, saveFlag;
};
/// The figures are stored as 0 and unfinished: the statistics engine makes them again.
[[nodiscard]] QString RestorePortfolio(const PortfolioTexts& portfolio);
[[nodiscard]] QString SetHoldingGenerator(qint64 value);
[[nodiscard]] QString SetPortfolioGenerator(qint64 value);

/// A text as a literal that keeps every character: single quotes are doubled. For texts of files, which must survive as
/// they are; names that a view takes from the user are pasted without it.
[[nodiscard]] QString TextLiteral(const QString& text);

/// Which database this is, where it says so: 1 for the first when it can, ID and PLACE for the second.
inline const QString kCountIdentityTables =
    QStringLiteral("select count(*) from rdb$relations where rdb$relation_name = 'HOLDWISE_IDENTITY'");
inline const QString kIdentity =
    QStringLiteral("select ID,rdb$get_context('SYSTEM','DB_NAME') as PLACE from holdwise_identity");

/// Index risk data and the stress test.
inline const QString kDeviations =
    QStringLiteral("select distinct secucode,sylbzc from alg_stockstatistic where Hqtype = 0 order by secucode");
inline const QString kSavedHoldings = QStringLiteral(
    "select * from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG = 1) order by MainID");
inline const QString kUnsavedHoldings = QStringLiteral(
    "select * from alg_comdetail where MainID in (select ID from alg_commain where SAVEFLAG <> 1) order by MainID");
/// Closes of an index (1, 399001, 399300) and the closes before them, latest day first.
[[nodiscard]] QString IndexCloses(int indexNumber);
[[nodiscard]] QString IndexOldCloses(int indexNumber);

/// Recalculation: which portfolios are unfinished, what they hold, and the procedures that finish them.
inline const QString kCountUnfinished = QStringLiteral("select Count(ID) from alg_commain where isFinished = 0");
inline const QString kCountUnfinishedSaved =
    QStringLiteral("select Count(ID) from alg_commain where isFinished = 0 and SAVEFLAG = 1");
inline const QString kCountUnfinishedParts = QStringLiteral("select count(ID) from alg_commain where isFinished = 0 ");
inline const QString kUnfinishedPortfolios = QStringLiteral("select ID from alg_commain where isFinished = 0");
inline const QString kUnfinishedCodes = QStringLiteral(
    "select distinct secucode from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished = 0");
inline const QString kCountUnfinishedCodes = QStringLiteral(
    "select count(distinct secucode) from alg_comdetail a,alg_commain b where a.Mainid = b.Id and b.isFinished = 0 ");
/// What the stored figures of portfolios lack: those to be named, and the first of the days that the index's daily rows
/// stand for.
[[nodiscard]] QString IncompletePortfolios(bool areSaved);
inline const QString kIndexFirstDay = QStringLiteral(
    "select first 1 coalesce(STARTDATE, 0) from alg_stockstatistic where SECUCODE = 1 and HQTYPE = 0 order by HQDATE "
    "desc");
/// The last day but one on which the index has a return.
inline const QString kIndexLastButOne = QStringLiteral(
    "select first 1 skip 1 HQDATE from alg_stockstatistic where SECUCODE = 1 and HQTYPE = 0 and (OLDCLOSEPRICE <> 0 or "
    "GGQJSYL <> 0) order by HQDATE desc");
/// Of the index and of the securities held in portfolios: the end of their daily rows (WINDOWEND, null without
/// rows), whether there is a return on the first day or later (HASRETURN, null without), and whether there is one not
/// later than the last day but one (HASTWODAYS, null without).
[[nodiscard]] QString DailyRowsSince(std::int64_t firstDay, std::int64_t lastButOne);
/// Of saved portfolios, latest first: those bought after `today` ("YYYY-MM-DD") on data that reached further (KNOWNTO),
/// and those whose index level was the close of the day of purchase while the market's close of that day (MARKETCLOSE,
/// else null) is another one by now.
[[nodiscard]] QString DoubtfulPurchases(const QString& today);
/// `today` is the host's current date, "YYYY-MM-DD".
[[nodiscard]] QString FirstCalculation(const QString& today);
[[nodiscard]] QString CalculatePortfolio(const QString& portfolioId);
/// Marks every portfolio unfinished whose figures were calculated for another edition of the data.
[[nodiscard]] QString MarkOtherEditions(const QString& edition);
/// After CalculatePortfolio: notes the edition it was calculated for and counts as LACKING what of the index and the
/// holdings was written with another one, and an index whose window does not end on `lastDay`. Empty or 0 (not both):
/// not known, not compared.
[[nodiscard]] QString NoteEdition(const QString& portfolioId, const QString& edition, int lastDay);
/// The edition of the rows of a security.
[[nodiscard]] QString SetStatisticEdition(const QString& code, const QString& edition);
/// SECUCODE of those whose rows were written with that edition.
[[nodiscard]] QString CodesOfEdition(const QString& edition);

/// Base data. All values are texts that were checked to be plain numbers. Those of a row are not QStrings: a thousand
/// files have four million, and most of them fit into a std::string without memory of its own.
struct StatisticTexts {
  std::string code, closePrice, hqType, rowId, periodReturn, meanReturn, hqDate, oldClosePrice, deviation, isLastDay;
  std::string startDate, endDate;
};
[[nodiscard]] QString InsertStatistic(const StatisticTexts& row);
[[nodiscard]] QString DeleteStatistics(const QString& code);
/// Rows of one security between two days, both included.
[[nodiscard]] QString DeleteStatisticsBetween(const QString& code, int fromDay, int toDay);
[[nodiscard]] QString DeleteStatisticsBefore(const QString& day, const QString& code);
[[nodiscard]] QString DeleteSeriesBefore(const QString& day, const QString& code, const QString& hqType);
[[nodiscard]] QString ClearLastDay(const QString& code);

/// Reference tables. The values of a row are literals in the order of the columns.
inline const QString kDeleteInterestRates = QStringLiteral("delete from alg_rmbinterestrate");
inline const QString kDeleteEstimateValues = QStringLiteral("delete from ALG_STOCKESTIMATEVALUE");
[[nodiscard]] QString InsertInterestRate(const QStringList& literals);
[[nodiscard]] QString InsertEstimateValue(const QString& id, const QString& codeLiteral, const QString& price);

}  // namespace holdwise::sql
