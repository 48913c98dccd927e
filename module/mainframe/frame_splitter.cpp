// SPDX-License-Identifier: MIT
#include "mainframe/frame_splitter.h"

#include <QPaintEvent>

namespace holdwise {
namespace {

class FrameSplitterHandle : public QSplitterHandle {
 public:
  explicit FrameSplitterHandle(FrameSplitter& owner) : QSplitterHandle(owner.orientation(), &owner), owner_(owner) {}

 protected:
  void paintEvent(QPaintEvent* event) override {
    owner_.OnPaint ? owner_.OnPaint() : QSplitterHandle::paintEvent(event);
  }

 private:
  FrameSplitter& owner_;
};

}  // namespace

QSplitterHandle* FrameSplitter::createHandle() {
  return new FrameSplitterHandle(*this);
}

}  // namespace holdwise
