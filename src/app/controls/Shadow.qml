import Qt5Compat.GraphicalEffects

/// The shadow of `source`, to be drawn behind it.
DropShadow {}
