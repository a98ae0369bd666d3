#include "host/html/layout.h"

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>
#include <graphviz/types.h>

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>

namespace host::html {

namespace {

constexpr double UNITS_OF_AN_INCH = 72;

// The library takes texts that it does not change as if it did.
void set(void* object, const std::string& name, const std::string& value) {
    std::string key = name;
    std::string text = value;
    std::string none;
    agsafeset(object, key.data(), text.data(), none.data());
}

// The library with its plugins. It is never released: it would leave parts of itself behind each time.
GVC_t* library() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): the library takes it so
    static GVC_t* const context = gvContext();
    return context;
}

// A graph of the library with its layout, which is there as long as it lives.
class LibraryGraph {
  public:
    LibraryGraph(std::span<const Box> boxes, std::span<const Connection> connections)
        : graph_(agopen(std::string("page").data(), Agdirected, nullptr)) {
        set(graph_.get(), "rankdir", "LR");
        set(graph_.get(), "ranksep", "1.6");
        set(graph_.get(), "nodesep", "0.16");
        add_boxes(boxes);
        for (const Connection& connection : connections) {
            edges_.push_back(agedge(graph_.get(), nodes_[connection.from], nodes_[connection.to], nullptr, 1));
            if (boxes[connection.from].is_framed && boxes[connection.to].is_framed) {
                set(edges_.back(), "constraint", "false");  // within the frame there is one layer
            }
        }
        if (gvLayout(library(), graph_.get(), "dot") != 0) {
            throw std::runtime_error("Graphviz has no layout of the name dot; install it anew");
        }
        is_laid_out_ = true;
    }
    ~LibraryGraph() {
        if (is_laid_out_) {
            gvFreeLayout(library(), graph_.get());
        }
    }
    LibraryGraph(const LibraryGraph&) = delete;
    LibraryGraph& operator=(const LibraryGraph&) = delete;

    [[nodiscard]] Layout layout() const {
        const boxf whole = GD_bb(graph_.get());
        const auto flipped = [&whole](const pointf& point) {
            return Point{point.x - whole.LL.x, whole.UR.y - point.y};
        };
        Layout layout;
        layout.width = whole.UR.x - whole.LL.x;
        layout.height = whole.UR.y - whole.LL.y;
        for (Agnode_t* const node : nodes_) {
            layout.centers.push_back(flipped(ND_coord(node)));
        }
        for (Agedge_t* const edge : edges_) {
            const bezier& curve = ED_spl(edge)->list[0];
            std::vector<Point>& points = layout.curves.emplace_back();
            for (const pointf& point : std::span(curve.list, static_cast<std::size_t>(curve.size))) {
                points.push_back(flipped(point));
            }
            points.push_back(flipped(curve.ep));
        }
        if (frame_ != nullptr) {
            const boxf frame = GD_bb(frame_);
            layout.frame_begin = flipped({frame.LL.x, frame.UR.y});
            layout.frame_end = flipped({frame.UR.x, frame.LL.y});
        }
        return layout;
    }

  private:
    void add_boxes(std::span<const Box> boxes) {
        for (std::size_t place = 0; place < boxes.size(); ++place) {
            const Box& box = boxes[place];
            if (box.is_framed && frame_ == nullptr) {
                frame_ = agsubg(graph_.get(), std::string("cluster_frame").data(), 1);
                set(frame_, "margin", "14");
            }
            Agraph_t* const around = box.is_framed ? frame_ : graph_.get();
            Agnode_t* const node = agnode(around, std::to_string(place).data(), 1);
            set(node, "shape", "box");
            set(node, "fixedsize", "true");
            set(node, "label", "");
            set(node, "width", std::to_string(box.width / UNITS_OF_AN_INCH));
            set(node, "height", std::to_string(box.height / UNITS_OF_AN_INCH));
            nodes_.push_back(node);
        }
    }

    struct Deleter {
        void operator()(Agraph_t* graph) const { agclose(graph); }
    };
    std::unique_ptr<Agraph_t, Deleter> graph_;
    Agraph_t* frame_ = nullptr;
    std::vector<Agnode_t*> nodes_;
    std::vector<Agedge_t*> edges_;
    bool is_laid_out_ = false;
};

}  // namespace

Layout layout_of(std::span<const Box> boxes, std::span<const Connection> connections) {
    static std::mutex one_at_a_time;  // the library keeps its state in variables of the program
    const std::scoped_lock lock(one_at_a_time);
    agseterr(AGMAX);  // it has no messages that concern a user
    return LibraryGraph(boxes, connections).layout();
}

}  // namespace host::html
