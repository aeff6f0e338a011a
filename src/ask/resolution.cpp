#include "ask/resolution.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velm {

namespace {

constexpr std::size_t MAX_CHOICES = 2048;
constexpr std::size_t MAX_READINGS = 24;

/// By rank.
constexpr std::array<int, 5> RANK_COSTS = {0, 4, 6, 20, 40};
constexpr int OTHER_FILE_COST = 1;
constexpr int OTHER_CASE_COST = 2;
constexpr int NO_FACTOR_COST = 1;

using Kind = CVelmAskedValue::Kind;

class Resolver {
public:
    Resolver(const CVelmUnitIndex& index, FormulaContext& context, const Question& question,
             std::span<const CVelmKeptValue> kept)
        : index_(index), question_(question), evaluation_(index, context, question, kept) {}

    CVelmResolutions Run() {
        const std::size_t count = question_.words.size();
        isSimple_ = count <= 2 && question_.value.nodes.size() <= 4 &&
                    (question_.target.kind == QuestionTargetKind::None ||
                     (question_.target.kind == QuestionTargetKind::Unit && question_.target.tree.nodes.size() == 1) ||
                     question_.target.kind == QuestionTargetKind::Fraction);
        options_.resize(count);
        for (std::size_t word = 0; word < count; ++word) {
            CollectOptions(word);
        }
        evaluation_.choice.assign(count, 0);
        TryFrom(0, 0);
        std::ranges::stable_sort(result_.found, {}, &CVelmResolution::cost);
        return std::move(result_);
    }

private:
    /// The readings of a word that are worth trying. A unit that stands in several files counts once, unless the files'
    /// own conversions may be needed.
    void CollectOptions(std::size_t word) {
        const auto& readings = question_.words[word].readings;
        for (std::size_t i = 0; i < std::min(readings.size(), MAX_READINGS); ++i) {
            const bool isTwin = std::ranges::any_of(
                options_[word], [&](std::uint8_t other) { return IsSameUnit(index_, readings[i], readings[other]); });
            if (isSimple_ || (readings[i].rank != RANK_SECONDARY && !isTwin)) {
                options_[word].push_back(static_cast<std::uint8_t>(i));
            }
        }
        if (options_[word].empty()) {
            options_[word].push_back(0);
        }
    }

    void TryFrom(std::size_t word, int cost) {
        if (word == options_.size()) {
            if (++tried_ <= MAX_CHOICES) {
                Try(cost);
            }
            return;
        }
        for (const std::uint8_t option : options_[word]) {
            if (tried_ > MAX_CHOICES) {
                return;
            }
            const CVelmReading& reading = question_.words[word].readings[option];
            evaluation_.choice[word] = option;
            TryFrom(word + 1, cost + RANK_COSTS[reading.rank] + (reading.isOtherCase ? OTHER_CASE_COST : 0) +
                                  (index_.FactorOf(reading) == 0.0 ? NO_FACTOR_COST : 0));
        }
    }

    void Try(int cost) {
        CVelmResolution resolution;
        resolution.cost = cost;
        resolution.choice = evaluation_.choice;
        const auto value = evaluation_.Evaluate(question_.value);
        if (!value) {
            KeepError(resolution, false);
            return;
        }
        resolution.value = *value;
        if (!question_.target.tree.nodes.empty()) {
            const auto target = evaluation_.Evaluate(question_.target.tree);
            if (!target) {
                KeepError(resolution, true);
                return;
            }
            resolution.target = *target;
        }
        if (!Fits(resolution)) {
            KeepUnfit(resolution);
            return;
        }
        result_.found.push_back(std::move(resolution));
    }

    bool Fits(CVelmResolution& resolution) const {
        switch (question_.target.kind) {
            case QuestionTargetKind::None:
                return true;
            case QuestionTargetKind::Unit:
                return FitsUnit(resolution);
            case QuestionTargetKind::Fraction:
                return resolution.value.kind == Kind::Quantity && resolution.target.kind == Kind::Quantity &&
                       (question_.target.tree.nodes.empty() || FitsUnit(resolution));
            case QuestionTargetKind::Compound: {
                const std::uint32_t part = question_.target.parts.front();
                const CVelmReading& first = question_.words[part].readings[resolution.choice[part]];
                for (const std::uint32_t other : question_.target.parts) {
                    const CVelmReading& reading = question_.words[other].readings[resolution.choice[other]];
                    if (index_.FileOf(reading).Dimension() != index_.FileOf(first).Dimension()) {
                        return false;
                    }
                }
                resolution.target.dimension = index_.FileOf(first).Dimension();
                resolution.target.unit = first;
                return resolution.value.kind == Kind::Quantity &&
                       DimensionsFit(resolution.value.dimension, resolution.target.dimension);
            }
            case QuestionTargetKind::Format:
            case QuestionTargetKind::Percent:
                return true;
        }
        return false;
    }

    bool FitsUnit(CVelmResolution& resolution) const {
        const CVelmAskedValue& value = resolution.value;
        const CVelmAskedValue& target = resolution.target;
        const bool isZone = target.unit && index_.FileOf(*target.unit).isDate != 0;
        if (value.kind == Kind::Moment || isZone) {
            return isZone && (value.kind == Kind::Moment || value.isTimeOfDay) && target.isExact;
        }
        const bool isSameFile = value.unit && value.isExact && target.unit && target.isExact && target.number == 1.0 &&
                                value.unit->file == target.unit->file;
        if (isSameFile) {
            resolution.isInFile = true;
            return true;
        }
        if (value.kind != Kind::Quantity || target.kind != Kind::Quantity || target.amount == 0.0 ||
            !DimensionsFit(value.dimension, target.dimension)) {
            return false;
        }
        resolution.cost += OTHER_FILE_COST;
        return true;
    }

    void KeepError(const CVelmResolution& resolution, bool isTarget) {
        if (bestFailure_ <= resolution.cost) {
            return;
        }
        bestFailure_ = resolution.cost;
        result_.error = evaluation_.Error();
        result_.isTargetError = isTarget;
        result_.isUnfit = false;
        result_.tried = resolution;
    }

    void KeepUnfit(const CVelmResolution& resolution) {
        if (bestFailure_ <= resolution.cost) {
            return;
        }
        bestFailure_ = resolution.cost;
        result_.isUnfit = true;
        result_.tried = resolution;
    }

    const CVelmUnitIndex& index_;
    const Question& question_;
    CVelmEvaluation evaluation_;
    CVelmResolutions result_;
    std::vector<std::vector<std::uint8_t>> options_;
    bool isSimple_ = false;  ///< one unit to another: every file that has both may have the conversion
    std::size_t tried_ = 0;
    int bestFailure_ = 1 << 20;
};

}  // namespace

bool IsSameUnit(const CVelmUnitIndex& index, const CVelmReading& a, const CVelmReading& b) {
    static constexpr double TOLERANCE = 1e-12;
    const double factorA = index.FactorOf(a);
    const double factorB = index.FactorOf(b);
    if (factorA == 0.0 || factorB == 0.0) {
        return a.item == b.item && a.prefix == b.prefix;
    }
    return std::fabs(factorA - factorB) <= TOLERANCE * factorA &&
           index.FileOf(a).Dimension() == index.FileOf(b).Dimension();
}

CVelmResolutions Resolve(const CVelmUnitIndex& index, FormulaContext& context, const Question& question,
                         std::span<const CVelmKeptValue> kept) {
    return Resolver(index, context, question, kept).Run();
}

}  // namespace velm
