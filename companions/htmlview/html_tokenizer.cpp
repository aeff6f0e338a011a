#include "htmlview/html_tokenizer.h"

#include <algorithm>

#include "platform/text.h"

namespace velm {

namespace {

bool IsBlank(char16_t unit) {
    return HTML_BLANKS.find(unit) != std::u16string_view::npos;
}

}  // namespace

std::u16string_view HtmlToken::Attribute(std::u16string_view attributeName) const {
    for (const auto& [key, value] : attributes) {
        if (key == attributeName) {
            return value;
        }
    }
    return {};
}

HtmlToken HtmlTokenizer::Next() {
    HtmlToken token;
    while (at_ < html_.size() && html_[at_] == u'<' && !noMoreTags_) {
        if (SkipMarkup()) {
            continue;
        }
        if (ReadTag(token)) {
            if (token.kind == HtmlToken::Kind::Open && (token.name == u"script" || token.name == u"style")) {
                SkipRawText(token.name);
                token = {};
                continue;
            }
            return token;
        }
        break;
    }
    if (at_ >= html_.size()) {
        return token;
    }
    // A "<" that begins no tag is a character like any other.
    std::size_t end = noMoreTags_ ? html_.size() : html_.find(u'<', at_ + 1);
    end = std::min(end, html_.size());
    token.kind = HtmlToken::Kind::Text;
    token.text = DecodeEntities(html_.substr(at_, end - at_));
    at_ = end;
    return token;
}

bool HtmlTokenizer::SkipMarkup() {
    if (at_ + 1 >= html_.size() || (html_[at_ + 1] != u'!' && html_[at_ + 1] != u'?')) {
        return false;
    }
    const bool comment = html_.substr(at_, 4) == u"<!--";
    const std::u16string_view close = comment ? u"-->" : u">";
    const std::size_t end = html_.find(close, at_ + (comment ? 4 : 2));
    at_ = end == std::u16string_view::npos ? html_.size() : end + close.size();
    return true;
}

std::size_t HtmlTokenizer::FindTagEnd(std::size_t from) {
    const std::size_t end = html_.find(u'>', from);
    noMoreTags_ = end == std::u16string_view::npos;
    return end;
}

bool HtmlTokenizer::ReadTag(HtmlToken& token) {
    std::size_t at = at_ + 1;
    const bool closing = at < html_.size() && html_[at] == u'/';
    at += closing ? 1 : 0;
    if (at >= html_.size() || !IsLetter(html_[at])) {
        return false;
    }
    std::size_t end = FindTagEnd(at);
    if (noMoreTags_) {
        return false;
    }
    const std::size_t nameStart = at;
    while (at < end && !IsBlank(html_[at]) && html_[at] != u'/') {
        ++at;
    }
    token.kind = closing ? HtmlToken::Kind::Close : HtmlToken::Kind::Open;
    token.name = ToLowerAscii(html_.substr(nameStart, at - nameStart));
    // A ">" inside quotes does not end the tag; attributes of closing tags mean nothing.
    if (!closing) {
        ReadAttributes(token, at, end);
        end = at < html_.size() && html_[at] == u'>' ? at : FindTagEnd(at);
        if (noMoreTags_) {
            end = html_.size() - 1;
        }
    }
    at_ = end + 1;
    return true;
}

void HtmlTokenizer::ReadAttributes(HtmlToken& token, std::size_t& at, std::size_t end) const {
    while (at < end) {
        if (IsBlank(html_[at]) || html_[at] == u'/' || html_[at] == u'=') {
            ++at;
            continue;
        }
        const std::size_t nameStart = at;
        while (at < end && !IsBlank(html_[at]) && html_[at] != u'=' && html_[at] != u'/') {
            ++at;
        }
        const std::u16string_view name = html_.substr(nameStart, at - nameStart);
        while (at < end && IsBlank(html_[at])) {
            ++at;
        }
        std::u16string_view value;
        if (at < end && html_[at] == u'=') {
            ++at;
            while (at < end && IsBlank(html_[at])) {
                ++at;
            }
            const char16_t quote = at < end ? html_[at] : u'\0';
            if (quote == u'"' || quote == u'\'') {
                // Within a line's reach only: a forgotten quote must not swallow the page, nor cost a look at all of
                // it.
                constexpr std::size_t MAX_VALUE_LENGTH = 2048;
                const std::size_t close = html_.substr(at + 1, MAX_VALUE_LENGTH).find(quote);
                if (close != std::u16string_view::npos) {
                    value = html_.substr(at + 1, close);
                    at += close + 2;
                    if (at > end) {
                        const std::size_t next = html_.find(u'>', at);
                        end = next == std::u16string_view::npos ? html_.size() : next;
                    }
                } else {
                    ++at;
                }
            } else {
                const std::size_t valueStart = at;
                while (at < end && !IsBlank(html_[at])) {
                    ++at;
                }
                value = html_.substr(valueStart, at - valueStart);
            }
        }
        token.attributes.emplace_back(ToLowerAscii(name), DecodeEntities(value));
    }
}

void HtmlTokenizer::SkipRawText(std::u16string_view name) {
    while (at_ < html_.size()) {
        const std::size_t close = html_.find(u"</", at_);
        if (close == std::u16string_view::npos) {
            at_ = html_.size();
            return;
        }
        at_ = close;
        if (ToLowerAscii(html_.substr(close + 2, name.size())) == name) {
            return;
        }
        at_ = close + 2;
    }
}

}  // namespace velm
