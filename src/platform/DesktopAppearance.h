#pragma once

#include <functional>

namespace lumaphone {

enum class ColorScheme { light, dark };

/// How the desktop wants programs to look. Main thread.
class DesktopAppearance
{
public:
    virtual ~DesktopAppearance() = default;
    /// What the desktop wants now; `light` where it has no wish.
    virtual ColorScheme colorScheme() const = 0;
    /// `onChange` is called after every change, as long as the object lives; a second call replaces the
    /// first.
    virtual void observe(std::function<void()> onChange) = 0;
};

} // namespace lumaphone
