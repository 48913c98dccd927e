// SPDX-License-Identifier: MIT
#include "title_hint_table.h"

namespace holdwise {
namespace {

QString T(const char* text) {
  return QString::fromUtf8(text);
}

GridHints ListOf(const char* unit, std::vector<TitleHint> titles) {
  return {T(unit), T("strngrd"), T("组合"), std::move(titles)};
}

GridHints HoldingsOf(const char* unit, std::vector<TitleHint> titles) {
  return {T(unit), T("StringGrid1"), T("成分股"), std::move(titles)};
}

// What several views say alike.

/// How long it is the maker of the data decides.
QString Window() {
  return T("统计窗口（默认最近 250 个交易日）");
}
QString WindowOfPortfolio() {
  return Window() + T("的日收益率；指数为上证指数");
}
QString WindowOfSecurity() {
  return Window() + T("的日收益率，自上市后首个收益率起；停牌日按 0 计；指数为压力测试页所选，默认上证指数");
}
QString WindowOfDeviation() {
  return Window() + T("的日收益率；停牌日按 0 计");
}
QString DailyRate() {
  return T("；rf 为每日无风险利率 = 一年期定期存款利率(%) ÷ 100 ÷ 250");
}
QString SinceSecurityBought() {
  return T("自买入日至今，未年化");
}
TitleHint NameOfPortfolio() {
  return {T("组合名称"), T("已保存的组合，最新的在最前。"), {}, {}};
}
TitleHint CodeOf(const char* title) {
  return {T(title), T("六位股票代码，单击打开该股票的分时走势。"), {}, {}};
}
TitleHint NameOf(const char* title) {
  return {T(title), T("股票名称，单击打开该股票的分时走势；“已退市”表示行情中没有这只股票。"), {}, {}};
}
TitleHint CreationDate() {
  return {T("创建日期"), T("组合买入的日期。"), {}, {}};
}
TitleHint YearRate() {
  return {T("无风险利率(%)"), T("银行一年期定期存款（整存整取）利率。"), {}, T("按年利率原样使用，不按持有天数折算")};
}

}  // namespace

ViewHints AllocationHints() {
  const QString window = WindowOfPortfolio();
  return {T("智能配置"),
          T("按资金量从数据文件中取出现成的候选组合，换算成整手（100 "
            "股）的数量，可保存其中一个。候选组合由历史价格推算得出，"
            "不代表将来的表现，不构成投资建议。"),
          {{T("Znpz"),
            T("strngrd"),
            T("候选组合"),
            {{T("序号"), T("候选组合的序号。"), {}, {}},
             {T("组合风格"), T("候选组合的风格；稳健型的方差最小。"), {}, {}},
             {T("目标收益率(%)"), T("按年计：承担大盘风险在假设下应得的长期平均；是假设，不是承诺。"),
              T("一年期定期存款利率(%) + β × 假定的大盘溢价(%)"), T("溢价由数据文件的制作者选定，默认 5%")},
             {T("方差"), T("组合日收益率的样本方差。"), T("σ² = Σ(r − r̄)² ÷ (n − 1)"), window},
             {T("Beta系数"), T("指数涨跌 1% 时组合平均涨跌的百分数。"), T("β = cov(r, rm) ÷ var(rm)"), window},
             {T("操作"), T("保存（F4）选中的候选组合，保存后进入组合跟踪和组合评价。"), {}, {}}}},
           HoldingsOf("Znpz", {CodeOf("代码"),
                               NameOf("名称"),
                               {T("数量(股)"), T("资金按比例能买的整手股数，不足一手的部分舍去。"),
                                T("⌊比例 × 资金量 ÷ 价格 ÷ 100⌋ × 100"), T("价格为收盘价或最新价")},
                               {T("比例(%)"), T("该股占资金的目标比例；鼠标停在单元格上可见取整后的误差。"), {}, {}}}),
           {T("Znstocklist"),
            T("strngrd"),
            T("智能股票池"),
            {{T("代码"), T("六位股票代码，选中一行打开该股票的分时走势。"), {}, {}},
             {T("名称"), T("股票名称。"), {}, {}},
             {T("日期"), T("估值的日期。"), {}, {}},
             {T("估值"), T("数据文件给出的每股估值（元）。"), {}, {}},
             {T("昨收"), T("昨日收盘价（元）。"), {}, {}},
             {T("每股收益"), T("最近一期的每股收益（元）。"), {}, {}},
             {T("每股净资产"), T("最近一期的每股净资产（元）。"), {}, {}}}}}};
}

ViewHints EditorHints() {
  const TitleHint code = {T("股票代码"), T("六位股票代码。"), {}, {}};
  const TitleHint name = {T("股票名称"), T("股票名称。"), {}, {}};
  return {T("自选配置"),
          T("建立和修改自己的组合，确定后自动计算统计数据，保存后进入组合跟踪和组合评价。Ctrl+Enter 确定。"),
          {ListOf("Zxpz", {{T("序号"), T("列表中的序号。"), {}, {}},
                           {T("组合名称"), T("还没有保存的组合，最早的在最前。"), {}, {}},
                           {T("创建日期"), T("组合买入的日期；修改后为行情的当前日期。"), {}, {}},
                           {T("组合风格"), T("智能配置的组合才有。"), {}, {}},
                           {T("目标收益率(%)"), T("自选的组合没有目标，为 0。"), {}, {}},
                           {T("方差"), T("组合日收益率的样本方差；还没有计算时为 0。"), T("σ² = Σ(r − r̄)² ÷ (n − 1)"),
                            WindowOfPortfolio()},
                           {T("Beta系数"), T("指数涨跌 1% 时组合平均涨跌的百分数；还没有计算时为 0。"),
                            T("β = cov(r, rm) ÷ var(rm)"), WindowOfPortfolio()},
                           {T("操作"), T("保存（F4）、删除（Delete）、修改（F2）选中的组合。"), {}, {}}}),
           HoldingsOf("Zxpz", {{T("代码"), T("六位股票代码。"), {}, {}},
                               {T("名称"), T("股票名称；“已退市”表示行情中没有这只股票。"), {}, {}},
                               {T("数量(股)"), T("持有的股数。"), {}, {}},
                               {T("比例(%)"), T("买入时该股占组合的比重。"), T("买入价 × 数量 ÷ Σ 买入价 × 数量 × 100"),
                                T("买入时")}}),
           {T("Zxpz"),
            T("StringGrid3"),
            T("正在编辑的组合"),
            {code,
             name,
             {T("买入价(元)"), T("添加时为最新价，可以改。"), {}, {}},
             {T("数量(股)"), T("买入的股数，要自己填。"), {}, {}}}}}};
}

ViewHints PerformanceHints() {
  const QString live = T("随最新价刷新");
  return {
      T("组合表现"),
      T("组合和成分股的市值、涨跌与收益，每 3 秒随行情刷新。金额单位为元。"),
      {ListOf(
           "Zhbx",
           {NameOfPortfolio(),
            CreationDate(),
            {T("最新市值(元)"), T("全部成分股按最新价计算的市值。"), T("Σ 最新价 × 数量"), live},
            {T("日涨跌幅(%)"), T("市值比昨日收盘的变化。"), T("(最新市值 − 昨收市值) ÷ 昨收市值 × 100"), live},
            {T("周涨跌幅(%)"), T("市值比上周收盘的变化。"), T("(最新市值 − 上周收盘市值) ÷ 上周收盘市值 × 100"),
             T("上周最后一个交易日的收盘价")},
            {T("月涨跌幅(%)"), T("市值比上月收盘的变化。"), T("(最新市值 − 上月收盘市值) ÷ 上月收盘市值 × 100"),
             T("上月最后一个交易日的收盘价")},
            {T("期间收益(元)"), T("买入以来的盈亏。"), T("最新市值 − Σ 买入价 × 数量"), T("自买入日至今")},
            {T("期间收益率(%)"), T("买入以来的收益率。"), T("期间收益 ÷ Σ 买入价 × 数量 × 100"), SinceSecurityBought()},
            {T("操作"), T("删除组合。"), {}, {}}}),
       HoldingsOf("Zhbx", {CodeOf("代码"),
                           NameOf("名称"),
                           {T("所属行业"), T("股票所属行业。"), {}, {}},
                           {T("最新价(元)"), T("行情的最新成交价；停牌时为最近收盘价。"), {}, live},
                           {T("涨跌幅(%)"), T("最新价比昨日收盘的变化。"), T("(最新价 − 昨收价) ÷ 昨收价 × 100"), live},
                           {T("数量(股)"), T("持有的股数。"), {}, {}},
                           {T("比例(%)"), T("买入时该股占组合的比重。"), T("买入价 × 数量 ÷ Σ 买入价 × 数量 × 100"),
                            T("买入时")},
                           {T("日贡献(元)"), T("今日涨跌给组合带来的金额。"), T("(最新价 − 昨收价) × 数量"), live},
                           {T("周贡献(元)"), T("本周涨跌给组合带来的金额。"), T("(最新价 − 上周收盘价) × 数量"),
                            T("上周最后一个交易日的收盘价")},
                           {T("月贡献(元)"), T("本月涨跌给组合带来的金额。"), T("(最新价 − 上月收盘价) × 数量"),
                            T("上月最后一个交易日的收盘价")},
                           {T("期间收益(元)"), T("买入以来的盈亏。"), T("(最新价 − 买入价) × 数量"), T("自买入日至今")},
                           {T("期间收益率(%)"), T("买入以来的收益率。"), T("(最新价 − 买入价) ÷ 买入价 × 100"),
                            SinceSecurityBought()}})}};
}

ViewHints RiskHints() {
  return {
      T("风险计量"),
      T("由日收益率计算的风险系数。组合某日的收益率是当日有数据的成分股收益率按买入比例的加权平均。"),
      {ListOf("Fxjl", {NameOfPortfolio(),
                       {T("方差"), T("组合日收益率的样本方差。"), T("σ² = Σ(r − r̄)² ÷ (n − 1)"), WindowOfPortfolio()},
                       {T("标准差"), T("组合日收益率的波动幅度。"), T("σ = √方差"), WindowOfPortfolio()},
                       {T("Alpha系数"), T("詹森 α：承担的市场风险之外多得的日均收益。"),
                        T("α = r̄ − [rf + β × (r̄m − rf)]"), WindowOfPortfolio() + DailyRate()},
                       {T("BETA系数"), T("指数涨跌 1% 时组合平均涨跌的百分数。"), T("β = cov(r, rm) ÷ var(rm)"),
                        WindowOfPortfolio()}}),
       HoldingsOf("Fxjl",
                  {CodeOf("股票代码"),
                   NameOf("股票名称"),
                   {T("方差"), T("股票日收益率的样本方差。"), T("σ² = 标准差 × 标准差"), WindowOfDeviation()},
                   {T("标准差"), T("股票日收益率的波动幅度。"), T("σ = √[Σ(r − r̄)² ÷ (n − 1)]"), WindowOfDeviation()},
                   {T("Alpha系数"), T("詹森 α：承担的市场风险之外多得的日均收益。"), T("α = r̄ − [rf + β × (r̄m − rf)]"),
                    WindowOfSecurity() + DailyRate()},
                   {T("BETA系数"), T("指数涨跌 1% 时股票平均涨跌的百分数。"), T("β = cov(r, rm) ÷ var(rm)"),
                    WindowOfSecurity()}})}};
}

ViewHints StressHints() {
  const QString basis = T("昨收价与 β；x 为预期涨跌幅，β 针对所选指数，") + Window() + T("；没有 β 的股票按 0 计");
  return {
      T("压力测试"),
      T("假设所选指数上涨或下跌 x，每只股票按自己的 β 变动。参考指数为上证指数、深证成指或沪深300；使任何一只股票跌光"
        "（1 + β × x ≤ 0）的幅度不被接受。"),
      {ListOf("Ylcs",
              {NameOfPortfolio(),
               CreationDate(),
               {T("预期市值(元)"), T("变动后组合的市值。"), T("Σ (1 + β × x) × 昨收价 × 数量"), basis},
               {T("预期涨跌幅(%)"), T("组合按买入比例加权的变动。"), T("Σ β × x × 比例 × 100"), basis},
               {T("预期收益(元)"), T("变动后相对买入成本的盈亏。"),
                T("Σ [(昨收价 − 买入价) × 数量 + 昨收价 × β × x × 数量]"), basis},
               {T("预期收益率(%)"), T("变动后相对买入成本的收益率。"), T("预期收益 ÷ Σ 买入价 × 数量 × 100"), basis}}),
       HoldingsOf("Ylcs", {CodeOf("股票代码"),
                           NameOf("股票名称"),
                           {T("预期价(元)"), T("变动后的价格。"), T("(1 + β × x) × 昨收价"), basis},
                           {T("预期涨跌幅(%)"), T("股票的变动。"), T("β × x × 100"), basis},
                           {T("预期损益(元)"), T("变动后该股相对买入成本的盈亏。"),
                            T("(昨收价 − 买入价) × 数量 + 昨收价 × β × x × 数量"), basis}})}};
}

ViewHints EvaluationHints() {
  const auto figures = [](const QString& window) {
    return std::vector<TitleHint>{
        {T("夏普指数"), T("每承担一份总风险换来的日均超额收益。"), T("(r̄ − rf) ÷ σ"), window + DailyRate()},
        {T("特雷诺指数"), T("每承担一份市场风险换来的日均超额收益。"), T("(r̄ − rf) ÷ β"), window + DailyRate()},
        {T("Beta系数"), T("指数涨跌 1% 时平均涨跌的百分数。"), T("β = cov(r, rm) ÷ var(rm)"), window}};
  };
  const auto with = [](std::vector<TitleHint> first, const std::vector<TitleHint>& rest) {
    first.insert(first.end(), rest.begin(), rest.end());
    return first;
  };
  const QString excess = T("两者按显示的两位小数相减；持有期收益率减年利率，均未折算");
  return {
      T("总体评价"),
      T("买入以来的收益率与无风险利率相比，以及按日收益率计算的夏普、特雷诺和 Beta。"),
      {ListOf("Ztpj", with({NameOfPortfolio(),
                            {T("回报率(%)"), T("组合买入以来的收益率。"),
                             T("(最新市值 − Σ 买入价 × 数量) ÷ Σ 买入价 × 数量 × 100"), SinceSecurityBought()},
                            YearRate(),
                            {T("超额回报率(%)"), T("回报率高出无风险利率的部分。"), T("回报率 − 无风险利率"), excess}},
                           figures(WindowOfPortfolio()))),
       HoldingsOf("Ztpj",
                  with({CodeOf("股票代码"),
                        NameOf("股票名称"),
                        {T("回报率(%)"), T("股票买入以来的收益率。"), T("(最新价 − 买入价) ÷ 买入价 × 100"),
                         SinceSecurityBought()},
                        YearRate(),
                        {T("超额回报率(%)"), T("回报率高出无风险利率的部分。"), T("回报率 − 无风险利率"), excess}},
                       figures(WindowOfSecurity())))}};
}

ViewHints DecompositionHints() {
  const QString market =
      T("Rm 为上证指数自买入日至今的涨幅；rf 为一年期定期存款利率，不按持有天数折算；β、σ 取") + Window();
  return {
      T("业绩分解"),
      T("法马分解（E. F. Fama, Components of Investment Performance, 1972）：把买入以来的回报率 R 拆成无风险回报、"
        "承担市场风险应得的、风险没有充分分散应得的和选股得到的。\n\n"
        "其中 A = rf + (Rm − rf) × σp ÷ σm 是按组合总风险应得的回报率，B = rf + (Rm − rf) × β "
        "是按市场风险应得的回报率。"
        "显示的各部分按两位小数严格相加：超额 = 风险增溢 + 选择，选择 = 多样化 + 净选择。"),
      {ListOf("Yjfj", {NameOfPortfolio(),
                       {T("回报率(%)"), T("组合买入以来的收益率 R。"),
                        T("R = (最新市值 − Σ 买入价 × 数量) ÷ Σ 买入价 × 数量"), SinceSecurityBought()},
                       {T("超额回报率(%)"), T("高出无风险利率的部分。"), T("R − rf"),
                        T("rf 为一年期定期存款利率，不按持有天数折算")},
                       {T("风险增溢(%)"), T("承担市场风险应得的部分：来自大盘。"), T("B − rf = (Rm − rf) × β"), market},
                       {T("选择回报率(%)"), T("高于市场风险应得的部分：来自选股。"), T("R − B"), market},
                       {T("多样化增溢(%)"), T("因没有充分分散而多承担的风险应得的部分。"),
                        T("A − B = (Rm − rf) × (σp ÷ σm − β)"), market},
                       {T("净选择回报率(%)"), T("扣除上述风险之后选股净得的部分。"), T("R − A"), market}})}};
}

}  // namespace holdwise
