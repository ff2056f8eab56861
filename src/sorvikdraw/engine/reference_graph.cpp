#include "sorvikdraw/engine/reference_graph.h"

#include <algorithm>

namespace sorvik::draw::layer_tree {

void ReferenceGraph::connect(Node from, Node to) {
    // Neighbours share their paint, as a rule.
    if (edges_.empty() || edges_.back().from != from || edges_.back().to != to) {
        edges_.push_back({from, to});
    }
}

// Takes away what refers to nothing, again and again. What stays refers to a circle.
ReferenceGraph::Shape ReferenceGraph::shape() const {
    std::vector<Edge> byTarget = edges_;
    std::ranges::sort(byTarget, {}, &Edge::to);
    std::vector<std::uint32_t> openReferences(nodes_);
    for (const Edge& edge : edges_) {
        ++openReferences[edge.from];
    }
    std::vector<Node> done;
    for (Node node = 0; node < nodes_; ++node) {
        if (openReferences[node] == 0) {
            done.push_back(node);
        }
    }
    std::vector<std::size_t> depths(nodes_, 1);
    for (std::size_t next = 0; next < done.size(); ++next) {
        const Node target = done[next];
        for (const Edge& edge : std::ranges::equal_range(byTarget, target, {}, &Edge::to)) {
            depths[edge.from] = std::max(depths[edge.from], depths[target] + 1);
            if (--openReferences[edge.from] == 0) {
                done.push_back(edge.from);
            }
        }
    }
    if (done.size() < nodes_) {
        return {nodeInCircle(openReferences), 0};
    }
    return {std::nullopt, depths.empty() ? 0 : *std::ranges::max_element(depths)};
}

// Whoever follows open references as often as there are nodes is on a circle.
ReferenceGraph::Node ReferenceGraph::nodeInCircle(const std::vector<std::uint32_t>& openReferences) const {
    std::vector<Node> next(nodes_);
    Node node = 0;
    for (const Edge& edge : edges_) {
        if (openReferences[edge.from] > 0 && openReferences[edge.to] > 0) {
            next[edge.from] = edge.to;
            node = edge.from;
        }
    }
    for (Node step = 0; step < nodes_; ++step) {
        node = next[node];
    }
    return node;
}

}  // namespace sorvik::draw::layer_tree
