#include "app/rich_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

namespace glimra::app {

namespace {

constexpr std::size_t kDeepestGroup = 100;
constexpr int kMonospaceFont = 1;

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0U | code >> 6U);
        put(0x80U | (code & 0x3FU));
    } else {
        put(0xE0U | code >> 12U);
        put(0x80U | (code >> 6U & 0x3FU));
        put(0x80U | (code & 0x3FU));
    }
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr std::uint32_t kLineSeparator = 0x2028;

/// The code points of bytes 0x80 to 0x9F in Windows-1252, 0 for those that have none.
constexpr std::array<std::uint16_t, 32> kWindows1252{
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::uint32_t fromWindows1252(unsigned byte) {
    const bool isSpecial = byte >= 0x80 && byte < 0x80 + kWindows1252.size();
    return isSpecial && kWindows1252[byte - 0x80] != 0 ? kWindows1252[byte - 0x80] : byte;
}

class RichTextReader {
public:
    explicit RichTextReader(std::string_view rtf) : m_rest(rtf) {}

    std::vector<Paragraph> read() {
        while (!m_rest.empty())
            readNext();
        if (!m_paragraph.runs.empty())
            endParagraph();
        return std::move(m_paragraphs);
    }

private:
    struct Group {
        bool bold = false;
        bool monospace = false;
        int size = 24;
        /// Tables and whatever else is no text.
        bool skipped = false;
    };

    void readNext() {
        const char c = take();
        if (c == '{') {
            if (m_groups.size() < kDeepestGroup)
                m_groups.push_back(m_group);
        } else if (c == '}') {
            if (!m_groups.empty()) {
                m_group = m_groups.back();
                m_groups.pop_back();
            }
        } else if (c == '\\') {
            readControl();
        } else if (c != '\n' && c != '\r') {
            append(static_cast<unsigned char>(c));
        }
    }

    char take() {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }

    void readControl() {
        if (m_rest.empty())
            return;
        if (!isLetter(m_rest.front())) {
            readSymbol(take());
            return;
        }
        const auto wordEnd = std::ranges::find_if_not(m_rest, isLetter);
        const std::string_view word = m_rest.substr(0, static_cast<std::size_t>(wordEnd - m_rest.begin()));
        m_rest.remove_prefix(word.size());
        const std::optional<int> number = readNumber();
        if (!m_rest.empty() && m_rest.front() == ' ')
            m_rest.remove_prefix(1); // part of the control word, not of the text
        obey(word, number);
    }

    std::optional<int> readNumber() {
        const std::size_t sign = m_rest.starts_with('-') ? 1 : 0;
        if (m_rest.size() <= sign || !isDigit(m_rest[sign]))
            return std::nullopt;
        int number = 0;
        const auto result = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), number);
        m_rest.remove_prefix(static_cast<std::size_t>(result.ptr - m_rest.data()));
        return number;
    }

    void readSymbol(char symbol) {
        if (symbol == '*') {
            m_group.skipped = true;
        } else if (symbol == '\'') {
            unsigned code = 0;
            const std::string_view digits = m_rest.substr(0, 2);
            std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
            m_rest.remove_prefix(digits.size());
            append(fromWindows1252(code));
        } else if (symbol == '~') {
            append(0xA0);
        } else {
            append(static_cast<unsigned char>(symbol)); // an escaped brace or backslash
        }
    }

    void obey(std::string_view word, std::optional<int> number) {
        if (word == "par")
            endParagraph();
        else if (word == "pard")
            m_paragraph.leftIndent = 0;
        else if (word == "li")
            m_paragraph.leftIndent = number.value_or(0);
        else if (word == "b")
            m_group.bold = number.value_or(1) != 0;
        else if (word == "f")
            m_group.monospace = number == kMonospaceFont;
        else if (word == "fs")
            m_group.size = std::clamp(number.value_or(24), 8, 144);
        else if (word == "line")
            append(kLineSeparator);
        else if (word == "tab")
            append('\t');
        else if (word == "bullet")
            append(0x2022);
        else if (word == "u")
            appendByCode(number.value_or('?'));
        else if (word == "fonttbl" || word == "colortbl" || word == "stylesheet" || word == "info")
            m_group.skipped = true;
    }

    /// A character by its code, signed as 16 bits are, followed by a stand-in for old readers.
    void appendByCode(int code) {
        append(static_cast<std::uint16_t>(code));
        if (!m_rest.empty() && m_rest.front() != '\\' && m_rest.front() != '{' && m_rest.front() != '}')
            m_rest.remove_prefix(1);
    }

    void append(std::uint32_t code) {
        const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
        if (m_group.skipped || surrogate)
            return;
        std::vector<TextRun>& runs = m_paragraph.runs;
        const TextRun look{{}, m_group.bold, m_group.monospace, m_group.size};
        if (runs.empty() || runs.back().bold != look.bold || runs.back().monospace != look.monospace ||
            runs.back().size != look.size)
            runs.push_back(look);
        appendUtf8(runs.back().text, code);
    }

    void endParagraph() {
        const int indent = m_paragraph.leftIndent;
        m_paragraphs.push_back(std::exchange(m_paragraph, {}));
        m_paragraph.leftIndent = indent;
    }

    std::string_view m_rest;
    Group m_group;
    std::vector<Group> m_groups;
    Paragraph m_paragraph;
    std::vector<Paragraph> m_paragraphs;
};

} // namespace

std::vector<Paragraph> readRichText(std::string_view rtf) {
    return RichTextReader(rtf).read();
}

} // namespace glimra::app
