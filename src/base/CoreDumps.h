#pragma once

namespace lumaphone {

/// Keeps this process and those it starts from leaving their memory, in which keys and transcripts stand, on
/// the disk when they crash. LUMAPHONE_CORE_DUMPS=1 lets them, for debugging.
void forgoCoreDumps();

} // namespace lumaphone
