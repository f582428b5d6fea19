#pragma once

#include <QByteArrayView>

#include <optional>

/// The text of a settings file as KDE's programs write it, as views into its bytes. Any thread.
namespace kconfigText {

/// A group's header or an entry.
struct Line {
    /// As it stands in the file, with its line break if it has one.
    QByteArrayView line;
    /// Without the blanks around it.
    QByteArrayView text;
    /// The header with its brackets but without its options, or the entry's key as it is written. Empty for
    /// options that are for the whole file.
    QByteArrayView name;
    /// A letter for each option, which stand behind the name as `[$…]`: immutable, with environment variables
    /// to be expanded, deleted.
    QByteArrayView options;
    /// What stands right of an entry's `=`, without the blanks around it.
    QByteArrayView value;
};

/// What a file says about one entry.
struct Occurrence {
    /// The entry's line: of several the one that counts, which is the last, or the first immutable one. It
    /// may be one that deletes it.
    std::optional<Line> entry;
    /// The last entry of the group, or its header where it has none. Of several groups with that header, the
    /// last.
    std::optional<Line> endOfGroup;
    /// Whether the file forbids that the entry is changed by files that come after it, and by programs: the
    /// entry itself, its group, or all of the file is marked so.
    bool isImmutable = false;
};

/// `header` leads from the outermost group inwards, as in `[One][Two]`; empty for what stands above the first
/// group. An entry in a certain language (`key[de]=`) is another entry.
[[nodiscard]] Occurrence find(QByteArrayView contents, QByteArrayView header, QByteArrayView key);

} // namespace kconfigText
