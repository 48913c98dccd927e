/* SPDX-License-Identifier: MIT */
/* The two procedures that keep the figures of the portfolios. */

/* Date (YYYYMMDD) of the latest index row the stored figures rest on; null while there are none. */
alter table alg_commain add CALCDATE integer;

create exception holdwise_bad_date 'The date is not in the form YYYY-MM-DD';

set term ^ ;

/* Marks every portfolio unfinished whose figures are older than today ("YYYY-MM-DD"). */
create procedure INITFIRSTCALC (today varchar(10))
as
  declare day_text varchar(10);
  declare calendar_day date;
  declare day_number integer;
begin
  day_text = trim(today);
  if (day_text is null or day_text not like '____-__-__') then
    exception holdwise_bad_date;
  calendar_day = cast(day_text as date);
  day_number = extract(year from calendar_day) * 10000 + extract(month from calendar_day) * 100
    + extract(day from calendar_day);
  update alg_commain set ISFINISHED = 0
    where ISFINISHED <> 0 and (CALCDATE is null or CALCDATE < :day_number);
end^

/* Figures of one portfolio over the days of the index, written to its header; clears its unfinished mark.
   A day without a row of a holding counts 0 for it; holdings without any daily row are left out and the weights of the
   others scaled to 1. Means and centred sums are carried forward row by row (Welford), because sums of squares lose
   the digits that small returns have. */
create procedure SP_GETBETA (index_code integer, portfolio integer)
as
  declare first_day integer;
  declare last_day integer;
  declare latest_day integer;
  declare weight_sum double precision;
  declare rf double precision = 0;
  declare n integer = 0;
  declare rm double precision;
  declare rp double precision;
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
  select first 1 hqdate, coalesce(startdate, 0), coalesce(enddate, 0) from alg_stockstatistic
    where secucode = :index_code and hqtype = 0 order by hqdate desc
    into :latest_day, :first_day, :last_day;
  /* A file without window dates stores 0. */
  if (last_day = 0) then last_day = 99999999;

  select sum(d.PZBL) from alg_comdetail d where d.MAINID = :portfolio
    and exists (select 1 from alg_stockstatistic s where s.secucode = d.SecuCode and s.hqtype = 0)
    into :weight_sum;

  /* The row the views read as well. */
  select first 1 INTEREST / 100e0 / 250e0 from alg_rmbinterestrate
    where DEPOSITTYPE = '定期存款整存整取' and TERM = '一年'
    into :rf;
  rf = coalesce(rf, 0);

  if (latest_day is not null and weight_sum <> 0) then
  begin
    /* The oldest bar of all has no previous close and therefore no return. The left join keeps the engine from walking
       all securities' rows first, as it does while its index statistics still tell of an empty table. */
    for select max(r.market), sum(r.share) / :weight_sum from (
        select i.hqdate, i.ggqjsyl as market, cast(0 as double precision) as share from alg_stockstatistic i
          where i.secucode = :index_code and i.hqtype = 0 and i.hqdate between :first_day and :last_day
            and (i.oldcloseprice <> 0 or i.ggqjsyl <> 0)
        union all
        select s.hqdate, cast(null as double precision), d.PZBL * s.ggqjsyl from alg_comdetail d
          left join alg_stockstatistic s on s.secucode = d.SecuCode and s.hqtype = 0
            and s.hqdate between :first_day and :last_day
          where d.MAINID = :portfolio) r
      group by r.hqdate having max(r.market) is not null
      into :rm, :rp
    do
    begin
      n = n + 1;
      step_m = rm - mean_m;
      step_p = rp - mean_p;
      mean_m = mean_m + step_m / n;
      mean_p = mean_p + step_p / n;
      square_m = square_m + step_m * (rm - mean_m);
      square_p = square_p + step_p * (rp - mean_p);
      cross_mp = cross_mp + step_m * (rp - mean_p);
    end
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
  end

  update alg_commain set FC = :variance, ZHBZC = :deviation, BETA = :beta, ALPHA = :alpha, SHARP = :sharp,
      TREYNOR = :treynor, ISFINISHED = 1, CALCDATE = :latest_day
    where ID = :portfolio;
end^

set term ; ^
