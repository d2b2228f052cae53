#pragma once

namespace lumaphone {

/// Whether the compositor that the environment names offers the layer shell, with which panels lie above all
/// windows, and this build speaks it. Asked on a connection of its own, so that it can be known before there
/// is an application object. Waits for the compositor's answer.
bool isLayerShellOffered();

} // namespace lumaphone
