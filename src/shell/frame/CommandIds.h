#pragma once

// The numbers of the frame's commands. They are settled: old settings, tests and macros name commands by
// them.
enum class CommandId : int {
    New = 57600,
    Open = 57601,
    Save = 57603,
    SaveAs = 57604,
    Print = 57607,
    Clear = 57632,
    Copy = 57634,
    Cut = 57635,
    Paste = 57637,
    Undo = 57643,
    About = 57664,
    Exit = 57665,
    NextPane = 57680,
    PreviousPane = 57681,
    Deploy = 32780,
    LayoutMenu = 32786,
    StyleMenu = 32788,
    OpenFolder = 32789,
    ImageWatermark = 32792,
    ImageSignature = 32794,
    Ads = 32797,
};

// Commands that choose from a list: the number minus that of the first is the place in the list.
namespace CommandRange {
constexpr int FirstLayout = 5000;
constexpr int FirstStyle = 5200;
constexpr int BehindLastStyle = 5400;
constexpr int FirstRecentProject = 33000;
constexpr int LastRecentProject = 33020;
} // namespace CommandRange
