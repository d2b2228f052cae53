#pragma once

class QQmlEngine;

namespace lumaphone {

/// Lets an engine load the module Lumaphone: its import path and its symbols.
void setUpQmlEngine(QQmlEngine &engine);

} // namespace lumaphone
