// SPDX-License-Identifier: MIT
#include "window/import_dialog.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace holdwise {
namespace {

class ImportDialogTest : public testing::Test {
 protected:
  void Open(const QString& name, int strangers) {
    dialog_ = std::make_unique<ImportDialog>(
        nullptr, ImportQuestion{"p.csv", "第一行\n第二行", name, strangers},
        [](const QString& wanted) { return wanted == "有了" ? QStringLiteral("已有这个名称") : QString(); });
    dialog_->show();
  }
  [[nodiscard]] QPushButton* Import() const { return dialog_->findChild<QPushButton*>("import"); }
  [[nodiscard]] QString Problem() const { return dialog_->findChild<QLabel*>("problem")->text(); }
  [[nodiscard]] QLineEdit* Name() const { return dialog_->findChild<QLineEdit*>("name"); }
  [[nodiscard]] QCheckBox* Skip() const { return dialog_->findChild<QCheckBox*>("skip"); }

  std::unique_ptr<ImportDialog> dialog_;
};

TEST_F(ImportDialogTest, AFileWithNamesIsOnlyShown) {
  Open({}, 0);
  EXPECT_EQ(dialog_->findChild<QPlainTextEdit*>("preview")->toPlainText(), "第一行\n第二行");
  EXPECT_EQ(Name(), nullptr);
  EXPECT_EQ(Skip(), nullptr);
  QTest::mouseClick(Import(), Qt::LeftButton);
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
  EXPECT_EQ(dialog_->Name(), "");
  EXPECT_FALSE(dialog_->SkipsStrangers());
}

TEST_F(ImportDialogTest, RowsAreLeftOutOnlyWhenThatIsTicked) {
  Open({}, 3);
  EXPECT_TRUE(Skip()->text().contains("3 行"));
  EXPECT_FALSE(Import()->isEnabled());
  EXPECT_NE(Problem(), "");
  QTest::keyClick(dialog_.get(), Qt::Key_Return);
  EXPECT_TRUE(dialog_->isVisible());
  Skip()->click();
  EXPECT_TRUE(Import()->isEnabled());
  EXPECT_EQ(Problem(), "");
  EXPECT_TRUE(dialog_->SkipsStrangers());
  Skip()->click();
  EXPECT_FALSE(Import()->isEnabled());
}

TEST_F(ImportDialogTest, ATakenNameIsSaidUntilItIsAnother) {
  Open("有了", 0);
  EXPECT_EQ(Problem(), "已有这个名称");
  EXPECT_FALSE(Import()->isEnabled());
  Name()->selectAll();
  QTest::keyClicks(Name(), "B");
  EXPECT_EQ(Problem(), "");
  EXPECT_EQ(dialog_->Name(), "B");
  QTest::keyClick(Name(), Qt::Key_Return);
  EXPECT_EQ(dialog_->result(), QDialog::Accepted);
}

TEST_F(ImportDialogTest, CancelAndEscapeGiveItUp) {
  Open("A", 0);
  QSignalSpy escaped(dialog_.get(), &QDialog::rejected);
  QTest::keyClick(dialog_.get(), Qt::Key_Escape);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(escaped.count(), 1);
  Open("A", 0);
  QSignalSpy cancelled(dialog_.get(), &QDialog::rejected);
  for (auto* button : dialog_->findChildren<QPushButton*>())
    if (button->text() == QStringLiteral("取消")) QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_FALSE(dialog_->isVisible());
  EXPECT_EQ(cancelled.count(), 1);
}

}  // namespace
}  // namespace holdwise
