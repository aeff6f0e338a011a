#pragma once

#include "ask/answer.h"
#include "ask/resolution.h"
#include "ask/word_folder.h"

namespace velm {

/// What was wrong when an answer was built.
enum class BuildStatus : std::uint8_t {
    Ok,
    NoRoute,  ///< the file has no conversion between the two units
    NoValue,  ///< the conversion fails for this value
    Stale,    ///< a file has changed: the question is to be read anew
    CannotLoad,
    NotThis,  ///< this value cannot be shown so; `message` tells why
};

/// Makes the rows of an answer from a question that was understood.
class CVelmAnswerBuilder {
public:
    CVelmAnswerBuilder(CVelmWordFolder& folder, const CVelmUnitIndex& index, const Question& question,
                       const CVelmResolution& resolution, CVelmAnswer& answer)
        : folder_(folder), index_(index), question_(question), resolution_(resolution), answer_(answer) {}

    BuildStatus Build();
    const CVelmString& Message() const { return message_; }

private:
    BuildStatus BuildListing();
    BuildStatus BuildInFile();
    BuildStatus BuildUnit();
    BuildStatus BuildCompound();
    BuildStatus BuildFraction();
    BuildStatus BuildFormat();
    BuildStatus BuildPercent();
    BuildStatus BuildComputed();
    BuildStatus BuildZone();
    BuildStatus BuildMoment();
    BuildStatus NotThis(CVelmString message);

    bool IsGivenInUnits() const;
    CVelmDocument* Load(std::uint32_t file, BuildStatus& status);
    BuildStatus EnterValue(CVelmConversionDoc& document, std::span<const CVelmItem* const> asked);
    void AddNumber(CVelmString identifier, CVelmString name, double value, bool isMoney);
    void AddOtherResults(const CVelmReading& shown);
    CVelmString NumberText(double& value, bool isMoney) const;
    bool IsRounded() const { return question_.target.decimals >= 0 || question_.target.significant > 0; }
    const CVelmReading* ResultUnit() const;
    CVelmString BaseLabel() const;
    void SetPlace(const CVelmReading& from, const CVelmReading* to, double value);

    CVelmWordFolder& folder_;
    const CVelmUnitIndex& index_;
    const Question& question_;
    const CVelmResolution& resolution_;
    CVelmAnswer& answer_;
    CVelmString message_;
    mutable CVelmReading resultUnit_;
};

}  // namespace velm
