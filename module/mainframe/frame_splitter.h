// SPDX-License-Identifier: MIT
#pragma once
#include <QSplitter>
#include <functional>

namespace holdwise {

/// A splitter whose handle somebody else may paint.
class FrameSplitter : public QSplitter {
 public:
  using QSplitter::QSplitter;
  /// Called while a handle is being painted, instead of the style's own painting.
  std::function<void()> OnPaint;

 protected:
  QSplitterHandle* createHandle() override;
};

}  // namespace holdwise
