#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace lumaphone {
class LumaphoneSettings;
}

namespace lumaphone::cli {

/// One setting as text: its key, the kind of value it takes, and how it is read and changed.
struct Setting
{
    QString key;
    QString kind; ///< for people, such as "a number" or the list of choices
    std::function<QString(const LumaphoneSettings &)> get;
    /// False, without a change, when the text is not of the kind.
    std::function<bool(LumaphoneSettings &, const QString &)> set;
};

/// All settings that have a key, in the order in which they are stored.
const std::vector<Setting> &settingsTable();

} // namespace lumaphone::cli
