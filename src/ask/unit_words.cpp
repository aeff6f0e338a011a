#include "ask/unit_words.h"

#include <algorithm>
#include <array>

#include "formula/tokenizer.h"

namespace velm {

namespace {

constexpr CVelmStringView BLANKS = u" \t\r";
constexpr CVelmStringView SPELLING_SECTION = u"spelling";
constexpr CVelmStringView PREFIX_SECTION = u"prefixes";

using List = std::vector<CVelmString>;

/// The keys of a file that take one text, and those that take a list.
struct TextKey {
    CVelmStringView key;
    CVelmString CVelmFileWords::*member;
};
constexpr std::array TEXT_KEYS = {
    TextKey{u"quantity", &CVelmFileWords::quantity}, TextKey{u"dimension", &CVelmFileWords::dimension},
    TextKey{u"coherent", &CVelmFileWords::coherent}, TextKey{u"months", &CVelmFileWords::months},
    TextKey{u"years", &CVelmFileWords::years}};

struct ListKey {
    CVelmStringView key;
    List CVelmFileWords::*member;
};
constexpr std::array LIST_KEYS = {
    ListKey{u"called", &CVelmFileWords::called}, ListKey{u"results", &CVelmFileWords::results},
    ListKey{u"prefixes", &CVelmFileWords::prefixed}, ListKey{u"large prefixes", &CVelmFileWords::largePrefixed}};

constexpr CVelmStringView SECONDARY_KEY = u"secondary";

List SplitList(CVelmStringView text) {
    List list;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u',', start), text.size());
        const CVelmStringView entry = Trim(text.substr(start, end - start), BLANKS);
        if (!entry.empty()) {
            list.emplace_back(entry);
        }
        start = end + 1;
    }
    return list;
}

void AppendList(CVelmString& text, const List& list) {
    for (const CVelmString& entry : list) {
        text += entry == list.front() ? u" " : u", ";
        text += entry;
    }
}

template <typename Entry>
Entry& FindOrAdd(std::vector<Entry>& entries, CVelmString Entry::*name, CVelmStringView wanted) {
    const auto found = std::ranges::find(entries, wanted, name);
    if (found != entries.end()) {
        return *found;
    }
    Entry& entry = entries.emplace_back();
    entry.*name = wanted;
    return entry;
}

class Reader {
public:
    explicit Reader(CVelmUnitWords& words) : words_(words) {}

    bool ReadLine(CVelmStringView line) {
        line = Trim(line, BLANKS);
        if (line.empty() || line[0] == u'#') {
            return true;
        }
        if (line.front() == u'[' && line.back() == u']') {
            section_ = Trim(line.substr(1, line.size() - 2), BLANKS);
            return !section_.empty();
        }
        const std::size_t equals = line.find(u" = ");
        if (equals != CVelmStringView::npos) {
            return ReadEntry(Trim(line.substr(0, equals), BLANKS), Trim(line.substr(equals + 3), BLANKS));
        }
        const std::size_t colon = line.find(u':');
        return colon != CVelmStringView::npos &&
               ReadKey(Trim(line.substr(0, colon), BLANKS), Trim(line.substr(colon + 1), BLANKS));
    }

private:
    bool ReadEntry(CVelmStringView left, CVelmStringView right) {
        if (section_.empty() || left.empty()) {
            return false;
        }
        if (section_ == SPELLING_SECTION) {
            FindOrAdd(words_.spellings, &CVelmSpelling::written, left).meant = right;
            return true;
        }
        if (section_ == PREFIX_SECTION) {
            return ReadPrefix(left, right);
        }
        ReadItem(FindOrAdd(File().items, &CVelmItemWords::item, left), right);
        return true;
    }

    bool ReadPrefix(CVelmStringView symbol, CVelmStringView right) {
        const List parts = SplitList(right);
        double factor = 0.0;
        if (parts.size() != 2 || !ScanNumber(parts[1], factor)) {
            return false;
        }
        CVelmUnitPrefix& prefix = FindOrAdd(words_.prefixes, &CVelmUnitPrefix::symbol, symbol);
        prefix.name = parts[0];
        prefix.factor = factor;
        return true;
    }

    /// An exclamation mark behind a word prefers the item for it; "@" begins the unit of an input.
    static void ReadItem(CVelmItemWords& item, CVelmStringView right) {
        for (CVelmString& word : SplitList(right)) {
            if (word.size() > 1 && word.front() == u'@') {
                item.unit = word.substr(1);
                continue;
            }
            if (word.size() > 1 && word.back() == u'!') {
                word.pop_back();
                item.first.push_back(word);
            }
            item.words.push_back(std::move(word));
        }
    }

    bool ReadKey(CVelmStringView key, CVelmStringView value) {
        if (section_.empty() || section_ == SPELLING_SECTION || section_ == PREFIX_SECTION) {
            return false;
        }
        if (key == SECONDARY_KEY) {
            File().isSecondary = value == u"yes";
            return true;
        }
        for (const TextKey& row : TEXT_KEYS) {
            if (row.key == key) {
                File().*row.member = value;
                return true;
            }
        }
        for (const ListKey& row : LIST_KEYS) {
            if (row.key == key) {
                List& list = File().*row.member;
                std::ranges::move(SplitList(value), std::back_inserter(list));
                return true;
            }
        }
        return false;
    }

    CVelmFileWords& File() { return FindOrAdd(words_.files, &CVelmFileWords::file, section_); }

    CVelmUnitWords& words_;
    CVelmString section_;
};

}  // namespace

std::optional<std::size_t> ReadUnitWords(CVelmStringView text, CVelmUnitWords& words) {
    Reader reader(words);
    std::optional<std::size_t> wrong;
    std::size_t number = 0;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(u'\n', start), text.size());
        ++number;
        if (!reader.ReadLine(text.substr(start, end - start)) && !wrong) {
            wrong = number;
        }
        start = end + 1;
    }
    return wrong;
}

CVelmString UnitWordsText(const CVelmFileWords& file) {
    CVelmString text = u"[" + file.file + u"]\n";
    for (const TextKey& row : TEXT_KEYS) {
        if (!(file.*row.member).empty()) {
            text += CVelmString(row.key) + u": " + file.*row.member + u"\n";
        }
    }
    for (const ListKey& row : LIST_KEYS) {
        if (!(file.*row.member).empty()) {
            text += CVelmString(row.key) + u":";
            AppendList(text, file.*row.member);
            text += u"\n";
        }
    }
    if (file.isSecondary) {
        text += CVelmString(SECONDARY_KEY) + u": yes\n";
    }
    for (const CVelmItemWords& item : file.items) {
        List words = item.words;
        for (CVelmString& word : words) {
            if (std::ranges::find(item.first, word) != item.first.end()) {
                word += u'!';
            }
        }
        text += item.item + u" =";
        if (!item.unit.empty()) {
            words.push_back(u"@" + item.unit);
        }
        AppendList(text, words);
        text += u"\n";
    }
    return text;
}

}  // namespace velm
