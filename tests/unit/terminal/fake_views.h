// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QByteArray>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "holdwise/sdk/catalogue.h"

namespace holdwise {

class FakeWindow : public CatalogueWindow {
 public:
  explicit FakeWindow(int looks) : looks_(looks) { frame_.resize(10, 10); }
  QWidget& Frame() override { return frame_; }
  [[nodiscard]] std::vector<GridText> Grids() const override {
    return {{"list", {"t"}, {false}, {{asked_ >= looks_ ? "settled" : "early"}}}};
  }
  [[nodiscard]] bool IsSettled() const override { return ++asked_ >= looks_; }

 private:
  int looks_;
  mutable int asked_ = 0;
  QWidget frame_;
};

/// Two views; the second has a grid that follows the portfolio. Each wait settles at the fourth question.
class FakeViews : public ViewCatalogue {
 public:
  [[nodiscard]] std::vector<View> List() const override { return {{1, "one"}, {2, "two"}}; }
  bool Show(int frameId) override {
    shown.append(frameId);
    current_ = frameId;
    asked_ = 0;
    return frameId != unshowable;
  }
  [[nodiscard]] int Current() const override { return current_; }
  [[nodiscard]] bool IsSettled() const override { return ++asked_ >= (current_ == 1 ? looksOfOne : 4); }
  [[nodiscard]] int Progress() const override { return isMoving ? asked_ : 0; }
  [[nodiscard]] QString Shortcoming() const override { return shortcoming; }
  [[nodiscard]] QStringList Incomplete() const override { return incomplete; }
  [[nodiscard]] QWidget* Frame() const override { return nullptr; }
  [[nodiscard]] std::vector<GridText> Grids() const override {
    return {{"g/1", {"t"}, {false}, {{QString::number(current_) + (current_ == 2 ? portfolio_ : QString())}}}};
  }
  [[nodiscard]] Holdings HoldingsGrid() const override {
    return current_ == 2 ? Holdings{"g/1", {"11", "12"}} : Holdings{};
  }
  bool SelectPortfolio(const QString& portfolioId) override {
    portfolio_ = '-' + portfolioId;
    place[current_] = portfolioId.toUtf8();
    asked_ = 0;
    return true;
  }
  [[nodiscard]] QByteArray Place() const override { return place[current_]; }
  void PutPlace(const QByteArray& kept) override {
    put.append(current_);
    place[current_] = kept;
  }
  [[nodiscard]] std::vector<Input> Inputs() const override { return current_ == 2 ? inputs : std::vector<Input>{}; }
  QString SetInput(const QString& name, const QString& value) override {
    set.append(name + '=' + value);
    EXPECT_TRUE(asked_ >= 4 || isRestoring()) << name.toStdString() << " is set before the view has settled";
    asked_ = 0;
    portfolio_ += ' ' + name + '=' + value;
    place[current_] = "lost";
    if (value == "bad") return "no";
    for (Input& input : inputs)
      if (input.name == name) input.value = input.inForce = value;
    return {};
  }
  QString PutInput(const QString& name, const QString& value) override {
    set.append(name + '~' + value);
    for (Input& input : inputs)
      if (input.name == name) input.value = value;
    return {};
  }
  void DataChanged() override {}
  [[nodiscard]] QStringList Windows() const override { return windows; }
  [[nodiscard]] std::unique_ptr<CatalogueWindow> MakeWindow(const QString& name) override {
    if (name == "unmakeable") return nullptr;
    return std::make_unique<FakeWindow>(windowLooks);
  }
  QStringList windows;
  int windowLooks = 3;
  std::function<bool()> isRestoring = [] { return false; };
  std::vector<Input> inputs;
  mutable std::map<int, QByteArray> place{{1, "of one"}, {2, "of two"}};
  QList<int> put;  ///< views into which a place was put
  QList<int> shown;
  QStringList set;
  int unshowable = 0;
  int looksOfOne = 4;
  bool isMoving = false;
  QString shortcoming;
  QStringList incomplete;

 private:
  int current_ = 2;
  mutable int asked_ = 0;
  QString portfolio_;
};

}  // namespace holdwise
