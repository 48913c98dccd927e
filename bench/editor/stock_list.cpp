// SPDX-License-Identifier: MIT
// The stock list of the portfolio editor with as many shares as the two markets have: what loading it costs, and what a
// character costs that is typed into the code field or put into the search field by an input method. The time is that
// of the event, without painting; a second figure is with the picture. "p99_ms" is what 99 of 100 characters stay
// below.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

#include "common/frames/entry_bar.h"
#include "common/host/host_access.h"
#include "holdwise/packet/number_text.h"
#include "offscreen.h"
#include "scripted_host.h"
#include "views/zxpz/holdings_editor.h"
#include "views/zxpz/stock_picker.h"

namespace holdwise {
namespace {

/// Codes as the markets give them out, 5500 in all.
struct Block {
  int first;
  int count;
  int market;
};
constexpr Block kBlocks[] = {{600000, 1000, 1}, {601000, 400, 1}, {603000, 800, 1},  {688001, 600, 1},
                             {1, 600, 2},       {2001, 900, 2},   {300001, 1000, 2}, {301001, 200, 2}};

QString NameOf(int code) {
  static const QString characters = QStringLiteral("中国银行电力科技股份新能源材料医药生物信息电子金融证券化工机械");
  QString name;
  for (int place = 0, rest = code; place < 4; ++place, rest = rest * 31 + 17) {
    name += characters[(rest & 0xFFFF) % characters.size()];
  }
  return name;
}

class Editor {
 public:
  Editor() {
    SetModuleHost(&host_);
    for (const Block& block : kBlocks) {
      for (int code = block.first; code < block.first + block.count; ++code) {
        host_.codeNums.Add({SixDigits(code), NameOf(code), {}, block.market, {10, 10}});
      }
    }
    holdings_ = std::make_unique<HoldingsEditor>(nullptr);
    picker = std::make_unique<StockPicker>(*holdings_, nullptr);
    picker->ApplyTheme();
    picker->resize(300, 270);
    picker->show();
    picker->SelectSource(StockPicker::kAllShares);
    QApplication::processEvents();
  }
  ~Editor() {
    picker.reset();
    holdings_.reset();
    SetModuleHost(nullptr);
  }

 private:
  ScriptedHost host_;
  std::unique_ptr<HoldingsEditor> holdings_;

 public:
  std::unique_ptr<StockPicker> picker;
};

void BM_LoadAllShares(benchmark::State& state) {
  const Editor editor;
  for ([[maybe_unused]] auto turn : state) editor.picker->SelectSource(StockPicker::kAllShares);
  if (editor.picker->StringGrid2->RowCount() != 5500) state.SkipWithError("stocks are missing");
}
BENCHMARK(BM_LoadAllShares)->Unit(benchmark::kMillisecond);

/// Runs a step a turn.
template <typename Step>
void Measure(benchmark::State& state, bool paints, Step step) {
  std::vector<double> times;
  for ([[maybe_unused]] auto turn : state) {
    const auto start = std::chrono::steady_clock::now();
    step(static_cast<int>(times.size()));
    if (paints) QApplication::processEvents();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(elapsed.count());
    times.push_back(elapsed.count());
    if (!paints) QApplication::processEvents();
  }
  const auto place = times.begin() + static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
  std::nth_element(times.begin(), place, times.end());
  state.counters["p99_ms"] = benchmark::Counter(*place * 1e3);
}

void BM_TypeDigit(benchmark::State& state) {
  const Editor editor;
  EntryField& field = *editor.picker->RzEdit3;
  const QString keys = QStringLiteral("6\b60\b\b600\b\b\b300750\b\b\b\b\b\b9\b");
  Measure(state, state.range(0) == 1, [&](int round) {
    const QChar key = keys[round % keys.size()];
    const bool isBack = key == u'\b';
    QKeyEvent press(QEvent::KeyPress, isBack ? Qt::Key_Backspace : Qt::Key_0, {}, QString(isBack ? QChar() : key));
    QApplication::sendEvent(&field, &press);
  });
}
BENCHMARK(BM_TypeDigit)->ArgName("paint")->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_ComposeCharacter(benchmark::State& state) {
  const Editor editor;
  EntryField& field = *editor.picker->Search;
  const QString characters = QStringLiteral("银行科技中国");
  Measure(state, state.range(0) == 1, [&](int round) {
    if (round % 3 == 2) return field.clear();
    QInputMethodEvent commit;
    commit.setCommitString(characters.mid(round % 6, 1));
    QApplication::sendEvent(&field, &commit);
  });
}
BENCHMARK(BM_ComposeCharacter)->ArgName("paint")->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
