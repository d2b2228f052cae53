#pragma once

#include "base/Json.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <utility>

namespace lumaphone::test {

/// Source and translation of the last finished line that a captioning printed as JSON; empty if there is
/// none.
inline std::pair<QString, QString> lastFinalLine(const QList<QByteArray> &printed)
{
    std::pair<QString, QString> last;
    for (const QByteArray &line : printed) {
        const json::Value event = json::parse(line);
        if (json::text(event, "event") == "line" && json::boolean(event, "isFinal")) {
            last = {json::text(event, "sourceText"), json::text(event, "translatedText")};
        }
    }
    return last;
}

} // namespace lumaphone::test
