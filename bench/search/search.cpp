// SPDX-License-Identifier: MIT
// The quick entry over as many shares as the two markets have: what a typed character costs, with finding, filling the
// list and painting it, for texts that find little and such that find nearly everything.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <string>

#include "holdwise/market/pinyin.h"
#include "offscreen.h"
#include "window/quick_entry.h"

namespace holdwise {
namespace {

constexpr int kSecurities = 5500;

QString NameOf(int code) {
  static const QString characters = QStringLiteral("中国银行电力科技股份新能源材料医药生物信息电子金融证券化工机械");
  QString name;
  for (int place = 0, rest = code; place < 4; ++place, rest = rest * 31 + 17) {
    name += characters[(rest & 0xFFFF) % characters.size()];
  }
  return name;
}

SecuritySearch AllSecurities() {
  std::vector<SecurityEntry> entries;
  for (int place = 0; place < kSecurities; ++place) {
    const int code = 600000 + place;
    const QString name = NameOf(code);
    entries.push_back({1000000 + code, QString::number(code), name, PinyinInitials(name)});
  }
  return SecuritySearch(std::move(entries));
}

void TypedCharacter(benchmark::State& state, const std::string& typed) {
  QMainWindow window;
  window.setCentralWidget(new QWidget);
  window.centralWidget()->setFocusPolicy(Qt::StrongFocus);
  window.resize(1280, 800);
  QuickEntryActions actions;
  actions.makeSearch = AllSecurities;
  actions.choose = [](int) {};
  actions.isOwn = [](int codeNumber) { return codeNumber % 2 == 0; };
  actions.canBeOwn = [](int) { return true; };
  actions.toggleOwn = [](int) {};
  QuickEntry entry(&window, std::move(actions));
  window.show();
  window.activateWindow();
  window.centralWidget()->setFocus();
  const auto type = [](QWidget* target, char character) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(QLatin1Char(character)));
    QApplication::sendEvent(target, &press);
    QApplication::processEvents();
  };
  type(window.centralWidget(), typed.front());
  auto* text = entry.findChild<QLineEdit*>();
  if (!entry.isVisible()) return state.SkipWithError("the entry did not open");
  for ([[maybe_unused]] const auto step : state) {
    for (const char character : typed) type(text, character);
    state.PauseTiming();
    text->clear();
    QApplication::processEvents();
    state.ResumeTiming();
  }
  state.counters["per_character"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(typed.size()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK_CAPTURE(TypedCharacter, digits, "600519")->UseRealTime();
BENCHMARK_CAPTURE(TypedCharacter, initials, "zgyh")->UseRealTime();
BENCHMARK_CAPTURE(TypedCharacter, everything, "6")->UseRealTime();
BENCHMARK_CAPTURE(TypedCharacter, nothing, "qqq")->UseRealTime();

}  // namespace
}  // namespace holdwise

int main(int argc, char** argv) {
  return holdwise::bench::RunOffscreen(argc, argv);
}
