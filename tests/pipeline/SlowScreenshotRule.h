#pragma once

#include <QString>

#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/uregex.h>

#include <memory>
#include <string_view>
#include <unordered_map>

namespace slow {

/// Full lower-casing by ICU, where the program uses the toolkit's.
inline QString lower(const QString &name)
{
    icu::UnicodeString text(
        reinterpret_cast<const char16_t *>(name.utf16()), static_cast<int32_t>(name.size()));
    text.toLower(icu::Locale::getRoot());
    return QString::fromUtf16(text.getBuffer(), text.length());
}

/// Searches through ICU's C interface, where the program uses the C++ one.
inline bool found(const char *pattern, const QString &name)
{
    using Expression = std::unique_ptr<URegularExpression, decltype(&uregex_close)>;
    static std::unordered_map<std::string_view, Expression> expressions;
    UErrorCode status = U_ZERO_ERROR;
    if (!expressions.contains(pattern)) {
        UParseError where;
        expressions.emplace(pattern, Expression(uregex_openC(pattern, 0, &where, &status), uregex_close));
    }
    URegularExpression *const expression = expressions.at(pattern).get();
    uregex_setText(
        expression, reinterpret_cast<const UChar *>(name.utf16()), static_cast<int32_t>(name.size()),
        &status);
    const bool result = uregex_find(expression, 0, &status) != 0;
    if (U_FAILURE(status)) {
        qFatal("ICU: %s", u_errorName(status));
    }
    return result;
}

} // namespace slow

/// The extension gate.
inline bool slowHasExtension(const QString &name)
{
    const QString lowerName = slow::lower(name);
    for (const char *extension : {".png", ".jpg", ".jpeg", ".gif", ".webp", ".bmp", ".tiff"}) {
        if (lowerName.endsWith(QString::fromUtf8(extension))) {
            return true;
        }
    }
    return false;
}

/// A second, independent reading of the screenshot rule: a plain transcription with everything done the
/// long way round, whatever that costs. The tests hold the real one against it.
inline bool slowIsScreenshot(const QString &name)
{
    if (!slowHasExtension(name)) {
        return false;
    }
    const QString lowerName = slow::lower(name);
    for (const char *prefix :
         {"Screenshot ", "Screen Shot ", "CleanShot ", "Lightshot ", "Snagit ", "Monosnap ", "Skitch ",
          "Xnip ", "截屏", "スクリーンショット", "capture_", "screen_capture_", "snapshot_"}) {
        const QString text = QString::fromUtf8(prefix);
        if (name.startsWith(text) || lowerName.startsWith(slow::lower(text))) {
            return true;
        }
    }
    for (const char *pattern :
         {R"(Screenshot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))",
          R"(Screen Shot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))",
          R"(CleanShot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))",
          R"(screenshot_\d{4}-\d{2}-\d{2}_\d{2}-\d{2}-\d{2}\.(png|jpg|jpeg))",
          R"(capture_\d{8}_\d{6}\.(png|jpg|jpeg))"}) {
        if (slow::found(pattern, name)) {
            return true;
        }
    }
    bool hasDate = false;
    for (const char *pattern :
         {R"(\d{4}[-_]\d{2}[-_]\d{2})", R"(\d{2}[-_]\d{2}[-_]\d{4})", R"(\d{1,2}[.]\d{2}[.]\d{2})",
          R"(\d{8}[\s_-]\d{6})"}) {
        if (slow::found(pattern, name)) {
            hasDate = true;
            break;
        }
    }
    for (const char *keyword :
         {"screenshot", "screen_shot", "capture", "snap", "grab", "screen_capture", "display_capture",
          "desktop_capture", "image_capture", "shot", "pic", "img"}) {
        if (lowerName.contains(QString::fromUtf8(keyword))) {
            if (hasDate) {
                return true;
            }
            break;
        }
    }
    for (const char *tool :
         {"cleanshot", "lightshot", "snagit", "monosnap", "skitch", "xnip", "greenshot", "flameshot",
          "spectacle", "rectangular"}) {
        if (lowerName.contains(QString::fromUtf8(tool))) {
            return true;
        }
    }
    return false;
}
