/* SPDX-License-Identifier: MIT */
/* The procedure that asks for calculations asks once where the date has no row of the index. */

set term ^ ;

/* Marks every portfolio unfinished whose figures are older than today ("YYYY-MM-DD"). Figures end with the latest row
   of the index, so on a date without one they stay older whatever is calculated. What has been asked for on a date is
   therefore not asked for again on this connection once the index has been loaded since, or is not to be had at all. */
create or alter procedure INITFIRSTCALC (today varchar(10))
as
  declare day_text varchar(10);
  declare calendar_day date;
  declare day_number integer;
  declare asked varchar(40);
  declare loaded bigint;
begin
  day_text = trim(today);
  if (day_text is null or day_text not like '____-__-__') then
    exception holdwise_bad_date;
  calendar_day = cast(day_text as date);
  day_number = extract(year from calendar_day) * 10000 + extract(month from calendar_day) * 100
    + extract(day from calendar_day);

  /* The date and the transaction that asked; a row's version is the transaction that wrote it. */
  asked = rdb$get_context('USER_SESSION', 'FIRST_CALCULATION');
  if (substring(asked from 1 for 10) = day_text) then
  begin
    select first 1 rdb$record_version from alg_stockstatistic where secucode = 1 and hqtype = 0 order by hqdate desc
      into :loaded;
    if (loaded is null or loaded > cast(substring(asked from 12) as bigint)) then exit;
  end
  rdb$set_context('USER_SESSION', 'FIRST_CALCULATION', day_text || ' ' || current_transaction);

  update alg_commain set ISFINISHED = 0
    where ISFINISHED <> 0 and (CALCDATE is null or CALCDATE < :day_number);
end^

set term ; ^
