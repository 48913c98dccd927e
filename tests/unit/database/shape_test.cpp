// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "database/statements/statement_shape.h"

using holdwise::firebird::StatementKind;
using holdwise::firebird::StatementShape;

namespace {

struct ShapeCase {
  const char* name;
  const char* sql;
  const char* shape;
  std::vector<std::string> literals;
};

class Shapes : public testing::TestWithParam<ShapeCase> {};

TEST_P(Shapes, LiteralsInValuePositionsAreTakenOut) {
  StatementShape shape;
  shape.Read(GetParam().sql);
  EXPECT_EQ(shape.Text(), GetParam().shape);
  std::vector<std::string> literals;
  for (const auto& literal : shape.Literals()) literals.emplace_back(literal.text);
  EXPECT_EQ(literals, GetParam().literals);
}

const ShapeCase kShapeCases[] = {
    {"valueList",
     "insert into t (a,b,c)values(1, 'x y',-0.5)",
     "insert into t (a,b,c)values(?, ?,?)",
     {"1", "x y", "-0.5"}},
    {"exponentAndPlus",
     "insert into t values(1E-5,+2,.5,6.)",
     "insert into t values(?,?,?,?)",
     {"1E-5", "+2", ".5", "6."}},
    {"callStaysOtherValuesGo",
     "insert into t values (gen_id(G,1),17,'a')",
     "insert into t values (gen_id(G,1),?,?)",
     {"17", "a"}},
    {"expressionStays", "insert into t values (1+2,3)", "insert into t values (1+2,?)", {"3"}},
    {"doubledQuotes", "insert into t values ('it''s')", "insert into t values (?)", {"it''s"}},
    {"commaAndBracketInText", "insert into t values ('a,(b)',2)", "insert into t values (?,?)", {"a,(b)", "2"}},
    {"comments", "insert into t /* 'x' 1 */ values (1) -- 2", "insert into t /* 'x' 1 */ values (?) -- 2", {"1"}},
    {"quotedName", "select a from \"T 1\" where \"x'1\" = 5", "select a from \"T 1\" where \"x'1\" = ?", {"5"}},
    {"nameWithDigits", "delete from t1 where c2 = 3", "delete from t1 where c2 = ?", {"3"}},
    {"conditions",
     "select a from t where x=1 and y <> 'b' or z>=-2.5",
     "select a from t where x=? and y <> ? or z>=?",
     {"1", "b", "-2.5"}},
    {"brackets",
     "select a from t where (x=1) and (y = 2) order by z desc",
     "select a from t where (x=?) and (y = ?) order by z desc",
     {"1", "2"}},
    {"between",
     "delete from t where d between 20250101 and 20250102 and c = 7",
     "delete from t where d between ? and ? and c = ?",
     {"20250101", "20250102", "7"}},
    {"inList", "select a from t where x in (1,2,3)", "select a from t where x in (?,?,?)", {"1", "2", "3"}},
    {"subselect",
     "select a from t where x in (select b from u where f = 1) order by a",
     "select a from t where x in (select b from u where f = ?) order by a",
     {"1"}},
    {"selectListStays", "select t.*,1 as Change from t", "select t.*,1 as Change from t", {}},
    {"orderAndRowsStay",
     "select first 5 a from t where b = 2 order by 1 rows 3",
     "select first 5 a from t where b = ? order by 1 rows 3",
     {"2"}},
    {"update", "Update t set a = 1, b='c' where d ='e'", "Update t set a = ?, b=? where d =?", {"1", "c", "e"}},
    {"updateExpressionStays", "update t set a = a + 1 where b = 2", "update t set a = a + 1 where b = ?", {"2"}},
    {"procedure", "execute procedure SP_GETBETA(1,-7)", "execute procedure SP_GETBETA(?,?)", {"1", "-7"}},
    {"likeStays", "select a from t where b like 'x%' and c = 1", "select a from t where b like 'x%' and c = ?", {"1"}},
    {"subtractionIsNoSign",
     "select a from t where b -1 = 2 and c = d -3",
     "select a from t where b -1 = ? and c = d -3",
     {"2"}},
    {"typedTextStays",
     "select a from t where b = date '2026-01-01' and c = x'41'",
     "select a from t where b = date '2026-01-01' and c = x'41'",
     {}},
    {"alternativeQuotes", "insert into t values (q'{it's}', 2)", "insert into t values (q'{it's}', ?)", {"2"}},
    {"hexadecimalStays", "insert into t values (0x1F, 2)", "insert into t values (0x1F, ?)", {"2"}},
    {"functionStays",
     "select a from t where b = cast('5' as integer)",
     "select a from t where b = cast('5' as integer)",
     {}},
    {"having",
     "select a, count(*) from t group by a having count(*) > 1",
     "select a, count(*) from t group by a having count(*) > ?",
     {"1"}},
    {"join",
     "select a from t join u on t.i = u.i and u.k = 3 where t.l = 4",
     "select a from t join u on t.i = u.i and u.k = ? where t.l = ?",
     {"3", "4"}},
    {"openQuote", "insert into t values ('a", "insert into t values ('a", {}},
    {"generator", "SET GENERATOR G TO 5", "SET GENERATOR G TO 5", {}},
    {"block",
     "execute block as begin delete from t where a = 1; end",
     "execute block as begin delete from t where a = 1; end",
     {}},
    {"empty", "", "", {}},
};

INSTANTIATE_TEST_SUITE_P(Statements, Shapes, testing::ValuesIn(kShapeCases),
                         [](const auto& shapeCase) { return std::string(shapeCase.param.name); });

TEST(StatementShape, KindFollowsTheFirstWords) {
  const auto kindOf = [](const char* sql) {
    StatementShape shape;
    shape.Read(sql);
    return shape.Kind();
  };
  EXPECT_EQ(kindOf(" \n-- c\nSELECT 1 from t"), StatementKind::Select);
  EXPECT_EQ(kindOf("with a as (select 1 x from t) select * from a"), StatementKind::Select);
  EXPECT_EQ(kindOf("update or insert into t values (1)"), StatementKind::Change);
  EXPECT_EQ(kindOf("Execute Procedure P(1)"), StatementKind::Change);
  EXPECT_EQ(kindOf("execute block as begin end"), StatementKind::Plain);
  EXPECT_EQ(kindOf("set generator g to 1"), StatementKind::Plain);
  EXPECT_EQ(kindOf("create table t (a integer)"), StatementKind::Definition);
}

struct Reading {
  std::string text;
  std::vector<std::string> literals;
  StatementKind kind;
  bool operator==(const Reading&) const = default;
};

Reading ReadBy(StatementShape& shape, const std::string& sql) {
  shape.Read(sql);
  Reading reading{shape.Text(), {}, shape.Kind()};
  for (const auto& literal : shape.Literals()) {
    reading.literals.push_back(std::string(literal.text) + (literal.quoted ? " quoted" : "") +
                               (literal.doubledQuotes ? " doubled" : "") + (literal.stored ? " stored" : ""));
  }
  return reading;
}

// Statements that begin alike: what takes a literal's place, or stands beside it, is not always one.
TEST(StatementShape, WhatWasReadBeforeMakesNoDifference) {
  std::vector<std::string> statements;
  for (const ShapeCase& shapeCase : kShapeCases) statements.emplace_back(shapeCase.sql);
  for (const char* value : {"1",   "-2.5e3", ".5",    "+.5e-7", "6.",   "'a'",  "'it''s'", "''",       "'a",   "",
                            "- 1", "--1",    "1x",    "0x1F",   "1e",   "1e-",  "1 2",     "1.2.3",    "-",    "+",
                            ".",   "1)",     "(1)",   "q'[a]'", "null", "1--c", "1/*c*/",  "/*c*/ 2",  "-'a'", "'a''",
                            "1 ",  "x'41'",  "\"1\"", "1'a'",   "'a'1", "?",    "-\n1",    "date '1'", "1;",   "a"}) {
    const std::string text(value);
    statements.push_back("insert into t values (" + text + ",7)");
    statements.push_back("insert into t values (7," + text + ")");
    statements.push_back("delete from t where a=" + text);
    statements.push_back("delete from t where a between" + text + "and 7");
    statements.push_back("delete from t where a between 7 and" + text + " or b = 1");
  }
  for (const std::string& before : statements) {
    for (const std::string& sql : statements) {
      StatementShape used;
      used.Read(before);
      StatementShape fresh;
      ASSERT_EQ(ReadBy(used, sql), ReadBy(fresh, sql)) << sql << " after " << before;
    }
  }
}

TEST(StatementShape, StoredAndComparedLiteralsAreToldApart) {
  StatementShape shape;
  shape.Read("update t set a = 1 where b = 2");
  ASSERT_EQ(shape.Literals().size(), 2U);
  EXPECT_TRUE(shape.Literals()[0].stored);
  EXPECT_FALSE(shape.Literals()[1].stored);
}

}  // namespace
