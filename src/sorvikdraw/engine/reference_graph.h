#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace sorvik::draw::layer_tree {

/// What refers to what.
class ReferenceGraph {
public:
    using Node = std::uint32_t;

    /// Nodes are numbered from 0 in the order of their coming.
    [[nodiscard]] Node addNode() { return nodes_++; }
    void connect(Node from, Node to);

    struct Shape {
        std::optional<Node> inCircle;  ///< one that refers to itself, perhaps by way of others
        std::size_t depth = 0;         ///< nodes in the longest chain, where there is no circle
    };
    [[nodiscard]] Shape shape() const;

private:
    struct Edge {
        Node from, to;
    };

    [[nodiscard]] Node nodeInCircle(const std::vector<std::uint32_t>& openReferences) const;

    Node nodes_ = 0;
    std::vector<Edge> edges_;
};

}  // namespace sorvik::draw::layer_tree
