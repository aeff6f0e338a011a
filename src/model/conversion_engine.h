#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "formula/formula_context.h"
#include "model/conversion.h"
#include "model/item.h"

namespace velm {

/// Fills in the units of a conversion document from the one that is known. Remembers how it did between calls, so that
/// the next keystroke costs neither a search nor memory.
class CVelmConversionEngine {
public:
    using Items = std::vector<std::unique_ptr<CVelmItem>>;
    using Conversions = std::vector<std::unique_ptr<CVelmConversion>>;

    /// Gives every item but `current` (which keeps its value and state; may be null) a new state: 1 and a value
    /// when a route of conversions leads to it, 2 when its route failed, 0 when there is none or when it is hidden
    /// and no route leads through it. Sets the items' indices to their positions.
    void Recalculate(const Items& items, const Conversions& conversions, const CVelmItem* current,
                     FormulaContext& context);

private:
    /// What the running search knows of a unit.
    enum class Mark : std::uint8_t {
        Barren,  ///< not solved, and it is not worth while to try; see conversion_engine.cpp
        Open,    ///< not solved
        Known,   ///< has a value
        Closed,  ///< on the route, or solved with an error
    };

    /// One way to compute a unit: from another unit, by a conversion, in one of its two directions.
    struct Step {
        CVelmConversion* conversion;
        std::uint32_t source;
        bool forward;
        bool works;
        bool worksBack;  ///< in the other direction

        bool Apply(FormulaContext& context) const {
            return forward ? conversion->ApplyForward(context) : conversion->ApplyInReverse(context);
        }
    };

    /// A unit on the current route and the step that is tried next for it.
    struct Visit {
        std::uint32_t unit;
        std::uint32_t nextStep;
    };

    /// A step that the search applied, and the state that it gave its unit.
    struct Applied {
        Step step;
        CVelmItem* unit;
        std::int32_t state;
    };

    struct ItemShape {
        const CVelmItem* item;
        bool shown;
        bool operator==(const ItemShape&) const = default;
    };

    struct ConversionShape {
        CVelmConversion* conversion;
        const CVelmItem* unit1;
        const CVelmItem* unit2;
        bool worksForward;
        bool worksInReverse;
        bool operator==(const ConversionShape&) const = default;
    };

    /// A conversion between two units of the document, by their positions.
    struct Join {
        const ConversionShape* shape;
        std::uint32_t unit1;
        std::uint32_t unit2;
    };

    /// All that the course of a search depends on, but for the states that its steps give.
    struct Shape {
        const CVelmItem* known = nullptr;
        std::vector<ItemShape> items;
        std::vector<ConversionShape> conversions;
        bool operator==(const Shape&) const = default;
    };

    bool Remember(const Items& items, const Conversions& conversions, const CVelmItem* current);
    void Reset(const CVelmItem* current);
    void BuildSteps();
    std::vector<Join> FindJoins() const;
    bool IsOwn(const CVelmItem* item) const;
    bool Repeat(FormulaContext& context) const;
    void Search(FormulaContext& context);
    void Solve(std::uint32_t target, FormulaContext& context);
    bool Enter(std::uint32_t unit, FormulaContext& context);
    bool Apply(const Step& step, std::uint32_t unit, FormulaContext& context);
    const Step* NextBridge(Visit& visit) const;
    void GiveUp(std::uint32_t unit);
    void AnnounceKnown(std::uint32_t unit);
    void Revive(std::uint32_t unit);

    const Items* items_ = nullptr;          ///< of the running call only
    Shape shape_;                           ///< of the last call
    Shape newShape_;                        ///< of the running call; kept for its memory
    std::optional<std::uint32_t> known_;    ///< position of the shape's known item
    std::vector<Step> steps_;               ///< grouped by the unit computed, in the conversions' order
    std::vector<std::uint32_t> firstStep_;  ///< by unit, one more at the end
    std::vector<Applied> applied_;          ///< by the last search, in order
    std::vector<Visit> route_;              ///< the units being solved, the target first
    std::vector<Mark> marks_;               ///< by unit
    std::vector<std::uint32_t> toRevive_;
};

}  // namespace velm
