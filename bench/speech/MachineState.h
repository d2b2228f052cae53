#pragma once

#include <QString>

namespace lumaphone::bench {

/// The processor, its number of cores and the load of the last minute, in a line for people; with a warning
/// if others are using the machine.
QString machineState();

} // namespace lumaphone::bench
