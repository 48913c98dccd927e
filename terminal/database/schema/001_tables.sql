/* SPDX-License-Identifier: MIT */
/* Tables, generators and indexes. */

/* No foreign key from holdings to portfolios: holdings are written before their header. No unique name either: an
   exchange file may bring two portfolios of one name. */
create table alg_commain (
  ID integer not null primary key,
  COMNAME varchar(40),
  ZHFG varchar(40),
  ZSCLOSEPRICE double precision,
  MBSYL double precision,
  FC double precision,
  BETA double precision,
  ZHBZC double precision,
  ALPHA double precision,
  SHARP double precision,
  TREYNOR double precision,
  ISFINISHED integer,
  EDITDATE varchar(10),
  SAVEFLAG integer
);
create index alg_commain_comname on alg_commain (COMNAME);
create index alg_commain_isfinished on alg_commain (ISFINISHED);
create index alg_commain_saveflag on alg_commain (SAVEFLAG);

create table alg_comdetail (
  ID integer not null primary key,
  MAINID integer,
  SecuCode integer,
  PZSL integer,
  PZBL double precision,
  BUYPRICE double precision
);
create index alg_comdetail_mainid on alg_comdetail (MAINID);
create index alg_comdetail_secucode on alg_comdetail (SecuCode);

/* No key: a file of the current day may bring a date that is stored already. */
create table alg_stockstatistic (
  secucode integer,
  closeprice double precision,
  hqtype integer,
  rowid integer,
  ggqjsyl double precision,
  pjsyl double precision,
  hqdate integer,
  oldcloseprice double precision,
  sylbzc double precision,
  islastday integer,
  startdate integer,
  enddate integer
);
create descending index alg_stockstatistic_series on alg_stockstatistic (secucode, hqtype, hqdate);
create descending index alg_stockstatistic_latest on alg_stockstatistic (hqtype, hqdate);

/* The two reference tables hold exactly the rows of their files, so their numbers are not keys either. */
create table alg_rmbinterestrate (
  ID integer,
  SOURCEID integer,
  SOURCEDB varchar(64),
  SOURCETABLE varchar(64),
  UPDATEID integer,
  CTIME timestamp,
  UPTIME timestamp,
  ISVAILD varchar(16),
  REMARK varchar(255),
  DEPOSITTYPE varchar(64),
  TERM varchar(64),
  INTERESTCHANGEDATE timestamp,
  INTEREST double precision,
  INTERESTCODE varchar(64)
);

create table ALG_STOCKESTIMATEVALUE (
  ID integer,
  SECUCODE varchar(16),
  CTIME integer,
  PRICE double precision
);
create index alg_stockestimatevalue_secucode on ALG_STOCKESTIMATEVALUE (SECUCODE);

create generator ALG_ROWID_MAIN;
create generator ALG_ROWID_DETAIL;
