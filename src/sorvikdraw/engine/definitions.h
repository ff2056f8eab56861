#pragma once

#include <memory>
#include <string_view>
#include <variant>
#include <vector>

#include "sorvikdraw/dom/cascade.h"
#include "sorvikdraw/dom/svg.h"
#include "sorvikdraw/engine/gradient_conversion.h"
#include "sorvikdraw/engine/id_table.h"
#include "sorvikdraw/engine/layer_budget.h"
#include "sorvikdraw/engine/layer_tree.h"
#include "sorvikdraw/engine/reference_graph.h"

namespace sorvik::draw::layer_tree {

/// A paint before the current colour is known: what a reference led to, or a colour as it is written.
using FillPaint = std::variant<dom::Color, std::shared_ptr<const Pattern>, std::shared_ptr<const LinearGradient>,
                               std::shared_ptr<const RadialGradient>>;
using StrokePaint =
    std::variant<dom::Color, std::shared_ptr<const LinearGradient>, std::shared_ptr<const RadialGradient>>;

/// What the elements of a document refer to by the fragment of a URL. Each definition is made once, when it is asked
/// for, and shared by all that refer to it: none takes anything from them.
///
/// A pattern and a mask can refer to others and to themselves. Their contents are therefore not made at once but
/// wait as parts that nextPart() hands out.
class Definitions {
public:
    /// All of them must outlive it.
    Definitions(const dom::SVG& svg, dom::Cascade& cascade, LayerBudget& budget);

    /// The colour "none" where the reference leads nowhere.
    [[nodiscard]] FillPaint fill(const dom::Fill& fill);
    [[nodiscard]] StrokePaint stroke(const dom::Fill& fill);

    // Null where the reference leads nowhere.
    [[nodiscard]] Shared<std::vector<ClipShape>> clip(const dom::URL& url);
    [[nodiscard]] Shared<std::vector<dom::Filter::Effect>> filters(const dom::URL& url);
    /// Belongs to `tree`; a layer of its own in it.
    [[nodiscard]] Layer* mask(const dom::URL& url, Tree& tree);

    struct PatternPart {
        const dom::Pattern* definition;
        std::shared_ptr<Pattern> pattern;  ///< its contents are to be filled in
    };
    struct MaskPart {
        const dom::Mask* definition;
        Layer* layer;  ///< its contents are to be filled in
    };
    using Part = std::variant<PatternPart, MaskPart>;

    /// The next one that was asked for and is to be filled; null when there is none. What is asked for from now on
    /// counts as referred to by it. Good until the next reference is followed.
    [[nodiscard]] const Part* nextPart();

    /// To be called once all parts are filled. Throws LimitError for a pattern or mask that refers to itself, and for
    /// too many of them inside each other.
    void checkReferences() const;

private:
    template <typename Definition, typename Made>
    struct Entry {
        const Definition* definition = nullptr;
        bool isMade = false;
        Made made = {};
    };
    template <typename Definition, typename Made>
    using Table = IdTable<Entry<Definition, Made>>;
    struct MadePattern {
        std::shared_ptr<Pattern> pattern;
        ReferenceGraph::Node node = 0;
    };
    struct MadeMask {
        Layer* layer = nullptr;
        ReferenceGraph::Node node = 0;
    };

    template <typename Definition, typename Made>
    Entry<Definition, Made>* find(Table<Definition, Made>& table, const dom::URL& url);
    template <typename Definition, typename Made>
    Made gradient(Table<Definition, Made>& table, const dom::URL& url);
    template <typename Definition, typename Made>
    const std::vector<dom::GradientStop>& stops(Table<Definition, Made>& table, const Definition& gradient);
    [[nodiscard]] std::shared_ptr<const Pattern> pattern(const dom::URL& url);
    [[nodiscard]] std::vector<ClipShape> makeClip(const dom::ClipPath& definition);
    ReferenceGraph::Node addPart(Part part);
    void refer(ReferenceGraph::Node to);

    dom::Cascade& cascade_;
    LayerBudget& budget_;
    Table<dom::Pattern, MadePattern> patterns_;
    Table<dom::LinearGradient, std::shared_ptr<const LinearGradient>> linearGradients_;
    Table<dom::RadialGradient, std::shared_ptr<const RadialGradient>> radialGradients_;
    Table<dom::ClipPath, Shared<std::vector<ClipShape>>> clipPaths_;
    Table<dom::Mask, MadeMask> masks_;
    Table<dom::Filter, Shared<std::vector<dom::Filter::Effect>>> filters_;

    ReferenceGraph references_;  // between parts; a part's node is its place among them
    std::vector<Part> parts_;
    std::size_t handedOut_ = 0;
};

}  // namespace sorvik::draw::layer_tree
