// SPDX-License-Identifier: MIT
#pragma once
#include <QPlainTextEdit>
#include <QString>
#include <QWidget>
#include <atomic>
#include <functional>

#include "holdwise/sdk/address.h"
#include "process/debug_log.h"

class QLabel;

namespace holdwise {

/// One of the host's own addresses: shows a page in the work area.
class HostPageAddress : public TAddressItem {
 public:
  using Show = std::function<void(const QString& parameter)>;
  /// @param page  the page, owned by the item
  /// @param show  told the parameter on every enter; may be empty
  HostPageAddress(const QString& name, std::uint16_t number, bool isListed, std::unique_ptr<QWidget> page,
                  PlugSystemInfo& system, Show show);
  void EnterAddress(const QString& parameter) override;
  void LeaveAddress() override;
  void ChangeColorTheme() override;
  [[nodiscard]] bool GetIsWorkState() const override;

 private:
  std::unique_ptr<QWidget> page_;
  PlugSystemInfo& system_;
  Show show_;
};

/// A page that only tells what it is for and with which parameter it was entered.
class ToolbarPage : public QWidget {
 public:
  ToolbarPage();
  void SetParameter(const QString& parameter);

  /// The user wants to go back to where he came from: Escape, or the button.
  std::function<void()> OnReturn;

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLabel* text_;
};

/// The last lines of the debug log; follows it while shown.
class LogPage : public QPlainTextEdit {
 public:
  /// `log` must outlive the page; the page is its listener.
  explicit LogPage(DebugLog& log);
  ~LogPage() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void Fill();

  DebugLog& log_;
  std::atomic<bool> isFillQueued_ = false;
};

}  // namespace holdwise
