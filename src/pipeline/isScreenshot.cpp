#include "isScreenshot.h"

#include <QString>

#include <unicode/regex.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

namespace {

constexpr std::array<std::u16string_view, 7> extensions = {u".png",  u".jpg", u".jpeg", u".gif",
                                                           u".webp", u".bmp", u".tiff"};

struct Prefix {
    QStringView exact;
    QStringView lowerCased;
};

constexpr std::array<Prefix, 13> prefixes = {{
    {u"Screenshot ", u"screenshot "},
    {u"Screen Shot ", u"screen shot "},
    {u"CleanShot ", u"cleanshot "},
    {u"Lightshot ", u"lightshot "},
    {u"Snagit ", u"snagit "},
    {u"Monosnap ", u"monosnap "},
    {u"Skitch ", u"skitch "},
    {u"Xnip ", u"xnip "},
    {u"截屏", u"截屏"},
    {u"スクリーンショット", u"スクリーンショット"},
    {u"capture_", u"capture_"},
    {u"screen_capture_", u"screen_capture_"},
    {u"snapshot_", u"snapshot_"},
}};

constexpr std::array<QStringView, 12> keywords = {
    u"screenshot",      u"screen_shot",     u"capture",       u"snap", u"grab", u"screen_capture",
    u"display_capture", u"desktop_capture", u"image_capture", u"shot", u"pic",  u"img"};

constexpr std::array<QStringView, 10> toolNames = {u"cleanshot", u"lightshot",  u"snagit",    u"monosnap",
                                                   u"skitch",    u"xnip",       u"greenshot", u"flameshot",
                                                   u"spectacle", u"rectangular"};

/// What can be counted in a name in one pass, and what every match of a pattern needs at least. A name that
/// has less can't match: the count only spares the search.
struct Counts {
    /// Decimal digits.
    int digits = 0;
    /// Dots, the extension's included: no date reaches into an extension.
    int dots = 0;
    /// Hyphens and underscores between two digits.
    int separators = 0;

    [[nodiscard]] bool reach(const Counts &needed) const
    {
        return digits >= needed.digits && dots >= needed.dots && separators >= needed.separators;
    }
};

struct Pattern {
    const char16_t *expression;
    /// What every match begins with; empty where that isn't a literal.
    QStringView beginning;
    Counts needed;
};

constexpr std::array<Pattern, 5> fullNamePatterns = {{
    {uR"(Screenshot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))",
     u"Screenshot ",
     {13, 3, 2}},
    {uR"(Screen Shot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))",
     u"Screen Shot ",
     {13, 3, 2}},
    {uR"(CleanShot \d{4}-\d{2}-\d{2} at \d{1,2}\.\d{2}\.\d{2}.*\.(png|jpg|jpeg))", u"CleanShot ", {13, 3, 2}},
    {uR"(screenshot_\d{4}-\d{2}-\d{2}_\d{2}-\d{2}-\d{2}\.(png|jpg|jpeg))", u"screenshot_", {14, 1, 5}},
    {uR"(capture_\d{8}_\d{6}\.(png|jpg|jpeg))", u"capture_", {14, 1, 1}},
}};

constexpr std::array<Pattern, 4> datePatterns = {{
    {uR"(\d{4}[-_]\d{2}[-_]\d{2})", {}, {8, 1, 2}},
    {uR"(\d{2}[-_]\d{2}[-_]\d{4})", {}, {8, 1, 2}},
    {uR"(\d{1,2}[.]\d{2}[.]\d{2})", {}, {5, 3, 0}},
    {uR"(\d{8}[\s_-]\d{6})", {}, {14, 1, 0}},
}};

struct CompiledPattern {
    const Pattern *pattern;
    std::unique_ptr<icu::RegexPattern> expression;
};

/// The patterns that compile, in their order; one that doesn't is left out.
template <size_t count> std::vector<CompiledPattern> compiled(const std::array<Pattern, count> &patterns)
{
    std::vector<CompiledPattern> result;
    for (const Pattern &pattern : patterns) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexPattern> expression(
            icu::RegexPattern::compile(icu::UnicodeString(pattern.expression), 0, status));
        if (U_SUCCESS(status)) {
            result.push_back({.pattern = &pattern, .expression = std::move(expression)});
        }
    }
    return result;
}

const std::vector<CompiledPattern> &compiledFullNamePatterns()
{
    static const std::vector<CompiledPattern> patterns = compiled(fullNamePatterns);
    return patterns;
}

const std::vector<CompiledPattern> &compiledDatePatterns()
{
    static const std::vector<CompiledPattern> patterns = compiled(datePatterns);
    return patterns;
}

/// Whether `character` may be (half of) something that `\d` takes: a decimal digit of any script.
bool mayBeDigit(QChar character)
{
    return character.unicode() < 0x80 ? character >= u'0' && character <= u'9'
                                      : character.isDigit() || character.isSurrogate();
}

Counts counted(QStringView name)
{
    Counts counts;
    bool followsDigit = false;
    bool followsSeparator = false;
    for (const QChar character : name) {
        const bool isDigit = mayBeDigit(character);
        counts.digits += isDigit ? 1 : 0;
        counts.dots += character == u'.' ? 1 : 0;
        counts.separators += isDigit && followsSeparator ? 1 : 0;
        followsSeparator = followsDigit && (character == u'-' || character == u'_');
        followsDigit = isDigit;
    }
    return counts;
}

bool matches(const icu::RegexPattern &expression, const icu::UnicodeString &name)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(expression.matcher(name, status));
    return U_SUCCESS(status) && matcher->find(status) != 0 && U_SUCCESS(status);
}

bool matchesAny(const std::vector<CompiledPattern> &patterns, QStringView name, const Counts &counts)
{
    // An alias: ICU reads the name where it is.
    const icu::UnicodeString text(false, name.utf16(), static_cast<int32_t>(name.size()));
    return std::ranges::any_of(patterns, [&](const CompiledPattern &pattern) {
        return counts.reach(pattern.pattern->needed) && name.contains(pattern.pattern->beginning) &&
               matches(*pattern.expression, text);
    });
}

/// `name` isn't empty. Most prefixes are told apart by their first character, without a call.
bool startsWithAny(QStringView name, QStringView Prefix::*prefix)
{
    return std::ranges::any_of(prefixes, [name, prefix](const Prefix &candidate) {
        const QStringView beginning = candidate.*prefix;
        return name.front() == beginning.front() && name.startsWith(beginning);
    });
}

template <size_t count> bool containsAny(QStringView lowerCased, const std::array<QStringView, count> &words)
{
    return std::ranges::any_of(words, [lowerCased](QStringView word) { return lowerCased.contains(word); });
}

char16_t codeUnit(char byte)
{
    return static_cast<unsigned char>(byte);
}

char16_t codeUnit(QChar character)
{
    return character.unicode();
}

/// Works on UTF-8 bytes and on UTF-16 units alike, and on names that aren't lower-cased: no character but an
/// ASCII letter becomes one of the extensions' letters without adding another character (U+0130 becomes an i
/// and a dot above; U+212A becomes a k, which no extension has).
template <typename View> bool endsWithExtension(View name)
{
    const auto lowerCased = [](auto unit) -> char16_t {
        const char16_t code = codeUnit(unit);
        return code >= u'A' && code <= u'Z' ? static_cast<char16_t>(code | 0x20) : code;
    };
    return std::ranges::any_of(extensions, [&](std::u16string_view extension) {
        const auto length = static_cast<qsizetype>(extension.size());
        return name.size() >= length && std::ranges::equal(name.last(length), extension, {}, lowerCased);
    });
}

} // namespace

bool hasScreenshotExtension(QByteArrayView utf8FileName)
{
    return endsWithExtension(utf8FileName);
}

bool isScreenshot(QStringView fileName)
{
    if (!endsWithExtension(fileName)) {
        return false;
    }
    if (startsWithAny(fileName, &Prefix::exact)) {
        return true;
    }
    const QString lowerCased = fileName.toString().toLower();
    if (startsWithAny(lowerCased, &Prefix::lowerCased)) {
        return true;
    }
    const Counts counts = counted(fileName);
    if (matchesAny(compiledFullNamePatterns(), fileName, counts)) {
        return true;
    }
    // The dates are searched for last of the two: without a keyword they decide nothing.
    if (containsAny(lowerCased, keywords) && matchesAny(compiledDatePatterns(), fileName, counts)) {
        return true;
    }
    return containsAny(lowerCased, toolNames);
}
