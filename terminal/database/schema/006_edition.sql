/* SPDX-License-Identifier: MIT */
/* Figures tell the edition of the data they rest on: data of one date may be corrected. */

/* The edition with which the rows of a security were last written. */
create table alg_statisticedition (
  SECUCODE integer not null primary key,
  EDITION varchar(64)
);

/* The edition the figures were last calculated for; null while none is known. Rows of another one count as LACKING. */
alter table alg_commain add EDITION varchar(64);

set term ^ ;

/* As before, and figures that are newer than today ("YYYY-MM-DD") are marked too. */
create or alter procedure INITFIRSTCALC (today varchar(10))
as
  declare day_text varchar(10);
  declare calendar_day date;
  declare day_number integer;
  declare needed integer;
  declare asked varchar(40);
  declare loaded bigint;
  declare index_day integer;
begin
  day_text = trim(today);
  if (day_text is null or day_text not like '____-__-__') then
    exception holdwise_bad_date;
  calendar_day = cast(day_text as date);
  day_number = extract(year from calendar_day) * 10000 + extract(month from calendar_day) * 100
    + extract(day from calendar_day);
  needed = day_number;

  /* The date and the transaction that asked; a row's version is the transaction that wrote it. */
  asked = rdb$get_context('USER_SESSION', 'FIRST_CALCULATION');
  if (substring(asked from 1 for 10) = day_text) then
    select first 1 rdb$record_version, hqdate from alg_stockstatistic
      where secucode = 1 and hqtype = 0 order by hqdate desc
      into :loaded, :index_day;
  if (loaded > cast(substring(asked from 12) as bigint)) then needed = minvalue(needed, index_day);
  else rdb$set_context('USER_SESSION', 'FIRST_CALCULATION', day_text || ' ' || current_transaction);

  update alg_commain set ISFINISHED = 0
    where ISFINISHED <> 0
      and (CALCDATE is null or CALCDATE < :needed or CALCDATE > :day_number or LACKING > 0);
end^

set term ; ^
