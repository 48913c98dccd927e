// SPDX-License-Identifier: MIT
#include "pages/notice_page.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <utility>

namespace holdwise {
namespace {

constexpr int kMargin = 40;
constexpr int kWidest = 900;

}  // namespace

NoticePage::NoticePage(const QString& title, const QString& text, const QString& commands,
                       std::vector<NoticeChoice> choices) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(16);
  auto* heading = new QLabel(title);
  QFont big = heading->font();
  big.setPixelSize(22);
  big.setBold(true);
  heading->setFont(big);
  layout->addWidget(heading);
  auto* body = new QLabel(text);
  body->setTextFormat(Qt::PlainText);
  body->setTextInteractionFlags(Qt::TextSelectableByMouse);
  body->setWordWrap(true);
  body->setMaximumWidth(kWidest);
  layout->addWidget(body);
  if (!commands.isEmpty()) {
    auto* lines = new QPlainTextEdit(commands);
    lines->setReadOnly(true);
    lines->setAccessibleName(QStringLiteral("命令"));
    lines->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    lines->setMaximumWidth(kWidest);
    lines->setFixedHeight(lines->fontMetrics().lineSpacing() * 6);
    layout->addWidget(lines);
    auto* copy = new QPushButton(QStringLiteral("复制命令(&C)"));
    copy->setAutoDefault(false);
    connect(copy, &QPushButton::clicked, this, [commands] { QGuiApplication::clipboard()->setText(commands); });
    layout->addWidget(copy, 0, Qt::AlignLeft);
  }
  auto* buttons = new QHBoxLayout;
  for (NoticeChoice& choice : choices) {
    auto* button = new QPushButton(choice.caption);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, std::move(choice.act));
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  layout->addLayout(buttons);
  layout->addStretch(1);
}

QString DataFolderCommands(const QString& dataFolder) {
  QString program = QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-market");
  static const QRegularExpression plain(QRegularExpression::anchoredPattern(QStringLiteral("[A-Za-z0-9/._+-]+")));
  if (!plain.match(program).hasMatch()) program = QLatin1Char('\'') + program + QLatin1Char('\'');
  return QStringLiteral(
             "%2 simulate --securities 5000 --days 500 --seed 1 --out csv\n"
             "%2 build --bars csv/bars --indices csv/indices --securities csv/securities.csv \\\n"
             "    --dates csv/trading_dates.csv --rates csv/deposit_rates.csv --simulated --out '%1'")
      .arg(dataFolder, program);
}

}  // namespace holdwise
