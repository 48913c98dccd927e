/* SPDX-License-Identifier: MIT */
/* By date every row of a file has a page of its own in the index, and each of them is written with the file. Rows are
   looked up by security. */
drop index alg_stockstatistic_latest;
