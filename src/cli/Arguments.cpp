#include "cli/Arguments.h"

namespace lumaphone::cli {

Arguments::Arguments(const QStringList &arguments, std::initializer_list<Option> options)
{
    m_parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, {}});
    for (const Option &option : options) {
        QStringList names {option.name};
        if (!option.shortName.isEmpty()) {
            names.prepend(option.shortName);
        }
        m_parser.addOption({names, {}, option.valueName, option.defaultValue});
    }
    // The parser expects the program's name in front.
    if (!m_parser.parse(QStringList {QString()} + arguments)) {
        if (!m_parser.unknownOptionNames().isEmpty()) {
            throw UsageError(
                QStringLiteral("不認得的選項：%1").arg(m_parser.unknownOptionNames().constFirst()));
        }
        throw UsageError(QStringLiteral("選項的值不正確：%1").arg(m_parser.errorText()));
    }
    m_positional = m_parser.positionalArguments();
}

void Arguments::requirePositional(qsizetype count, const QString &usage) const
{
    if (m_positional.size() != count || m_positional.contains(QString())) {
        throw UsageError(usage);
    }
}

UsageError Arguments::unknownChoice(const QString &kind, const QString &name, const QStringList &known)
{
    return UsageError(
        QStringLiteral("不認得的%1：%2（可用 %3）").arg(kind, name, known.join(QStringLiteral("、"))));
}

} // namespace lumaphone::cli
