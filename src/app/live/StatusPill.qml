import Lumaphone

/// A short fact about the session.
Chip {
}
