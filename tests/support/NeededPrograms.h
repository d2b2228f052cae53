#pragma once

#include <QStandardPaths>
#include <QStringList>
#include <QTest>

namespace lumaphone::test {

/// Those of `programs` that are not installed.
inline QStringList notInstalled(const QStringList &programs)
{
    QStringList missing;
    for (const QString &program : programs) {
        if (QStandardPaths::findExecutable(program).isEmpty()) {
            missing << program;
        }
    }
    return missing;
}

} // namespace lumaphone::test

/// Skips a test, in initTestCase() all tests, for want of the programs in the list `missing`.
#define LUMAPHONE_NEEDS(missing)                                                                             \
    do {                                                                                                     \
        const QStringList wanted = missing;                                                                  \
        if (!wanted.isEmpty()) {                                                                             \
            QSKIP(qPrintable(QStringLiteral("Not installed: ") + wanted.join(QLatin1Char(' '))));            \
        }                                                                                                    \
    } while (false)
