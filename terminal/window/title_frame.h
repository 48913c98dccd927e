// SPDX-License-Identifier: MIT
#pragma once
#include <memory>

#include "holdwise/sdk/services.h"
#include "theme/theme_services.h"

class QLabel;

namespace holdwise {

/// Makes the host's title frame: a caption bar painted from the theme over a client panel. `theme` must outlive it.
[[nodiscard]] std::unique_ptr<TFrmQMTitle> MakeTitleFrame(const ThemeServices& theme);

}  // namespace holdwise
