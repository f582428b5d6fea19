#pragma once

#include "ImageFormat.h"

/// Whether the file behind the descriptor has its end, as far as its format says where that is. A program
/// that writes an image on its final name shows it half done for a moment, and the toolkit's readers take
/// half an image for a whole one with gray below. A JPEG that is made to keep a decoder busy for minutes
/// counts as unfinished. The descriptor's position stays as it was. Any thread.
[[nodiscard]] bool isFinishedImage(int descriptor, ImageFormat format);
