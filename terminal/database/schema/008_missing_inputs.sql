/* SPDX-License-Identifier: MIT */
/* Figures lack the deposit rate when there is none, and figures of a single day are none at all.
   LACKING: how many of the index and the holdings have no rows, a window that ends before the newest one, or (holdings)
   no return inside the index's window; and one more for a portfolio with holdings while there is no one-year deposit
   rate. */

/* 1: when the figures were calculated, ZSCLOSEPRICE was the index's close of EDITDATE, to two decimals. A close that
   differs since then has been corrected; a level taken in the course of a day never was the close. */
alter table alg_commain add INDEXISCLOSE integer;

/* The newest day (YYYYMMDD) to which the index's series has reached in any calculation of the figures: data that end
   before it are older than those the portfolio was bought on. EDITDATE alone does not say it: a portfolio made at the
   weekend, on the data of Friday, carries the weekend's date. */
alter table alg_commain add KNOWNTO integer;

/* Figures calculated before know nothing of either: each is calculated again. */
update alg_commain set CALCDATE = null;

set term ^ ;

/* Figures of one portfolio, written to its header; clears its unfinished mark. Without any row of the index, or for
   holdings without two days to count, nothing is written: one return has no deviation. A holding counts on the days
   of the index from its first return inside the index's window on; a day without a row after that is a day of return 0.
   The weights of those that count on a day are scaled to 1; a day on which none counts is no day of the portfolio.
   Without the deposit rate the risk-free rate is 0, and the figures lack it. Means and centred sums are carried forward
   row by row (Welford), because sums of squares lose the digits that small returns have. */
create or alter procedure SP_GETBETA (index_code integer, portfolio integer)
as
  declare first_day integer;
  declare last_day integer;
  declare index_day integer;
  declare newest integer;
  declare index_end integer;
  declare window_end integer;
  declare has_return integer;
  declare holdings integer = 0;
  declare known integer = 0;
  declare current_ones integer = 0;
  declare oldest integer;
  declare lacking integer;
  declare rf double precision;
  declare bought_at double precision;
  declare n integer = 0;
  declare trade_day integer;
  declare rm double precision;
  declare rp double precision;
  declare share double precision;
  declare joining double precision;
  declare counting double precision = 0;
  declare step_m double precision;
  declare step_p double precision;
  declare mean_m double precision = 0;
  declare mean_p double precision = 0;
  declare square_m double precision = 0;
  declare square_p double precision = 0;
  declare cross_mp double precision = 0;
  declare variance double precision = 0;
  declare deviation double precision = 0;
  declare beta double precision = 0;
  declare alpha double precision = 0;
  declare sharp double precision = 0;
  declare treynor double precision = 0;
begin
  /* A file without window dates stores 0. */
  select first 1 coalesce(startdate, 0), coalesce(nullif(enddate, 0), 99999999), coalesce(nullif(enddate, 0), hqdate),
      hqdate
    from alg_stockstatistic where secucode = :index_code and hqtype = 0 order by hqdate desc
    into :first_day, :last_day, :index_end, :index_day;
  if (index_day is null) then exit;

  newest = index_end;
  for select (select first 1 coalesce(nullif(s.enddate, 0), s.hqdate) from alg_stockstatistic s
        where s.secucode = d.SecuCode and s.hqtype = 0 order by s.hqdate desc),
        iif(exists (select 1 from alg_stockstatistic f where f.secucode = d.SecuCode and f.hqtype = 0
          and f.hqdate between :first_day and :last_day and (f.oldcloseprice <> 0 or f.ggqjsyl <> 0)), 1, 0)
      from alg_comdetail d where d.MAINID = :portfolio
      into :window_end, :has_return
  do
  begin
    holdings = holdings + 1;
    if (window_end is null) then continue;
    known = known + 1;
    oldest = minvalue(coalesce(oldest, window_end), window_end);
    if (window_end > newest) then
    begin
      newest = window_end;
      current_ones = 0;
    end
    if (window_end = newest) then current_ones = current_ones + has_return;
  end
  if (holdings > 0 and known = 0) then exit;
  lacking = holdings - current_ones + iif(index_end < newest, 1, 0);
  oldest = iif(known < holdings, null, minvalue(coalesce(oldest, index_day), index_day));

  /* The row the views read as well. */
  select first 1 INTEREST / 100e0 / 250e0 from alg_rmbinterestrate
    where DEPOSITTYPE = '定期存款整存整取' and TERM = '一年'
    into :rf;
  if (rf is null and holdings > 0) then lacking = lacking + 1;
  rf = coalesce(rf, 0);

  /* The oldest bar of all has no previous close and therefore no return. The left join keeps the engine from walking
     all securities' rows first, as it does while its index statistics still tell of an empty table. Most holdings have
     a return on the first day of the window: the search through their rows is for the others. */
  for select r.trade_day, max(r.market), sum(r.share), sum(r.joining) from (
      select i.hqdate as trade_day, i.ggqjsyl as market, 0e0 as share, 0e0 as joining from alg_stockstatistic i
        where i.secucode = :index_code and i.hqtype = 0 and i.hqdate between :first_day and :last_day
          and (i.oldcloseprice <> 0 or i.ggqjsyl <> 0)
      union all
      select s.hqdate, cast(null as double precision), d.PZBL * s.ggqjsyl, 0e0 from alg_comdetail d
        left join alg_stockstatistic s on s.secucode = d.SecuCode and s.hqtype = 0
          and s.hqdate between :first_day and :last_day
        where d.MAINID = :portfolio
      union all
      select iif(exists (select 1 from alg_stockstatistic f where f.secucode = d.SecuCode and f.hqtype = 0
              and f.hqdate = :first_day and (f.oldcloseprice <> 0 or f.ggqjsyl <> 0)), :first_day,
            (select min(f.hqdate) from alg_stockstatistic f where f.secucode = d.SecuCode and f.hqtype = 0
              and f.hqdate between :first_day and :last_day and (f.oldcloseprice <> 0 or f.ggqjsyl <> 0))),
          cast(null as double precision), 0e0, d.PZBL
        from alg_comdetail d where d.MAINID = :portfolio) r
    group by r.trade_day order by r.trade_day
    into :trade_day, :rm, :share, :joining
  do
  begin
    if (trade_day is not null) then counting = counting + coalesce(joining, 0);
    if (rm is not null and counting <> 0) then
    begin
      n = n + 1;
      rp = coalesce(share, 0) / counting;
      step_m = rm - mean_m;
      step_p = rp - mean_p;
      mean_m = mean_m + step_m / n;
      mean_p = mean_p + step_p / n;
      square_m = square_m + step_m * (rm - mean_m);
      square_p = square_p + step_p * (rp - mean_p);
      cross_mp = cross_mp + step_m * (rp - mean_p);
    end
  end
  if (holdings > 0 and n < 2) then exit;
  if (n > 1) then
  begin
    variance = square_p / (n - 1);
    deviation = sqrt(variance);
    if (square_m > 0) then beta = cross_mp / square_m;
  end
  if (n > 0) then
  begin
    alpha = mean_p - (rf + beta * (mean_m - rf));
    if (deviation <> 0) then sharp = (mean_p - rf) / deviation;
    if (beta <> 0) then treynor = (mean_p - rf) / beta;
  end

  select first 1 s.closeprice from alg_commain m, alg_stockstatistic s
    where m.ID = :portfolio and m.EDITDATE like '____-__-__' and replace(m.EDITDATE, '-', '') similar to '[0-9]{8}'
      and s.secucode = :index_code and s.hqtype = 0 and s.hqdate = cast(replace(m.EDITDATE, '-', '') as integer)
    into :bought_at;

  update alg_commain set FC = :variance, ZHBZC = :deviation, BETA = :beta, ALPHA = :alpha, SHARP = :sharp,
      TREYNOR = :treynor, ISFINISHED = 1, CALCDATE = :oldest, LACKING = :lacking,
      INDEXISCLOSE = iif(abs(ZSCLOSEPRICE - :bought_at) < 0.0051, 1, INDEXISCLOSE),
      KNOWNTO = maxvalue(coalesce(KNOWNTO, 0), :index_end)
    where ID = :portfolio;
end^

set term ; ^
