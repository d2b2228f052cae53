#pragma once

#include "storage/LumaphoneSettings.h"
#include "storage/TranscriptLibraryStore.h"
#include "support/MemoryDefaultsStore.h"
#include "support/MemoryKeychain.h"
#include "support/NotingFileViewer.h"

#include <QLocale>
#include <QString>
#include <QUuid>

namespace lumaphone::test {

/// The transcript library in a folder, as another process may find it too; all but the disk is a fake.
template<typename ClockOfLibrary> struct LibraryOnDisk
{
    ClockOfLibrary clock;
    NotingFileViewer viewer;
    MemoryDefaultsStore defaults;
    MemoryKeychain keychain;
    LumaphoneSettings settings {defaults, keychain};
    TranscriptLibraryStore store;

    explicit LibraryOnDisk(const QString &root)
        : store({
            .layout = TranscriptLibraryLayout::at(root),
            .areRevisions = [](const QString &, const QString &) { return false; },
            .clock = clock,
            .fileViewer = viewer,
            .makeUuid = &QUuid::createUuid,
            .locale = QLocale::c(),
        })
    {
    }
};

} // namespace lumaphone::test
