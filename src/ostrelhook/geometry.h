// Points and rectangles as the framework counts them, in pixels. The number of the template tells what the
// coordinates are for, so that a position of the pointer is not taken for the bounds of an object.
#pragma once

namespace Ostrel {

/// A position. Point<1> is one of the pointer, on the desktop.
template <int Kind>
struct Point
{
    int kind = Kind;
    int x = 0;
    int y = 0;
    int screen = -1; ///< number of the screen; -1 where all screens are one desktop

    bool operator==(const Point &) const = default;
};

/// A rectangle. Rect<2> holds the bounds of an object; those of something invisible, or that could not be
/// measured, have a width and a height of -1.
template <int Kind>
struct Rect
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int screen = -1; ///< number of the screen; -1 where all screens are one desktop

    bool isValid() const { return width >= 0 && height >= 0; }
    /// Whether a position lies inside; the right and the lower edge are outside.
    bool contains(int px, int py) const { return px >= x && py >= y && px - x < width && py - y < height; }
    bool operator==(const Rect &) const = default;
};

/// A rectangle on the screen. All four values are -1 where something is invisible or could not be measured.
struct ScreenRectangle
{
    int x = -1;
    int y = -1;
    int width = -1;
    int height = -1;

    bool isValid() const { return width >= 0 && height >= 0; }
    bool operator==(const ScreenRectangle &) const = default;
};

} // namespace Ostrel
