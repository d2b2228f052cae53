import Lumaphone.Controls

/// A short fact about the session.
Chip {
}
