// Places the boxes and arrows of a drawing. The layout is Graphviz's; how it is drawn is for others.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace host::html {

/// Lengths are in units of a drawing, of which 72 are an inch where it is drawn as large as it is; y grows downwards.
struct Point {
    double x = 0;
    double y = 0;
};

struct Box {
    double width = 0;
    double height = 0;
    bool is_framed = false;  ///< whether it stands in the frame that some share
};

struct Connection {
    std::size_t from = 0;  ///< by the order of the boxes
    std::size_t to = 0;
};

struct Layout {
    double width = 0;
    double height = 0;
    std::vector<Point> centers;              ///< of the boxes
    std::vector<std::vector<Point>> curves;  ///< of the connections: Bézier curves, one after the other, and the tip
    Point frame_begin;                       ///< its corner at the top and left; the same as its end without a frame
    Point frame_end;
};

/// Places boxes in layers from the left to the right, as the connections lead. The same boxes and connections always
/// give the same layout, which takes no fonts. Throws `std::runtime_error` when Graphviz lacks its layouts. Safe to
/// call on several threads.
Layout layout_of(std::span<const Box> boxes, std::span<const Connection> connections);

}  // namespace host::html
