#include "host/html/picture.h"

#include "host/html/html_text.h"
#include "host/html/layout.h"
#include "host/html/use_graph.h"
#include "host/text/counted.h"
#include "host/text/percent_encoding.h"
#include "host/text/short_path.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace host::html {

namespace {

// Of the drawing, in its units. Its font has one width for all characters.
constexpr double CHARACTER = 7.3;
constexpr double BOX_HEIGHT = 26;
constexpr double BOX_PADDING = 10;
constexpr double HALF_X_HEIGHT = 4;
constexpr std::size_t LONGEST_LABEL = 30;

struct DrawnNode {
    std::string label;
    std::string path;       // and what it stands for, in words
    std::string page = {};  // the address of the file on a page of this wiki; empty for none
    std::string row = {};   // the anchor of its first row in the table below; empty when nothing leads there
    double width = 0;
};

// The characters of a text; a byte that begins none is one.
std::vector<std::string_view> picture_characters(std::string_view text) {
    std::vector<std::string_view> characters;
    while (!text.empty()) {
        characters.push_back(text.substr(0, std::max<std::size_t>(code_point_bytes(text), 1)));
        text.remove_prefix(characters.back().size());
    }
    return characters;
}

// How many columns of the font a character takes: outside of alphabets mostly two.
std::size_t columns_of(std::string_view character) {
    return character.size() > 2 ? 2 : 1;
}

// The end of a path, of which no more than fits is left, and how many columns it takes.
std::pair<std::string, std::size_t> label_of(std::string_view path) {
    const std::vector<std::string_view> characters = picture_characters(short_path(path));
    std::size_t columns = 0;
    auto begin = characters.end();
    while (begin != characters.begin() && columns + columns_of(*(begin - 1)) < LONGEST_LABEL) {
        columns += columns_of(*--begin);
    }
    std::string label;
    if (begin != characters.begin()) {
        label = "\u2026";
        ++columns;
    }
    for (; begin != characters.end(); ++begin) {
        label += *begin;
    }
    return {label, columns};
}

std::string_view name_of(GraphNode::Side side) {
    constexpr std::array<std::string_view, 3> SIDES{"user", "page", "used"};
    return SIDES.at(static_cast<std::size_t>(side));
}

DrawnNode drawn(const GraphNode& node, bool has_row, const Links& links) {
    const bool is_folder = node.files > 0;
    const std::string path = node.path.empty() ? "other files" : node.path + (is_folder ? "/" : "");
    auto [label, columns] = label_of(path);
    DrawnNode drawn{.label = std::move(label), .path = path};
    if (is_folder) {
        const std::string count = counted(static_cast<std::int64_t>(node.files), "file");
        drawn.label += " " + std::to_string(node.files);
        drawn.path += ", " + count;
        columns += 1 + std::to_string(node.files).size();
    }
    drawn.width = std::ceil(static_cast<double>(columns) * CHARACTER + 2 * BOX_PADDING);
    drawn.page = is_folder ? "" : links.address(models::Text(node.path));
    if (drawn.page.empty() && has_row) {
        drawn.row = std::string(name_of(node.side)) + ":" + percent_encoded(path);
    }
    return drawn;
}

std::string number(double value) {
    std::array<char, 32> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::round(value * 10) / 10).ptr;
    return {digits.data(), static_cast<std::size_t>(end - digits.data())};
}

std::string point(const Point& at) {
    return number(at.x) + " " + number(at.y);
}

// The curve of an arrow up to its head, and the head.
View arrow_view(const GraphArrow& arrow, const std::vector<Point>& points, bool is_inside) {
    constexpr double HALF_HEAD = 3.5;
    const Point& tip = points.back();
    const Point& base = points[points.size() - 2];
    const double length = std::max(std::hypot(tip.x - base.x, tip.y - base.y), 0.1);
    const Point across{(base.y - tip.y) / length * HALF_HEAD, (tip.x - base.x) / length * HALF_HEAD};
    std::string shaft = "M" + point(points.front()) + "C";
    for (std::size_t at = 1; at + 1 < points.size(); ++at) {
        shaft += (at == 1 ? "" : " ") + point(points[at]);
    }
    const std::string head = "M" + point({base.x + across.x, base.y + across.y}) + "L" + point(tip) + "L" +
                             point({base.x - across.x, base.y - across.y}) + "z";
    return object_of({{"from", text_of(static_cast<std::int64_t>(arrow.from))},
                      {"to", text_of(static_cast<std::int64_t>(arrow.to))},
                      {"is_inside", is_inside},
                      {"shaft", text_of(shaft)},
                      {"head", text_of(head)}});
}

View node_view(std::size_t place, const GraphNode& node, const DrawnNode& drawn, const Point& center) {
    return object_of({{"side", text_of(name_of(node.side))},
                      {"is_folder", node.files > 0},
                      {"href", text_if_any(drawn.row.empty() ? drawn.page : "#" + drawn.row)},
                      {"place", text_of(static_cast<std::int64_t>(place))},
                      {"path", text_of(drawn.path)},
                      {"label", text_of(drawn.label)},
                      {"x", text_of(number(center.x - drawn.width / 2))},
                      {"y", text_of(number(center.y - BOX_HEIGHT / 2))},
                      {"width", text_of(number(drawn.width))},
                      {"height", text_of(number(BOX_HEIGHT))},
                      {"middle", text_of(number(center.x))},
                      {"base", text_of(number(center.y + HALF_X_HEIGHT))}});
}

View frame_view(const Layout& layout) {
    const Point& begin = layout.frame_begin;
    return object_of({{"x", text_of(number(begin.x))},
                      {"y", text_of(number(begin.y))},
                      {"width", text_of(number(layout.frame_end.x - begin.x))},
                      {"height", text_of(number(layout.frame_end.y - begin.y))}});
}

View drawing_view(const UseGraph& graph, const std::vector<DrawnNode>& nodes) {
    std::vector<Box> boxes;
    std::vector<Connection> connections;
    for (std::size_t place = 0; place < nodes.size(); ++place) {
        const bool is_of_page = graph.nodes[place].side == GraphNode::Side::PAGE;
        boxes.push_back({.width = nodes[place].width, .height = BOX_HEIGHT, .is_framed = is_of_page});
    }
    for (const GraphArrow& arrow : graph.arrows) {
        connections.push_back({.from = arrow.from, .to = arrow.to});
    }
    const Layout layout = layout_of(boxes, connections);
    View arrows(View::type::list);
    for (std::size_t at = 0; at < graph.arrows.size(); ++at) {
        const GraphArrow& arrow = graph.arrows[at];
        const bool is_inside = boxes[arrow.from].is_framed && boxes[arrow.to].is_framed;
        arrows.push_back(arrow_view(arrow, layout.curves[at], is_inside));
    }
    View drawn(View::type::list);
    for (std::size_t place = 0; place < nodes.size(); ++place) {
        drawn.push_back(node_view(place, graph.nodes[place], nodes[place], layout.centers[place]));
    }
    return object_of({{"width", text_of(number(std::ceil(layout.width) + 2))},
                      {"height", text_of(number(std::ceil(layout.height) + 2))},
                      {"frame", frame_view(layout)},
                      {"shafts", arrows},
                      {"nodes", drawn}});
}

// Which nodes an arrow begins or ends at.
std::vector<bool> touched_nodes(const UseGraph& graph) {
    std::vector<bool> are_touched(graph.nodes.size());
    for (const GraphArrow& arrow : graph.arrows) {
        are_touched[arrow.from] = true;
        are_touched[arrow.to] = true;
    }
    return are_touched;
}

// The arrows as rows.
View arrows_view(const UseGraph& graph, const std::vector<DrawnNode>& nodes) {
    std::vector<bool> has_row(nodes.size());
    const auto end_view = [&](std::size_t place) {
        const DrawnNode& node = nodes[place];
        const bool is_first = !has_row[place];
        has_row[place] = true;
        return object_of({{"id", text_if_any(is_first ? node.row : "")},
                          {"href", text_if_any(node.page)},
                          {"path", text_of(path_html(node.path))}});
    };
    return list_of(graph.arrows, [&](const GraphArrow& arrow) {
        View from = end_view(arrow.from);
        return object_of({{"from", from}, {"to", end_view(arrow.to)}, {"references", text_of(arrow.references)}});
    });
}

}  // namespace

View picture_view(const Page& page, const Links& links) {
    const UseGraph graph = use_graph(page);
    std::vector<DrawnNode> nodes;
    const std::vector<bool> are_touched = touched_nodes(graph);
    for (std::size_t place = 0; place < graph.nodes.size(); ++place) {
        nodes.push_back(drawn(graph.nodes[place], are_touched[place], links));
    }
    const bool has_arrows = !graph.arrows.empty();
    return object_of({
        {"has_arrows", has_arrows},
        {"has_folders", std::ranges::any_of(graph.nodes, [](const GraphNode& node) { return node.files > 0; })},
        {"drawing", has_arrows ? drawing_view(graph, nodes) : View(false)},
        {"arrows", arrows_view(graph, nodes)},
    });
}

}  // namespace host::html
