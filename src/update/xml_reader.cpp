#include "update/xml_reader.h"

#include <algorithm>
#include <array>

namespace velm {
namespace {

constexpr std::size_t MAX_DEPTH = 64;
constexpr CVelmStringView BLANKS = u" \t\r\n";
constexpr CVelmStringView NAME_ENDS = u" \t\r\n/>=<\"'&";

constexpr std::array<std::pair<CVelmStringView, char16_t>, 5> ENTITIES = {
    {{u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"quot", u'"'}, {u"apos", u'\''}}};

/// The character of "#65" or "#x41"; nothing for anything else and for what no text can hold.
std::optional<char32_t> ReadCharacter(CVelmStringView reference) {
    const bool isHex = reference.starts_with(u"#x");
    reference.remove_prefix(std::min<std::size_t>(isHex ? 2 : 1, reference.size()));
    constexpr std::size_t MAX_DIGITS = 7;
    if (reference.empty() || reference.size() > MAX_DIGITS) {
        return std::nullopt;
    }
    char32_t code = 0;
    for (const char16_t unit : reference) {
        const int digit = HexDigitValue(unit);
        if (digit < 0 || (!isHex && digit > 9)) {
            return std::nullopt;
        }
        code = code * (isHex ? 16 : 10) + static_cast<char32_t>(digit);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return code == 0 || code > 0x10FFFF || isSurrogate ? std::nullopt : std::optional(code);
}

/// Replaces the references of a text; nothing when one is unknown.
std::optional<CVelmString> Decode(CVelmStringView text) {
    CVelmString decoded;
    while (!text.empty()) {
        const std::size_t plain = std::min(text.find(u'&'), text.size());
        decoded += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const std::size_t end = text.find(u';');
        if (end == CVelmStringView::npos) {
            return std::nullopt;
        }
        const CVelmStringView reference = text.substr(1, end - 1);
        const auto* const entity =
            std::ranges::find_if(ENTITIES, [reference](const auto& known) { return known.first == reference; });
        const auto code = entity != ENTITIES.end()      ? std::optional<char32_t>(entity->second)
                          : reference.starts_with(u'#') ? ReadCharacter(reference)
                                                        : std::nullopt;
        if (!code) {
            return std::nullopt;
        }
        AppendCodePoint(decoded, *code);
        text.remove_prefix(end + 1);
    }
    return decoded;
}

}  // namespace

XmlEvent CVelmXmlReader::Next() {
    if (!error_.empty()) {
        return XmlEvent::Error;
    }
    if (endPending_) {
        endPending_ = false;
        return End();
    }
    for (;;) {
        if (!SkipText()) {
            return Fail(open_.empty() ? u"there is text outside the elements" : u"a reference is unknown");
        }
        if (rest_.empty()) {
            break;
        }
        if (rest_.starts_with(u"<!--")) {
            if (!SkipPast(u"-->")) {
                return Fail(u"a comment has no end");
            }
        } else if (rest_.starts_with(u"<?")) {
            if (!SkipPast(u"?>")) {
                return Fail(u"an instruction has no end");
            }
        } else if (rest_.starts_with(u"<![CDATA[") && !open_.empty()) {
            if (!SkipPast(u"]]>")) {
                return Fail(u"a character section has no end");
            }
        } else {
            return ReadMarkup();
        }
    }
    if (!open_.empty()) {
        return Fail(u"<" + CVelmString(open_.back()) + u"> has no end");
    }
    return hasRoot_ ? XmlEvent::Finished : Fail(u"there is no element");
}

XmlEvent CVelmXmlReader::ReadMarkup() {
    if (rest_.starts_with(u"<!")) {
        return Fail(u"document types and entities are not accepted");
    }
    return rest_.starts_with(u"</") ? ReadEnd() : ReadStart();
}

XmlEvent CVelmXmlReader::ReadStart() {
    if (hasRoot_ && open_.empty()) {
        return Fail(u"there is a second root element");
    }
    rest_.remove_prefix(1);
    name_ = ReadName();
    if (name_.empty()) {
        return Fail(u"an element has no name");
    }
    attributes_.clear();
    for (;;) {
        const bool hasBlank = rest_.find_first_not_of(BLANKS) != 0;
        SkipBlanks();
        if (rest_.empty()) {
            return Fail(u"the text ends in <" + CVelmString(name_) + u">");
        }
        endPending_ = rest_.starts_with(u"/>");
        if (endPending_ || rest_.starts_with(u'>')) {
            break;
        }
        if (!hasBlank || !ReadAttribute()) {
            return Fail(u"<" + CVelmString(name_) + u"> has an attribute that cannot be read");
        }
    }
    rest_.remove_prefix(endPending_ ? 2 : 1);
    if (open_.size() == MAX_DEPTH) {
        return Fail(u"the elements are nested too deeply");
    }
    hasRoot_ = true;
    open_.push_back(name_);
    return XmlEvent::Start;
}

bool CVelmXmlReader::ReadAttribute() {
    const CVelmStringView name = ReadName();
    SkipBlanks();
    if (name.empty() || !rest_.starts_with(u'=')) {
        return false;
    }
    rest_.remove_prefix(1);
    SkipBlanks();
    if (!rest_.starts_with(u'"') && !rest_.starts_with(u'\'')) {
        return false;
    }
    const std::size_t end = rest_.find(rest_.front(), 1);
    if (end == CVelmStringView::npos) {
        return false;
    }
    const CVelmStringView text = rest_.substr(1, end - 1);
    auto value = text.find(u'<') == CVelmStringView::npos ? Decode(text) : std::nullopt;
    const bool isKnown =
        std::ranges::any_of(attributes_, [name](const auto& attribute) { return attribute.first == name; });
    if (!value || isKnown) {
        return false;
    }
    attributes_.emplace_back(name, *std::move(value));
    rest_.remove_prefix(end + 1);
    return true;
}

XmlEvent CVelmXmlReader::ReadEnd() {
    rest_.remove_prefix(2);
    name_ = ReadName();
    SkipBlanks();
    if (!rest_.starts_with(u'>') || open_.empty() || open_.back() != name_) {
        return Fail(u"</" + CVelmString(name_) + u"> ends no open element");
    }
    rest_.remove_prefix(1);
    return End();
}

XmlEvent CVelmXmlReader::End() {
    name_ = open_.back();
    open_.pop_back();
    attributes_.clear();
    return XmlEvent::End;
}

CVelmStringView CVelmXmlReader::Name() const {
    const std::size_t prefix = name_.find(u':');
    return prefix == CVelmStringView::npos ? name_ : name_.substr(prefix + 1);
}

std::optional<CVelmString> CVelmXmlReader::Attribute(CVelmStringView name) const {
    const auto found =
        std::ranges::find_if(attributes_, [name](const auto& attribute) { return attribute.first == name; });
    return found == attributes_.end() ? std::nullopt : std::optional(found->second);
}

XmlEvent CVelmXmlReader::Fail(CVelmStringView text) {
    error_ = text;
    return XmlEvent::Error;
}

bool CVelmXmlReader::SkipPast(CVelmStringView end) {
    const std::size_t found = rest_.find(end);
    rest_.remove_prefix(found == CVelmStringView::npos ? rest_.size() : found + end.size());
    return found != CVelmStringView::npos;
}

bool CVelmXmlReader::SkipText() {
    const CVelmStringView text = rest_.substr(0, std::min(rest_.find(u'<'), rest_.size()));
    rest_.remove_prefix(text.size());
    return open_.empty() ? text.find_first_not_of(BLANKS) == CVelmStringView::npos : Decode(text).has_value();
}

void CVelmXmlReader::SkipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(BLANKS), rest_.size()));
}

CVelmStringView CVelmXmlReader::ReadName() {
    const CVelmStringView name = rest_.substr(0, std::min(rest_.find_first_of(NAME_ENDS), rest_.size()));
    rest_.remove_prefix(name.size());
    return name;
}

}  // namespace velm
