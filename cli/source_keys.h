#pragma once

#include <array>
#include <string_view>

namespace velm {

/// The keys of the text form of data files; docs/data-files.md describes them.
inline constexpr std::string_view KEY_TITLE = "title";
inline constexpr std::string_view KEY_CATEGORY = "category";
inline constexpr std::string_view KEY_UPDATED = "updated";
inline constexpr std::string_view KEY_KIND = "kind";
inline constexpr std::string_view KEY_SOURCE = "source";
inline constexpr std::string_view KEY_ABOUT = "about";
inline constexpr std::string_view KEY_NOTE = "note";
inline constexpr std::string_view KEY_ITEM = "item";
inline constexpr std::string_view KEY_CONVERSION = "conversion";

/// What the words of a data folder say about a file; see unit_words.h.
inline constexpr std::string_view KEY_CALLED = "called";
inline constexpr std::string_view KEY_QUANTITY = "quantity";
inline constexpr std::string_view KEY_DIMENSION = "dimension";
inline constexpr std::string_view KEY_COHERENT = "coherent";
inline constexpr std::string_view KEY_RESULTS = "results";
inline constexpr std::string_view KEY_PREFIXES = "prefixes";
inline constexpr std::string_view KEY_LARGE_PREFIXES = "large_prefixes";
inline constexpr std::string_view KEY_MONTHS = "months";
inline constexpr std::string_view KEY_YEARS = "years";
inline constexpr std::string_view KEY_SECONDARY = "secondary";
inline constexpr std::string_view KEY_ALIASES = "aliases";
inline constexpr std::string_view KEY_PREFERRED = "preferred";
inline constexpr std::string_view KEY_UNIT = "unit";

inline constexpr std::string_view KEY_ID = "id";
inline constexpr std::string_view KEY_NAME = "name";
inline constexpr std::string_view KEY_TYPE = "type";
inline constexpr std::string_view KEY_VALUE = "value";
inline constexpr std::string_view KEY_FORMULA = "formula";
inline constexpr std::string_view KEY_OUTPUT = "output";
inline constexpr std::string_view KEY_SHOWN = "shown";
inline constexpr std::string_view KEY_FORMATS = "formats";
inline constexpr std::string_view KEY_DISPLAY = "display";
inline constexpr std::string_view KEY_INPUT = "input";
inline constexpr std::string_view KEY_PARTS = "parts";

inline constexpr std::string_view KEY_FROM = "from";
inline constexpr std::string_view KEY_TO = "to";
inline constexpr std::string_view KEY_FACTOR = "factor";
inline constexpr std::string_view KEY_OFFSET = "offset";
inline constexpr std::string_view KEY_FORWARD = "forward";
inline constexpr std::string_view KEY_REVERSE = "reverse";
inline constexpr std::string_view KEY_FLAG = "flag";
inline constexpr std::string_view KEY_DATE = "date";

/// Of a text that is written as its UTF-16 units.
inline constexpr std::string_view KEY_UTF16 = "utf16";

/// What readers are given to know, each a text or a list of texts.
inline constexpr std::array REMARK_KEYS{KEY_SOURCE, KEY_ABOUT, KEY_NOTE};

inline constexpr std::array FILE_KEYS{KEY_TITLE,          KEY_CATEGORY,  KEY_UPDATED,  KEY_KIND,       KEY_SOURCE,
                                      KEY_ABOUT,          KEY_NOTE,      KEY_ITEM,     KEY_CONVERSION, KEY_CALLED,
                                      KEY_QUANTITY,       KEY_DIMENSION, KEY_COHERENT, KEY_RESULTS,    KEY_PREFIXES,
                                      KEY_LARGE_PREFIXES, KEY_MONTHS,    KEY_YEARS,    KEY_SECONDARY};
inline constexpr std::array ITEM_KEYS{KEY_ID,    KEY_NAME,    KEY_TYPE,    KEY_VALUE,     KEY_FORMULA, KEY_OUTPUT,
                                      KEY_SHOWN, KEY_FORMATS, KEY_DISPLAY, KEY_INPUT,     KEY_PARTS,   KEY_SOURCE,
                                      KEY_ABOUT, KEY_NOTE,    KEY_ALIASES, KEY_PREFERRED, KEY_UNIT};
inline constexpr std::array CONVERSION_KEYS{KEY_FROM,    KEY_TO,   KEY_FACTOR, KEY_OFFSET, KEY_FORWARD,
                                            KEY_REVERSE, KEY_FLAG, KEY_DATE,   KEY_SOURCE, KEY_NOTE};

/// Words for the two types of item.
inline constexpr std::string_view WORD_VALUE = "value";
inline constexpr std::string_view WORD_FORMULA = "formula";

}  // namespace velm
