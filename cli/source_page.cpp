#include "source_page.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "data_file.h"
#include "source_keys.h"

namespace velm {

namespace {

using Lines = std::vector<std::string>;

/// A formula that is longer is not written out: nobody reads it beside its source.
constexpr std::size_t LONGEST_FORMULA = 60;

std::string AsHtml(CVelmStringView text) {
    std::string html;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        const bool isPair = code >> 10 == 0xD800 >> 10 && i + 1 < text.size() && text[i + 1] >> 10 == 0xDC00 >> 10;
        if (isPair) {
            code = 0x10000 + ((code & 0x3FF) << 10) + (text[++i] & 0x3FF);
        }
        const bool isPlain =
            code >= 0x20 && code < 0x7F && code != u'&' && code != u'<' && code != u'>' && code != u'"';
        html += isPlain ? std::string(1, static_cast<char>(code)) : fmt::format("&#{};", static_cast<unsigned>(code));
    }
    return html;
}

std::string Joined(const std::vector<CVelmString>& texts) {
    std::string joined;
    for (const CVelmString& text : texts) {
        joined += (joined.empty() ? "" : "; ") + AsHtml(text);
    }
    return joined;
}

/// A paragraph of lines, the first one as its heading; nothing without lines.
std::string Paragraph(const std::string& heading, const Lines& lines) {
    if (lines.empty()) {
        return {};
    }
    std::string text = fmt::format("<p><b>{}</b>", heading);
    for (const std::string& line : lines) {
        text += "<br>\n" + line;
    }
    return text + "</p>\n";
}

/// What a conversion says: "1 km = 1000 m", or a formula in x.
CVelmString Statement(const CVelmSourceTable& table, const CVelmConversion& conversion) {
    const CVelmString& from = conversion.unit1->ShortName();
    const CVelmString& to = conversion.unit2->ShortName();
    if (conversion.IsFormula()) {
        const bool forward = conversion.WorksForward();
        const CVelmString& formula = forward ? conversion.forwardFormula : conversion.reverseFormula;
        return formula.size() > LONGEST_FORMULA
                   ? u""
                   : (forward ? from + u" to " + to : to + u" to " + from) + u": " + formula;
    }
    const CVelmString factor = table.Has(KEY_FACTOR) ? table.TextOrNumber(KEY_FACTOR) : u"1";
    return table.Has(KEY_OFFSET) ? to + u" = " + from + u"*" + factor + u" + " + table.TextOrNumber(KEY_OFFSET)
                                 : u"1 " + from + u" = " + factor + u" " + to;
}

class SectionWriter {
public:
    SectionWriter(const SourceFile& file, const toml::table& source, const CVelmDocument& document,
                  const CVelmRateDays& days)
        : file_(file),
          source_(source),
          document_(document),
          days_(days),
          table_(file, source, "a data file", FILE_KEYS) {}

    std::string Write() {
        const CVelmString name = document_.FileNameWithExtension();
        text_ = fmt::format("<h3 id=\"{}\">{}</h3>\n<p>{}, {}</p>\n", AsHtml(name), AsHtml(document_.title),
                            AsHtml(name), AsHtml(document_.updatedText));
        for (const CVelmString& about : table_.Texts(KEY_ABOUT)) {
            text_ += "<p>" + AsHtml(about) + "</p>\n";
        }
        if (document_.GetKind() == KIND_CALCULATION) {
            WriteCalculation();
        } else {
            WriteConversions();
        }
        return std::move(text_);
    }

private:
    void WriteCalculation() {
        if (!table_.Has(KEY_ABOUT)) {
            table_.FailHere("a calculation file has no about");
        }
        if (!table_.Has(KEY_SOURCE)) {
            table_.FailHere("a calculation file has no source");
        }
        Lines inputs;
        Lines results;
        for (std::size_t i = 0; i < document_.items.size(); ++i) {
            const CVelmItem& item = *document_.items[i];
            if (item.shown != 0) {
                const std::string about = AboutItem(i);
                (item.IsOutput() ? results : inputs)
                    .push_back(AsHtml(item.name) + (about.empty() ? "" : " (" + about + ")"));
            }
        }
        text_ += Paragraph("Inputs", inputs) + Paragraph("Results", results) + Paragraph("Sources", FileSources());
    }

    /// The conversions of one source together, in the order in which the sources appear.
    void WriteConversions() {
        text_ += Paragraph("Sources of the file", FileSources());
        std::vector<std::pair<std::string, Lines>> groups;
        const auto& conversions = *ConversionsOf(document_);
        for (std::size_t i = 0; i < conversions.size(); ++i) {
            const CVelmSourceTable table(file_, *source_[KEY_CONVERSION][i].as_table(), "a conversion",
                                         CONVERSION_KEYS);
            if (!table.Has(KEY_SOURCE)) {
                table.FailHere("a conversion has no source");
            }
            const auto day = days_.DayOf(*conversions[i]);
            const std::string source = Joined(table.Texts(KEY_SOURCE)) + (day ? ", " + AsHtml(DayText(*day)) : "");
            auto group = std::find_if(groups.begin(), groups.end(), [&](const auto& g) { return g.first == source; });
            if (group == groups.end()) {
                group = groups.insert(groups.end(), {source, {}});
            }
            group->second.push_back(AboutConversion(table, *conversions[i]));
        }
        for (const auto& [source, lines] : groups) {
            text_ += Paragraph(source, lines);
        }
        WriteAboutUnits();
    }

    /// Named after the later one of its units, since a conversion stands behind the unit that it brings in.
    std::string AboutConversion(const CVelmSourceTable& table, const CVelmConversion& conversion) const {
        const auto last = std::find_if(document_.items.rbegin(), document_.items.rend(), [&](const auto& item) {
            return item.get() == conversion.unit1 || item.get() == conversion.unit2;
        });
        const CVelmItem& unit = **last;
        const CVelmString statement = Statement(table, conversion);
        return AsHtml(statement.empty() ? unit.name : unit.name + u": " + statement);
    }

    void WriteAboutUnits() {
        Lines lines;
        for (std::size_t i = 0; i < document_.items.size(); ++i) {
            if (const std::string about = AboutItem(i); !about.empty()) {
                lines.push_back(AsHtml(document_.items[i]->name) + ": " + about);
            }
        }
        text_ += Paragraph("About single units", lines);
    }

    std::string AboutItem(std::size_t index) const {
        return Joined(
            CVelmSourceTable(file_, *source_[KEY_ITEM][index].as_table(), "an item", ITEM_KEYS).Texts(KEY_ABOUT));
    }

    Lines FileSources() const {
        Lines lines;
        for (const CVelmString& source : table_.Texts(KEY_SOURCE)) {
            lines.push_back(AsHtml(source));
        }
        return lines;
    }

    const SourceFile& file_;
    const toml::table& source_;
    const CVelmDocument& document_;
    const CVelmRateDays& days_;
    CVelmSourceTable table_;
    std::string text_;
};

}  // namespace

void CVelmSourcePage::Add(const SourceFile& file, const toml::table& source, const CVelmDocument& document,
                          const CVelmRateDays& days) {
    categories_[document.category][document.title] = {document.FileNameWithExtension(),
                                                      SectionWriter(file, source, document, days).Write()};
}

std::string CVelmSourcePage::Text() const {
    std::string contents;
    std::string sections;
    for (const auto& [category, titles] : categories_) {
        contents += fmt::format("<p><b>{}</b><br>\n", AsHtml(category));
        const char* comma = "";
        for (const auto& [title, section] : titles) {
            contents += fmt::format("{}<a href=\"#{}\">{}</a>", comma, AsHtml(section.anchor), AsHtml(title));
            comma = ",\n";
            sections += section.text;
        }
        contents += "</p>\n";
    }
    return contents + sections;
}

}  // namespace velm
