// SPDX-License-Identifier: MIT
#include "window/splitter_memory.h"

#include <QApplication>
#include <QEvent>
#include <QSettings>
#include <QSplitter>
#include <QTimer>
#include <algorithm>
#include <numeric>

namespace holdwise {
namespace {

/// What the pane that stretches keeps at least.
constexpr int kNarrowestPane = 120;

QString KeyOf(const QSplitter& splitter) {
  return QStringLiteral("splitters/") + splitter.objectName();
}

int LengthOf(const QList<int>& sizes) {
  int length = 0;
  for (const int size : sizes) length += size;
  return length;
}

}  // namespace

SplitterMemory::SplitterMemory(QSettings& settings) : settings_(settings) {
  qApp->installEventFilter(this);
}

bool SplitterMemory::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Show) return false;
  auto* splitter = qobject_cast<QSplitter*>(watched);
  if (splitter == nullptr || splitter->objectName().isEmpty() || !followed_.insert(splitter).second) return false;
  // Its size stands once what is shown with it has been laid out, which is before anything is painted.
  QTimer::singleShot(0, splitter, [this, splitter] {
    Restore(*splitter);
    Follow(*splitter);
  });
  return false;
}

void SplitterMemory::Restore(QSplitter& splitter) const {
  QList<int> sizes;
  for (const QVariant& size : settings_.value(KeyOf(splitter)).toList()) sizes << size.toInt();
  const QList<int> now = splitter.sizes();
  if (sizes.size() != now.size() || *std::min_element(sizes.begin(), sizes.end()) <= 0) return;
  const int length = LengthOf(now);
  // In a window of another size the pane that does not stretch keeps its size, others their share.
  const auto stretchOf = [&splitter](int pane) {
    const QSizePolicy policy = splitter.widget(pane)->sizePolicy();
    return splitter.orientation() == Qt::Horizontal ? policy.horizontalStretch() : policy.verticalStretch();
  };
  const bool isFirstFixed = sizes.size() == 2 && stretchOf(0) == 0 && stretchOf(1) > 0;
  if (isFirstFixed) {
    sizes[0] = std::min(sizes[0], std::max(length - kNarrowestPane, length / 2));
    sizes[1] = std::max(length - sizes[0], 1);
  } else {
    const qint64 whole = std::accumulate(sizes.begin(), sizes.end(), qint64{0});
    for (int& size : sizes) size = std::max(static_cast<int>(qint64{size} * length / whole), 1);
  }
  splitter.setSizes(sizes);
}

void SplitterMemory::Follow(QSplitter& splitter) {
  connect(&splitter, &QSplitter::splitterMoved, this, [this, &splitter] {
    QVariantList sizes;
    for (const int size : splitter.sizes()) sizes << size;
    settings_.setValue(KeyOf(splitter), sizes);
  });
  connect(&splitter, &QObject::destroyed, this, [this](QObject* gone) { followed_.erase(gone); });
}

}  // namespace holdwise
