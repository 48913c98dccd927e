// SPDX-License-Identifier: MIT
#pragma once
#include <QFrame>
#include <QPointer>
#include <functional>
#include <optional>

#include "holdwise/sdk/services.h"
#include "search/security_search.h"

class QLabel;
class QLineEdit;
class QTableWidget;

namespace holdwise {

/// What the quick entry asks of the terminal; all are set, and outlive it.
struct QuickEntryActions {
  std::function<SecuritySearch()> makeSearch;     ///< all securities; asked for once, when it is opened first
  std::function<void(int codeNumber)> choose;     ///< goes to the security
  std::function<bool(int codeNumber)> isOwn;      ///< is it one of the user's own stocks?
  std::function<void(int codeNumber)> toggleOwn;  ///< adds it to them, or takes it out
  std::function<bool(int codeNumber)> canBeOwn;   ///< indices cannot
};

/// Quick entry of a security: digits or letters typed anywhere in the window, outside an edit box, open a small box
/// that lists what they may mean: codes, names, first letters of the pinyin. The arrow keys select, Enter goes there,
/// Ctrl+Enter adds it to the user's own stocks or takes it out, Escape closes and gives the keyboard back to where it
/// was. While a frame has switched the capture off, keys go to the frame. User-interface thread.
class QuickEntry : public QFrame, public KeyCodeServices {
 public:
  /// @param window the main window, whose keys are captured
  QuickEntry(QWidget* window, QuickEntryActions actions);

  void SetCaptureEnabled(bool enabled) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] bool Opens(const QObject* watched, const QKeyEvent& key) const;
  [[nodiscard]] bool HandleKey(const QKeyEvent& key);
  void MakeLayout();
  void Open(const QString& first);
  /// At the window's lower right; in a low window with fewer rows.
  void Place();
  void ShowFound();
  void ShowOwn(int row);
  void TellWhatEnterDoes();
  void Choose();
  void ToggleOwn(int row);
  [[nodiscard]] const SecurityEntry* Selected() const;

  QuickEntryActions actions_;
  std::optional<SecuritySearch> search_;
  std::vector<const SecurityEntry*> found_;
  QLineEdit* text_;
  QTableWidget* list_;
  QLabel* hint_;
  QPointer<QWidget> cameFrom_;
  bool isEnabled_ = true;
};

}  // namespace holdwise
