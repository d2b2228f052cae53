
/// The one action that a view is about.
ActionButton {
    kind: ActionButton.Kind.Primary
}
