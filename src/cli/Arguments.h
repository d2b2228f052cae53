#pragma once

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
    const QStringList &positional() const { return m_positional; }
    /// Throws UsageError with `usage` unless there are that many positional arguments, none of them empty.
    void requirePositional(qsizetype count, const QString &usage) const;

private:
    QCommandLineParser m_parser;
    QStringList m_positional;
};

} // namespace lumaphone::cli
