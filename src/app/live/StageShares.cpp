#include "app/live/StageShares.h"

#include <algorithm>

namespace lumaphone {

namespace {

constexpr StageType largeType {.sourceSize = 20,
    .sourceLineHeight = 30,
    .translationSize = 40,
    .translationLineHeight = 52,
    .margin = 32,
    .leastMargin = 16,
    .gap = 24};
constexpr StageType compactType {.sourceSize = 18,
    .sourceLineHeight = 26,
    .translationSize = 32,
    .translationLineHeight = 42,
    .margin = 24,
    .leastMargin = 12,
    .gap = 16};

// Of the smallest window, and from where on the stage grows no more.
constexpr int smallestWorkspace = 624;
constexpr int smallestStage = 244;
constexpr int largeWorkspace = 700;
constexpr int largeStage = 300;

constexpr int noticeLineHeight = 19;
constexpr int noticePadding = 10;

/// What lies between the margins, with a gap of its least size.
int contentHeight(const StageShares &shares)
{
    StageShares content = shares;
    content.margin = 0;
    content.gap = stage::leastGap;
    return heightOf(content);
}

/// Gives what is left to the margins, and to the gap as far as they go together.
void growMargins(StageShares &shares, int height)
{
    const StageType &type = stageType(shares.isCompact);
    const int room = height - contentHeight(shares);
    const int least = 2 * type.leastMargin;
    const int most = 2 * type.margin + (type.gap - stage::leastGap);
    const double part = std::clamp(double(room - least) / (most - least), 0.0, 1.0);
    shares.margin = type.leastMargin + int(part * (type.margin - type.leastMargin));
    shares.gap = stage::leastGap + int(part * (type.gap - stage::leastGap));
}

/// Takes one more thing away, in the order in which they can be missed. False if there is nothing left.
bool giveUpSomething(StageShares &shares)
{
    if (shares.sourceLines > 0) {
        --shares.sourceLines;
    } else if (shares.hasPills) {
        shares.hasPills = false;
    } else if (shares.noticeLines > 1) {
        --shares.noticeLines;
    } else if (shares.translationLines > 1) {
        --shares.translationLines;
    } else {
        return false;
    }
    return true;
}

} // namespace

int stageHeight(int workspaceHeight)
{
    const int above = std::clamp(workspaceHeight, smallestWorkspace, largeWorkspace) - smallestWorkspace;
    return smallestStage + above * (largeStage - smallestStage) / (largeWorkspace - smallestWorkspace);
}

bool isStageCompact(int stageHeight)
{
    return stageHeight < heightOf({.isCompact = false,
               .margin = largeType.margin,
               .gap = largeType.gap,
               .sourceLines = stage::mostSourceLines,
               .translationLines = stage::fewestTranslationLines});
}

const StageType &stageType(bool isCompact)
{
    return isCompact ? compactType : largeType;
}

int stageNoticeHeight(int lines)
{
    return lines > 0 ? lines * noticeLineHeight + 2 * noticePadding : 0;
}

StageShares shareStage(const StageNeeds &needs)
{
    StageShares shares {.isCompact = isStageCompact(needs.height),
        .sourceLines = stage::mostSourceLines,
        .translationLines
        = std::clamp(needs.translationLines, stage::fewestTranslationLines, stage::mostTranslationLines),
        .noticeLines = needs.noticeLines};
    const int room = needs.height - 2 * stageType(shares.isCompact).leastMargin;
    while (contentHeight(shares) > room && giveUpSomething(shares)) {
    }
    growMargins(shares, needs.height);
    return shares;
}

int heightOf(const StageShares &shares)
{
    const StageType &type = stageType(shares.isCompact);
    const int pills = shares.hasPills ? stage::pillHeight + shares.gap : 0;
    const int source
        = shares.sourceLines > 0 ? shares.sourceLines * type.sourceLineHeight + stage::sourceGap : 0;
    const int notice = shares.noticeLines > 0 ? stage::noticeGap + stageNoticeHeight(shares.noticeLines) : 0;
    return 2 * shares.margin + pills + source + shares.translationLines * type.translationLineHeight + notice;
}

} // namespace lumaphone
