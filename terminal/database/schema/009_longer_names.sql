/* SPDX-License-Identifier: MIT */
/* Forty characters as a person counts them: the marks that belong to a character are characters of the column. */
alter table alg_commain alter column COMNAME type varchar(160);
