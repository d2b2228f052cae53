#pragma once

#include "base/RawValue.h"
#include "cli/CommandLine.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <initializer_list>

namespace lumaphone::cli {

/// The arguments of one command, split into options and positional ones. "--help" is always known.
class Arguments
{
public:
    struct Option
    {
        QString name;
        QString valueName; ///< empty for a flag
        QString defaultValue;
        QString shortName; ///< empty for none
    };

    /// Throws UsageError.
    Arguments(const QStringList &arguments, std::initializer_list<Option> options);

    bool wantsHelp() const { return isSet(QStringLiteral("help")); }
    bool isSet(const QString &option) const { return m_parser.isSet(option); }
    QString value(const QString &option) const { return m_parser.value(option); }
    /// The one of `cases` that the option names. Throws UsageError, which calls it `kind` and names them all.
    template<typename Cases>
    typename Cases::value_type choice(const QString &option, const Cases &cases, const QString &kind) const
    {
        if (const auto chosen = caseWithRawValue(cases, value(option))) {
            return *chosen;
        }
        throw unknownChoice(kind, value(option), rawValues(cases));
    }
    const QStringList &positional() const { return m_positional; }
    /// Throws UsageError with `usage` unless there are that many positional arguments, none of them empty.
    void requirePositional(qsizetype count, const QString &usage) const;

private:
    static UsageError unknownChoice(const QString &kind, const QString &name, const QStringList &known);

    QCommandLineParser m_parser;
    QStringList m_positional;
};

} // namespace lumaphone::cli
