#include "app/floating/CaptionRoom.h"

#include <algorithm>

namespace lumaphone {

namespace {

constexpr double leastPadding = 4;
constexpr double sourceShare = 0.4;

} // namespace

CaptionRoom::CaptionRoom(double panelHeight, double wantedPadding, const LeastHeights &least)
{
    const bool hasTranslation = least.translation > 0;
    showsSource = least.source > 0
        && (!hasTranslation || least.source + least.translation + 2 * leastPadding <= panelHeight);
    const double needed = (showsSource ? least.source : 0) + least.translation;
    padding = std::clamp((panelHeight - needed) / 2, leastPadding, std::max(leastPadding, wantedPadding));
    textHeight = std::max(0.0, panelHeight - 2 * padding);
    if (showsSource) {
        sourceHeight = hasTranslation
            ? std::min(std::max(textHeight * sourceShare, least.source), textHeight - least.translation)
            : textHeight;
    }
}

} // namespace lumaphone
