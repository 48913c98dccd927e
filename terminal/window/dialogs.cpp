// SPDX-License-Identifier: MIT
#include "window/dialogs.h"

#include <QDateTime>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTreeView>
#include <QVBoxLayout>
#include <algorithm>

namespace holdwise {
namespace {

constexpr QSize kReportSize{640, 360};
constexpr int kCellAir = 16;

QSettings* folders = nullptr;

/// Knows a file by its name. Qt's own reads the beginning of every file in the folder, on the user-interface thread:
/// one that does not answer (on a network folder, or below /proc) would stop the terminal.
class PlainIcons final : public QFileIconProvider {
 public:
  [[nodiscard]] QIcon icon(const QFileInfo& file) const override {
    return QFileIconProvider::icon(file.isDir() ? IconType::Folder : IconType::File);
  }
  using QFileIconProvider::icon;
  [[nodiscard]] QString type(const QFileInfo& file) const override {
    if (file.isDir()) return QStringLiteral("文件夹");
    const QString suffix = file.suffix();
    return suffix.isEmpty() ? QStringLiteral("文件") : QStringLiteral("%1 文件").arg(suffix);
  }
};

/// Wide enough for the titles of all columns and for names; a desktop's own dialog has no such list.
void GiveColumnsRoom(QFileDialog& dialog) {
  constexpr QSize kSize{760, 480};
  auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
  if (list == nullptr) return;
  dialog.resize(dialog.size().expandedTo(kSize));
  QHeaderView& header = *list->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  const QLocale locale;
  // Size, kind and date; the system's short form of one may be long.
  const QStringList longest{locale.formattedDataSize(1'023'999), QStringLiteral("WWWW 文件"),
                            locale.toString(QDateTime({2028, 12, 28}, {12, 58, 58}), QLocale::ShortFormat)};
  for (int column = 1; column < header.count(); ++column) {
    const int text = list->fontMetrics().horizontalAdvance(longest.value(column - 1)) + kCellAir;
    header.resizeSection(column, std::max(header.sectionSizeHint(column), text));
  }
}

/// `purpose`: the name under which the folder is remembered.
QString Ask(QFileDialog& dialog, const QString& accept, const char* purpose) {
  static auto* const icons = new PlainIcons;  // for all, and never gone: pictures do not outlive the application
  dialog.setIconProvider(icons);
  const QString key = QStringLiteral("folders/") + QLatin1String(purpose);
  const QString last = folders == nullptr ? QString() : folders->value(key).toString();
  if (!last.isEmpty() && QFileInfo(last).isDir()) dialog.setDirectory(last);
  // A place to choose from, not to tidy up: without this the Delete key takes whole folders away.
  dialog.setOption(QFileDialog::ReadOnly);
  dialog.setLabelText(QFileDialog::Accept, accept);
  dialog.setLabelText(QFileDialog::Reject, QStringLiteral("取消"));
  dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("位置"));
  dialog.setLabelText(QFileDialog::FileName, QStringLiteral("名称"));
  dialog.setLabelText(QFileDialog::FileType, QStringLiteral("类型"));
  GiveColumnsRoom(dialog);
  if (dialog.exec() != QDialog::Accepted) return {};
  QString chosen = dialog.selectedFiles().value(0);
  if (folders != nullptr && !chosen.isEmpty()) folders->setValue(key, QFileInfo(chosen).absolutePath());
  return chosen;
}

}  // namespace

void KeepDialogFoldersIn(QSettings* settings) {
  folders = settings;
}

QString AskForFile(QWidget* window) {
  QFileDialog dialog(window, QStringLiteral("导入组合"), QString(),
                     QStringLiteral("组合或持仓表 (*.csv *.txt *.tsv *.xls);;所有文件 (*)"));
  dialog.setFileMode(QFileDialog::ExistingFile);
  return Ask(dialog, QStringLiteral("导入"), "import");
}

QString AskForFolder(QWidget* window) {
  QFileDialog dialog(window, QStringLiteral("导出到目录"));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  return Ask(dialog, QStringLiteral("导出"), "export");
}

QString AskForDataFolder(QWidget* window) {
  QFileDialog dialog(window, QStringLiteral("选择数据目录"));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  return Ask(dialog, QStringLiteral("选择"), "data");
}

QString AskForNewFile(QWidget* window, const QString& name) {
  QFileDialog dialog(window, QStringLiteral("导出组合"), QString(), QStringLiteral("组合 (*.csv);;所有文件 (*)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("csv"));
  dialog.selectFile(name);
  return Ask(dialog, QStringLiteral("导出"), "portfolios");
}

QString AskForBackup(QWidget* window) {
  QFileDialog dialog(window, QStringLiteral("选择备份文件"), QString(), QStringLiteral("组合 (*.csv);;所有文件 (*)"));
  dialog.setFileMode(QFileDialog::ExistingFile);
  return Ask(dialog, QStringLiteral("选择"), "backup");
}

void ShowReport(QWidget* window, const QString& title, const QString& text) {
  QDialog dialog(window);
  dialog.setWindowTitle(title);
  auto* layout = new QVBoxLayout(&dialog);
  auto* lines = new QPlainTextEdit(text);
  lines->setAccessibleName(title);
  lines->setReadOnly(true);
  layout->addWidget(lines);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(QStringLiteral("确定"), QDialogButtonBox::AcceptRole);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  layout->addWidget(buttons);
  dialog.resize(kReportSize);
  dialog.exec();
}

}  // namespace holdwise
