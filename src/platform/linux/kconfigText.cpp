#include "kconfigText.h"

namespace {

using kconfigText::Line;
using kconfigText::Occurrence;

/// Divides what stands in front of a value into the name and its options.
void setName(Line &line, QByteArrayView nameAndOptions)
{
    constexpr QByteArrayView mark = "[$";
    const qsizetype options = nameAndOptions.lastIndexOf(mark);
    if (options < 0 || !nameAndOptions.endsWith(']')) {
        line.name = nameAndOptions;
        return;
    }
    line.name = nameAndOptions.first(options).trimmed();
    line.options = nameAndOptions.sliced(options + mark.size()).chopped(1);
}

bool isHeader(const Line &line)
{
    return line.text.startsWith('[');
}

/// Nothing for blank lines, comments, and what is neither a header nor an entry.
std::optional<Line> parsed(QByteArrayView bytes)
{
    Line line{.line = bytes, .text = bytes.trimmed(), .name = {}, .options = {}, .value = {}};
    if (line.text.isEmpty() || line.text.startsWith('#')) {
        return std::nullopt;
    }
    if (isHeader(line)) {
        setName(line, line.text);
        return line;
    }
    const qsizetype equals = line.text.indexOf('=');
    if (equals < 0) {
        // Only a deletion needs no value.
        setName(line, line.text);
        return line.options.contains('d') ? std::optional(line) : std::nullopt;
    }
    setName(line, line.text.first(equals).trimmed());
    line.value = line.text.sliced(equals + 1).trimmed();
    return line.name.isEmpty() ? std::nullopt : std::optional(line);
}

/// Goes through a file from its first line on and keeps what matters to one entry.
class Search final {
public:
    Search(QByteArrayView header, QByteArrayView key)
        : m_header(header),
          m_key(key),
          m_isInGroup(header.isEmpty())
    {
    }

    void visit(const Line &line)
    {
        if (isHeader(line)) {
            visitHeader(line);
        } else if (m_isInGroup) {
            visitEntry(line);
        }
    }

    [[nodiscard]] const Occurrence &occurrence() const { return m_occurrence; }

private:
    void visitHeader(const Line &line)
    {
        m_isInGroup = !m_header.isEmpty() && line.name == m_header;
        if (m_isInGroup) {
            m_occurrence.endOfGroup = line;
        }
        if (line.options.contains('i') && (m_isInGroup || line.name.isEmpty())) {
            m_occurrence.isImmutable = true;
        }
    }

    void visitEntry(const Line &line)
    {
        m_occurrence.endOfGroup = line;
        if (line.name != m_key || m_isEntryImmutable) {
            return;
        }
        m_occurrence.entry = line;
        m_isEntryImmutable = line.options.contains('i');
        m_occurrence.isImmutable = m_occurrence.isImmutable || m_isEntryImmutable;
    }

    QByteArrayView m_header;
    QByteArrayView m_key;
    Occurrence m_occurrence;
    bool m_isInGroup;
    bool m_isEntryImmutable = false;
};

} // namespace

Occurrence kconfigText::find(QByteArrayView contents, QByteArrayView header, QByteArrayView key)
{
    Search search(header, key);
    for (qsizetype begin = 0; begin < contents.size();) {
        const qsizetype lineBreak = contents.indexOf('\n', begin);
        const qsizetype end = lineBreak < 0 ? contents.size() : lineBreak + 1;
        if (const auto line = parsed(contents.sliced(begin, end - begin))) {
            search.visit(*line);
        }
        begin = end;
    }
    return search.occurrence();
}
