#pragma once

#include <QString>

/// A deletion delay in words: "1 minute", "5 minutes".
[[nodiscard]] QString timeframeTitle(qint64 minutes);
