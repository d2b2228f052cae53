#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <functional>

namespace lumaphone {

/// Whether this machine has something that draws in three dimensions. Without it that is done by the
/// processor, which takes 130 MB more than drawing the window without.
bool hasGraphicsCard();

/// The value of QT_QUICK_BACKEND that suits the machine; empty to leave the choice to the toolkit. What the
/// user has set counts.
QString preferredRenderer(
    const QProcessEnvironment &environment, const std::function<bool()> &hasGraphicsCard);

} // namespace lumaphone
