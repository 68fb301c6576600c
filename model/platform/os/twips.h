#pragma once

namespace os {

/// The windows' layouts are written in twips: 15 to a pixel at 96 dots per
/// inch.
inline constexpr int kTwipsPerPixel = 15;

constexpr int px(int twips)
{
    return twips / kTwipsPerPixel;
}

constexpr int twips(int pixels)
{
    return pixels * kTwipsPerPixel;
}

} // namespace os
