#include "cli/RunCommand.h"

#include "LumaphoneVersion.h"
#include "base/RunToEnd.h"
#include "capture/SoundFileReader.h"
#include "cli/DoctorCommand.h"
#include "cli/DraftCommand.h"
#include "cli/GlossaryCommand.h"
#include "cli/KeyCommand.h"
#include "cli/LibraryCommand.h"
#include "cli/LiveCaptions.h"
#include "cli/ModelsCommand.h"
#include "cli/SettingsCommand.h"
#include "cli/StandardStreams.h"
#include "glossary/LumaphoneGlossaryStore.h"
#include "machine/Machine.h"
#include "models/ModelInstaller.h"
#include "platform/desktop/TerminationSignals.h"
#include "session/LumaphoneSessionDraftStore.h"

#include <unistd.h>

namespace lumaphone::cli {

namespace {

/// One function for each command.
class Program
{
public:
    Program(Machine &machine, const CommandStreams &streams)
        : m_machine(machine)
        , m_streams(streams)
    {
    }

    ExitStatus operator()(const ShowText &command) const
    {
        m_streams.out(command.text.toUtf8());
        return exitSuccess;
    }

    ExitStatus operator()(const CaptionCommandLine &command) const
    {
        if (const auto *file = std::get_if<SoundFileInput>(&command.input)) {
            // Said before a session starts, whose messages speak of devices.
            SoundFileReader reader(file->path);
        }
        return LiveCaptions(command, m_machine, m_streams).run();
    }

    ExitStatus operator()(const Doctor &) const
    {
        const auto probe
            = m_machine.probe(QStringLiteral("lumaphone-cli %1").arg(QStringLiteral(LUMAPHONE_VERSION)));
        return runDoctor(probe(), m_streams);
    }

    ExitStatus operator()(const DraftShow &) const { return runDraftShow(m_machine.draftStore(), m_streams); }
    ExitStatus operator()(const DraftDiscard &) const
    {
        if (!claimDraft(m_machine.instance(), m_streams)) {
            return exitFailure;
        }
        LumaphoneSessionDraftStore drafts = m_machine.draftStore();
        return runDraftDiscard(drafts, m_streams);
    }

    ExitStatus operator()(const ModelsList &) const { return runModelsList(m_machine.models(), m_streams); }
    ExitStatus operator()(const ModelsInstall &command) const
    {
        const ModelStore &store = m_machine.models();
        ModelInstaller installer(store, m_machine.mainQueue());
        std::stop_source stop;
        const TerminationSignals termination([&stop] { stop.request_stop(); });
        return runToEnd(runModelsInstall(
            command, store, installer, m_streams, terminalColumnsOf(STDERR_FILENO), stop.get_token()));
    }
    ExitStatus operator()(const ModelsRemove &command) const
    {
        return runModelsRemove(command, m_machine.models(), m_streams);
    }
    ExitStatus operator()(const ModelsVerify &command) const
    {
        return runModelsVerify(command, m_machine.models(), m_streams);
    }
    ExitStatus operator()(const ModelsLicence &command) const
    {
        return runModelsLicence(command, m_machine.models(), m_streams);
    }

    ExitStatus operator()(const SettingsList &) const
    {
        return runSettingsList(m_machine.settings(), m_streams);
    }
    ExitStatus operator()(const SettingsGet &command) const
    {
        return runSettingsGet(command, m_machine.settings(), m_streams);
    }
    ExitStatus operator()(const SettingsSet &command) const
    {
        return runSettingsSet(command, m_machine.settings(), m_streams);
    }

    ExitStatus operator()(const KeySet &) const { return runToEnd(runKeySet(keyAccess(), m_streams)); }
    ExitStatus operator()(const KeyClear &) const { return runToEnd(runKeyClear(keyAccess(), m_streams)); }
    ExitStatus operator()(const KeyStatus &) const { return runToEnd(runKeyStatus(keyAccess(), m_streams)); }

    ExitStatus operator()(const GlossaryList &) const
    {
        return runGlossaryList(m_machine.glossary(), m_streams);
    }
    ExitStatus operator()(const GlossaryAdd &command) const
    {
        return runGlossaryAdd(command, m_machine.glossary(), &QUuid::createUuid, m_streams);
    }
    ExitStatus operator()(const GlossaryRemove &command) const
    {
        return runGlossaryRemove(command, m_machine.glossary(), m_streams);
    }
    ExitStatus operator()(const GlossarySetEnabled &command) const
    {
        return runGlossarySetEnabled(command, m_machine.glossary(), m_streams);
    }

    ExitStatus operator()(const GlossaryImport &command) const
    {
        return runGlossaryImport(command, m_machine.glossary(), m_streams);
    }
    ExitStatus operator()(const GlossaryExport &command) const
    {
        return runGlossaryExport(command, m_machine.glossary(), m_streams);
    }

    ExitStatus operator()(const LibraryList &command) const
    {
        return runLibraryList(command, m_machine.library(), m_streams);
    }
    ExitStatus operator()(const LibraryShow &command) const
    {
        return runLibraryShow(command, m_machine.library(), m_streams);
    }
    ExitStatus operator()(const LibraryExport &command) const
    {
        return runLibraryExport(command, m_machine.library(), m_streams);
    }
    ExitStatus operator()(const LibraryDelete &command) const
    {
        return runLibraryDelete(command, m_machine.library(), terminalQuestion(m_streams), m_streams);
    }
    ExitStatus operator()(const LibrarySave &) const
    {
        if (!claimDraft(m_machine.instance(), m_streams)) {
            return exitFailure;
        }
        LumaphoneSessionDraftStore drafts = m_machine.draftStore();
        return runLibrarySave(drafts, m_machine.library(), m_machine.settings(),
            m_machine.glossary().enabledTerms(), m_streams);
    }

private:
    KeyAccess keyAccess() const { return {m_machine.settings(), m_machine.clock(), m_machine.mainQueue()}; }

    Machine &m_machine;
    const CommandStreams &m_streams;
};

} // namespace

ExitStatus runCommand(const CommandLine &command, Machine &machine, const CommandStreams &streams)
{
    return std::visit(Program(machine, streams), command);
}

} // namespace lumaphone::cli
