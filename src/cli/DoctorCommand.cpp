#include "cli/DoctorCommand.h"

#include "diagnosis/Diagnosis.h"

namespace lumaphone::cli {

ExitStatus runDoctor(const MachineFacts &machine, const CommandStreams &streams)
{
    const Diagnosis diagnosis = diagnosisOf(machine);
    streams.out(diagnosisText(diagnosis).toUtf8());
    return diagnosis.hasProblem() ? exitFailure : exitSuccess;
}

} // namespace lumaphone::cli
