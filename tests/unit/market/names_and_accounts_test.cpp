// SPDX-License-Identifier: MIT
#include "build_fixture.h"

namespace holdwise {
namespace {

// One family has the Chinese name under display_name, its initials under name; others the short name beside the full.
TEST_F(Build, OfTwoNamesTheChineseOneCounts) {
  const auto names = [this](const char* list) {
    files_.Write(QStringLiteral("securities.csv"), list);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error + outcome.rejections, "") << list;
    return Rows(QStringLiteral("securities.dat"), {"code", "name"});
  };
  const std::string wanted = "600519 贵州茅台 \n000001 平安银行 \n";
  EXPECT_EQ(names("code,display_name,name,start_date,end_date,type\n"
                  "600519.XSHG,贵州茅台,GZMT,2001-08-27,2200-01-01,stock\n"
                  "000001.XSHE,平安银行,PAYH,1991-04-03,2200-01-01,stock\n"),
            wanted);
  EXPECT_EQ(names("code,name,display_name\n600519,GZMT,贵州茅台\n000001,平安银行,nan\n"), wanted);
  EXPECT_EQ(names("代码,证券名称,证券简称\n600519,贵州茅台酒股份有限公司,贵州茅台\n000001,平安银行,平安银行\n"),
            wanted);
  EXPECT_EQ(names("代码,证券简称,证券名称\n600519,贵州茅台,Kweichow Moutai\n000001,PAB,平安银行\n"), wanted);
  std::string understood;
  for (const QString& line : CheckInputs(options_).understood) understood += line.toStdString() + "\n";
  EXPECT_NE(understood.find("代码=代码，名称=证券简称，名称=证券名称，名称不同时取中文的\n"), std::string::npos)
      << understood;
  // What a security is called may differ, its code may not.
  files_.Write(QStringLiteral("securities.csv"), "code,symbol,name\n600519,600518,贵州茅台\n000001,000001,平安银行\n");
  EXPECT_EQ(Run().rejections,
            "securities.csv:2: 列“code”与“symbol”不一致：“600519”，“600518”\n"
            "bars/600519.csv: 代码不在证券表中\n");
}

// Figures of the folder are ten thousand times those of the file.
TEST_F(Build, AccountsInTheWordsOfTheirSources) {
  options_.accountsFile = files_.Path(QStringLiteral("accounts.csv"));
  const auto accounts = [this] {
    return Rows(QStringLiteral("accounts.dat"), {"code_number", "eps", "net_asset_per_share", "total_shares"});
  };
  const char* lists[] = {
      "ts_code,ann_date,end_date,eps,dt_eps,bps\n600519.SH,20231028,20231231,62.5,62,171.75\n"
      "600519.SH,20231028,20230930,40,39,160\n600519.SH,20231028,20231231,62.5,62,171.75\n"
      "000001.SZ,20231028,20231231,-0.25,0,20\n000001.SZ,20240420,20240331,9,0,99\n000002.SZ,20231028,20231231,1,1,1\n",
      "序号,股票代码,股票简称,每股收益,每股净资产,所处行业\n1,600519,贵州茅台,62.5,171.75,白酒\n"
      "2,000001,平安银行,-0.25,20,银行\n",
  };
  for (const char* list : lists) {
    files_.Write(QStringLiteral("accounts.csv"), list);
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.error + outcome.rejections, "") << list;
    EXPECT_EQ(accounts(), "1000001 -2500 200000 0 \n1600519 625000 1717500 0 \n") << list;
  }
  files_.Write(QStringLiteral("accounts.csv"),
               "code,eps,net_asset_per_share,total_shares\n600519,1,2,1256197800\n600519,1,3,1256197800\n000001,,20,1\n"
               "000001,x,20,1\n000001,1,20,-1\nx,1,1,1\n");
  EXPECT_EQ(Run().rejections,
            "accounts.csv:3: 代码 600519 重复，数值不同\naccounts.csv:4: 每股收益缺失\n"
            "accounts.csv:5: 每股收益不是数字“x”\naccounts.csv:6: 总股本不是数字或为负数“-1”\n"
            "accounts.csv:7: 不是沪深证券代码“x”\n");
  EXPECT_EQ(accounts(), "1600519 10000 20000 12561978000000 \n");

  options_.accountsFile.clear();
  EXPECT_EQ(Run().error, "");
  EXPECT_EQ(accounts(), "1600519 10000 20000 12561978000000 \n") << "those of the folder stay";
  options_.accountsFile = files_.Path(QStringLiteral("accounts.csv"));
  files_.Write(QStringLiteral("accounts.csv"), "code,eps,bps\n600519,,\n");
  EXPECT_TRUE(Run().error.starts_with("没有可用的每股指标")) << Run().error;
  EXPECT_EQ(accounts(), "1600519 10000 20000 12561978000000 \n");
}

}  // namespace
}  // namespace holdwise
