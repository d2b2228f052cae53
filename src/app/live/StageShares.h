#pragma once

namespace lumaphone {

/// Type sizes and margins of the stage, in pixels of the interface.
struct StageType
{
    int sourceSize;
    int sourceLineHeight;
    int translationSize;
    int translationLineHeight;
    int margin; ///< at the sides, and above and below while there is room
    int leastMargin; ///< above and below
    int gap; ///< below the pills, while there is room
};

/// What has to share the height of the stage.
struct StageNeeds
{
    int height = 0;
    int translationLines = 0; ///< that the text takes
    int noticeLines = 0; ///< that the notice takes; none without a notice

    bool operator==(const StageNeeds &) const = default;
};

/// How it is shared.
struct StageShares
{
    bool isCompact = false; ///< the smaller type
    int margin = 0; ///< above and below
    int gap = 0; ///< below the pills
    bool hasPills = true;
    int sourceLines = 0;
    int translationLines = 0;
    int noticeLines = 0;

    bool operator==(const StageShares &) const = default;
};

/// The stage is higher in a higher workspace, up to a limit, whatever is said.
int stageHeight(int workspaceHeight);
/// The larger type, where it has all its margins in a stage of that height.
bool isStageCompact(int stageHeight);
const StageType &stageType(bool isCompact);
int stageNoticeHeight(int lines);

/// Two lines are kept for the translation, and a third where it takes one. For them the stage gives up first
/// its margins, then lines of the source, then the pills, then lines of the notice.
StageShares shareStage(const StageNeeds &needs);
/// The height that all of it takes.
int heightOf(const StageShares &shares);

namespace stage {

inline constexpr int pillHeight = 28;
inline constexpr int leastGap = 8; ///< below the pills
inline constexpr int sourceGap = 4; ///< below the source
inline constexpr int noticeGap = 8; ///< above the notice
inline constexpr int fewestTranslationLines = 2;
inline constexpr int mostTranslationLines = 3;
inline constexpr int mostSourceLines = 2;

} // namespace stage

} // namespace lumaphone
