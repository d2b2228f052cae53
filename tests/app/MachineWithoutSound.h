#pragma once

#include "platform/MachineFacts.h"

namespace lumaphone::test {

inline MachineFacts machineWithoutSound()
{
    MachineFacts machine;
    machine.program = "Lumaphone 1.0";
    machine.sound.problem = "無法連線到聲音伺服器：Connection refused";
    return machine;
}

} // namespace lumaphone::test
