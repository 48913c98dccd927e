// SPDX-License-Identifier: MIT
#include "holdwise/packet/text_file.h"

#include <iconv.h>

#include <bit>
#include <cerrno>
#include <cstdint>
#include <system_error>

#include "holdwise/packet/characters.h"
#include "holdwise/packet/error.h"
#include "read_file.h"
#include "text_encoding.h"

namespace holdwise {
namespace {

/// A character converter of the C library; it stops at the first byte that is not valid, as wanted here.
class Converter {
 public:
  Converter() : handle_(::iconv_open("UTF-8", "GB18030")) {
    if (handle_ == kInvalid) {
      throw Error(ErrorCategory::Io, "系统不支持 GB18030 编码（" + std::generic_category().message(errno) + "）");
    }
  }
  ~Converter() { ::iconv_close(handle_); }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  [[nodiscard]] QByteArray Convert(QByteArray bytes) const {
    // One byte stays one, two become at most four (characters outside the first plane among them), four at most four.
    QByteArray utf8(bytes.size() * 2, Qt::Uninitialized);
    char* from = bytes.data();
    char* to = utf8.data();
    auto fromLeft = static_cast<std::size_t>(bytes.size());
    auto toLeft = static_cast<std::size_t>(utf8.size());
    if (::iconv(handle_, &from, &fromLeft, &to, &toLeft) != 0) {
      throw Error(ErrorCategory::Corrupt,
                  "文本既不是 UTF-8 也不是 GB18030（第 " + std::to_string(from - bytes.constData() + 1) + " 个字节）");
    }
    utf8.truncate(utf8.size() - static_cast<qsizetype>(toLeft));
    return utf8;
  }

 private:
  inline static const auto kInvalid = std::bit_cast<iconv_t>(std::intptr_t{-1});  // as iconv_open reports failure
  iconv_t handle_;
};

}  // namespace

QByteArray ToUtf8Text(const QByteArray& bytes) {
  const EncodingFound found = FindEncoding(bytes);
  const auto refuse = [&found](const char* what) {
    const std::string place = found.badByte == 0 ? "" : "（第 " + std::to_string(found.badByte) + " 个字节）";
    throw Error(ErrorCategory::Corrupt, what + place + "，请在表格软件里另存为“CSV UTF-8”再用");
  };
  if (found.encoding == TextEncoding::Damaged) refuse("文本是 UTF-8，但有的字符不完整");
  if (found.encoding == TextEncoding::Unknown) refuse("文本既不是 UTF-8 也不是 GB18030");
  if (found.encoding == TextEncoding::Ambiguous) refuse("看不出文本是 UTF-8 还是 GB18030");
  QByteArray text = found.encoding == TextEncoding::Utf8 ? bytes : Converter().Convert(bytes);
  if (text.startsWith("\xEF\xBB\xBF")) text.remove(0, 3);
  return text;
}

QString ControlsShown(QStringView text) {
  QString shown;
  shown.reserve(text.size());
  for (const QChar c : text) {
    if (IsUnseen(c.category()))
      shown += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
    else
      shown += c;
  }
  return shown;
}

QString ShownText(const QString& text) {
  constexpr qsizetype kLongestShown = 400;
  const QString shown = ControlsShown(QStringView(text).left(kLongestShown));
  return text.size() > kLongestShown ? shown + u'…' : shown;
}

QByteArray ReadTextFile(const QString& path, std::int64_t maxBytes) {
  const QByteArray bytes = ReadWholeFile(path, maxBytes);
  try {
    return ToUtf8Text(bytes);
  } catch (const Error& error) {
    throw Error(error.Category(), path.toStdString() + "：" + error.what());
  }
}

}  // namespace holdwise
