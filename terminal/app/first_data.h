// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "pages/notice_page.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "window/ongoing_work.h"

namespace holdwise {

/// Ways to a data folder for who has none that can be used: a simulated market, made here and now by holdwise-market,
/// and another folder. What is chosen is remembered. User-interface thread.
class FirstData : public QObject {
 public:
  /// `changed` is called when another folder is to be opened. All outlive it.
  FirstData(ProcessParts& process, WindowSide& window, std::function<void()> changed);
  /// Ends what is being made.
  ~FirstData() override;

  /// A button each, for the page that says that there is none.
  [[nodiscard]] std::vector<NoticeChoice> Choices();
  /// Ends what is being made, because there are data now or others are wanted. Nothing happens when nothing is made.
  void GiveUp();

 private:
  void MakeDemo();
  void Choose();
  void Run(const QStringList& arguments, void (FirstData::*next)());
  void Build();
  void Open();
  void ShowProgress();
  void End(const QString& problem);

  ProcessParts& process_;
  WindowSide& window_;
  std::function<void()> changed_;
  QString folder_;  ///< that is wanted
  std::optional<QTemporaryDir>
      made_;  ///< what is being made, until it is opened; beside the folder, and gone with this
  std::unique_ptr<OngoingWork> work_;  ///< meanwhile
  QProcess maker_;
  QByteArray said_;
  bool isChoosing_ = false;
  void (FirstData::*next_)() = nullptr;  ///< after the running step; none: what ends does not count any more
};

}  // namespace holdwise
