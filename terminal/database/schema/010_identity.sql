/* SPDX-License-Identifier: MIT */
/* Which database this is: one row, written by the terminal that opens it first. What is kept beside the database names
   it, so that it is not taken for another one's. */
create table holdwise_identity (
  ID varchar(36) not null primary key
);
