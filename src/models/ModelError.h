#pragma once

#include "base/LocalizedError.h"

#include <QString>

namespace lumaphone {

/// Why a model could not be installed, checked or removed.
class ModelError : public LocalizedError
{
public:
    enum class Case {
        catalogueUnreadable, ///< the list of models is not what it should be; `detail` says where
        unknownModel, ///< no entry of that name
        licenceNotAccepted, ///< the licence has to be accepted first
        busy, ///< another process is installing or removing it
        unreachable, ///< no connection; `detail` is the network's own text
        refused, ///< the server answered with the HTTP status in `detail`
        stalled, ///< the server stopped sending
        interrupted, ///< the connection ended too early, again and again
        wrongSize, ///< `detail` says which size was expected and which came
        wrongContents, ///< the hash is another one
        damagedArchive, ///< cannot be unpacked; `detail` is the reason
        diskFull,
        fileMissing, ///< the folder or archive holds no file of that name
        cancelled,
        partOfProgram, ///< it comes with the program and can neither be installed nor removed
        notShipped, ///< it should have come with the program
        damagedProgram, ///< a file that came with the program is wrong; `detail` says how
    };

    /// `subject` is the model's or the file's name.
    ModelError(Case errorCase, const QString &subject, const QString &detail = {});

    Case errorCase() const noexcept { return m_case; }
    const QString &subject() const noexcept { return m_subject; }

private:
    Case m_case;
    QString m_subject;
};

} // namespace lumaphone
