#pragma once

namespace lumaphone::host {

/// What the host gives up before it loads anything.
struct Sandbox
{
    /// The process ends with the thread that started it, yields to others, leaves no core dump, and keeps no
    /// file open but the standard streams and `socket`. False if the starting process, `parent`, has gone.
    static bool bindTo(int parent, int socket);
    /// No network, no writing to files, no other programs. Throws std::runtime_error.
    static void close();
};

} // namespace lumaphone::host
