// SPDX-License-Identifier: MIT
#include "window/restore_dialog.h"

#include <gtest/gtest.h>

#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>

namespace holdwise {
namespace {

/// Three backups: the newest is what there is, the second brings back what is missing, the third changes everything.
class RestoreDialogTest : public testing::Test {
 protected:
  [[nodiscard]] RestorePreview PreviewOf(const QString& path, bool isMissingOnly) const {
    const bool isPossible =
        (path == QStringLiteral("b") && !isBroken_) || (path == QStringLiteral("c") && !isMissingOnly);
    return {path + (isMissingOnly ? QStringLiteral(" missing") : QStringLiteral(" all")), isPossible};
  }
  RestoreDialog* Open(const QStringList& paths) {
    std::vector<RestoreChoice> choices;
    for (const QString& path : paths) choices.push_back({path, path, QStringLiteral("2"), QStringLiteral("4")});
    dialog_ = std::make_unique<RestoreDialog>(
        nullptr, choices, [this](const QString& path, bool isMissing) { return PreviewOf(path, isMissing); },
        [] { return QStringLiteral("/other.csv"); });
    return dialog_.get();
  }
  [[nodiscard]] QString Text() const { return dialog_->findChild<QPlainTextEdit*>("preview")->toPlainText(); }
  [[nodiscard]] QPushButton* Button() const { return dialog_->findChild<QPushButton*>("restore"); }
  [[nodiscard]] QTableWidget* Files() const { return dialog_->findChild<QTableWidget*>("files"); }

  bool isBroken_ = false;
  std::unique_ptr<RestoreDialog> dialog_;
};

TEST_F(RestoreDialogTest, OffersTheNewestThatBringsSomethingBack) {
  const RestoreDialog* dialog = Open({"a", "b", "c"});
  EXPECT_EQ(dialog->Path(), QStringLiteral("b"));
  EXPECT_TRUE(dialog->IsMissingOnly());
  EXPECT_EQ(Text(), QStringLiteral("b missing"));
  EXPECT_TRUE(Button()->isEnabled());
}

TEST_F(RestoreDialogTest, OffersEverythingWhenNothingIsMissing) {
  isBroken_ = true;
  const RestoreDialog* dialog = Open({"a", "b", "c"});
  EXPECT_EQ(dialog->Path(), QStringLiteral("c"));
  EXPECT_FALSE(dialog->IsMissingOnly());
  EXPECT_EQ(Text(), QStringLiteral("c all"));
}

TEST_F(RestoreDialogTest, WhatChangesNothingCannotBeRestored) {
  Open({"a", "b", "c"});
  Files()->selectRow(0);
  EXPECT_EQ(Text(), QStringLiteral("a missing"));
  EXPECT_FALSE(Button()->isEnabled());
  dialog_->findChildren<QRadioButton*>().at(1)->click();
  EXPECT_EQ(Text(), QStringLiteral("a all"));
  EXPECT_FALSE(Button()->isEnabled());
  Open({});
  EXPECT_EQ(Text(), QStringLiteral("还没有备份。"));
  EXPECT_FALSE(Button()->isEnabled());
}

TEST_F(RestoreDialogTest, ReturnIsCancel) {
  RestoreDialog* dialog = Open({"a", "b"});
  dialog->show();
  QTest::keyClick(dialog, Qt::Key_Return);
  EXPECT_EQ(dialog->result(), QDialog::Rejected);
  EXPECT_FALSE(dialog->isVisible());
}

TEST_F(RestoreDialogTest, AnotherFileCanBeChosen) {
  const RestoreDialog* dialog = Open({"a", "b"});
  for (QPushButton* button : dialog_->findChildren<QPushButton*>())
    if (button->text().startsWith(QStringLiteral("其他文件"))) button->click();
  EXPECT_EQ(dialog->Path(), QStringLiteral("/other.csv"));
  EXPECT_EQ(Text(), QStringLiteral("/other.csv missing"));
}

}  // namespace
}  // namespace holdwise
