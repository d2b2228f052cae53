#include "glossary/GlossaryYaml.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace lumaphone {

namespace {

constexpr std::array recognisedKeys {
    QLatin1String("source"),
    QLatin1String("target"),
    QLatin1String("mode"),
    QLatin1String("enabled"),
    QLatin1String("isEnabled"),
    QLatin1String("caseSensitive"),
    QLatin1String("note"),
};

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QStringView withoutBlanks(QStringView text)
{
    const auto isBlank = [](QChar unit) {
        return unit == QLatin1Char(' ') || unit == QLatin1Char('\t');
    };
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.mid(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

/// Files from other systems end their lines with a carriage return and a line feed.
QStringView withoutCarriageReturns(QStringView line)
{
    while (line.endsWith(QLatin1Char('\r'))) {
        line.chop(1);
    }
    return line;
}

LumaphoneGlossaryTermMode mode(const QHash<QString, QString> &item)
{
    if (const auto given = lumaphoneGlossaryTermMode(item.value(QStringLiteral("mode")))) {
        return *given;
    }
    const bool same
        = text::canonicallyEqual(item.value(QStringLiteral("source")), item.value(QStringLiteral("target")));
    return same ? LumaphoneGlossaryTermMode::preserve : LumaphoneGlossaryTermMode::translate;
}

bool isEnabled(const QHash<QString, QString> &item)
{
    const QString enabled = item.value(QStringLiteral("enabled"));
    if (enabled == QLatin1String("true") || enabled == QLatin1String("false")) {
        return enabled == QLatin1String("true");
    }
    return item.value(QStringLiteral("isEnabled")) != QLatin1String("false");
}

QString quoted(QString value)
{
    value.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + value + QLatin1Char('"');
}

QString entry(const LumaphoneGlossaryTerm &term)
{
    return QLatin1String("  - source: ") + quoted(term.source) + QLatin1String("\n    target: ")
        + quoted(term.target) + QLatin1String("\n    mode: ") + rawValue(term.mode)
        + QLatin1String("\n    enabled: ") + text(term.isEnabled) + QLatin1String("\n    caseSensitive: ")
        + text(term.caseSensitive);
}

/// Collects the pairs of one item after the other.
class YamlItems
{
public:
    explicit YamlItems(const UuidGenerator &makeUuid)
        : m_makeUuid(makeUuid)
    {
    }

    void readLine(QStringView line)
    {
        line = withoutBlanks(withoutCarriageReturns(line));
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')) || line == QLatin1String("terms:")) {
            return;
        }
        if (line.startsWith(QLatin1String("- "))) {
            closeItem();
            line = line.mid(2);
        }
        const auto pair = parseYAMLKeyValue(line);
        // Only what can be used is kept, so that a huge file of other keys costs no memory.
        if (pair
            && std::find(recognisedKeys.begin(), recognisedKeys.end(), pair->first) != recognisedKeys.end()) {
            m_item.insert(pair->first, pair->second);
        }
    }

    void closeItem()
    {
        if (auto term = makeTerm(m_item, m_makeUuid)) {
            m_terms.append(*std::move(term));
        }
        m_item.clear();
    }

    const QList<LumaphoneGlossaryTerm> &terms() const { return m_terms; }

private:
    const UuidGenerator &m_makeUuid;
    QHash<QString, QString> m_item;
    QList<LumaphoneGlossaryTerm> m_terms;
};

} // namespace

QList<LumaphoneGlossaryTerm> decodeYAML(QStringView text, const UuidGenerator &makeUuid)
{
    YamlItems items(makeUuid);
    for (const QStringView line : text.tokenize(u'\n')) {
        items.readLine(line);
    }
    items.closeItem();
    return items.terms();
}

std::optional<std::pair<QString, QString>> parseYAMLKeyValue(QStringView line)
{
    const qsizetype colon = line.indexOf(QLatin1Char(':'));
    if (colon < 0) {
        return std::nullopt;
    }
    const QString key = withoutBlanks(line.first(colon)).toString();
    const QStringView written = withoutBlanks(line.mid(colon + 1));
    const QLatin1Char quote('"');
    if (written.size() < 2 || !written.startsWith(quote) || !written.endsWith(quote)) {
        return std::pair {key, written.toString()};
    }
    QString value = written.mid(1, written.size() - 2).toString();
    value.replace(QLatin1String("\\\""), QLatin1String("\""));
    return std::pair {key, value};
}

std::optional<LumaphoneGlossaryTerm> makeTerm(
    const QHash<QString, QString> &item, const UuidGenerator &makeUuid)
{
    const QString source = item.value(QStringLiteral("source"));
    if (source.isEmpty() || !item.contains(QStringLiteral("target"))) {
        return std::nullopt;
    }
    return LumaphoneGlossaryTerm {
        .id = makeUuid(),
        .source = source,
        .target = item.value(QStringLiteral("target")),
        .mode = mode(item),
        .note = item.value(QStringLiteral("note")),
        .isEnabled = isEnabled(item),
        .caseSensitive = item.value(QStringLiteral("caseSensitive")) == QLatin1String("true"),
    };
}

QString encodeYAML(const QList<LumaphoneGlossaryTerm> &terms)
{
    QString text = QStringLiteral("terms:\n");
    for (const LumaphoneGlossaryTerm &term : terms) {
        if (&term != &terms.front()) {
            text.append(QLatin1Char('\n'));
        }
        text.append(entry(term));
    }
    return text;
}

} // namespace lumaphone
