#include "desktop/services/desktop_entry.h"

namespace glimra::desktop {

namespace {

/// Enough for any real command, and small enough to be harmless: a field code can stand for a long text and
/// be repeated.
constexpr std::size_t kMostText = std::size_t{128} << 10;

class ExecSplitter {
public:
    ExecSplitter(const DesktopEntry& entry, std::string_view file)
        : m_entry(entry),
          m_file(file),
          m_rest(entry.exec) {}

    std::optional<std::vector<std::string>> split() {
        while (m_isValid && !m_rest.empty() && m_textSize <= kMostText)
            takeCharacter(next());
        if (!m_isValid || m_quote != kNone || m_textSize > kMostText)
            return std::nullopt;
        endWord();
        const bool namesProgram = !m_words.empty() && !m_words.front().empty();
        return namesProgram ? std::optional(std::move(m_words)) : std::nullopt;
    }

private:
    static constexpr char kNone = 0;

    char next() {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }
    /// The character after an escape or a field code; without one the line is invalid.
    char nextOfPair() {
        m_isValid = m_isValid && !m_rest.empty();
        return m_isValid ? next() : kNone;
    }

    void takeCharacter(char c) {
        if (c == '%')
            takeFieldCode(nextOfPair());
        else if (m_quote == kNone)
            takeBare(c);
        else
            takeQuoted(c);
    }

    void takeBare(char c) {
        if (c == ' ' || c == '\t' || c == '\n')
            endWord();
        else if (c == '"' || c == '\'') {
            m_quote = c;
            m_isInWord = true;
        } else
            append({c == '\\' ? nextOfPair() : c});
    }

    void takeQuoted(char c) {
        constexpr std::string_view kProtected = "\"`$\\";
        if (c == m_quote)
            m_quote = kNone;
        else if (c == '\\' && m_quote == '"' && !m_rest.empty() &&
                 kProtected.find(m_rest.front()) != kNowhere)
            append({next()});
        else
            append({c});
    }

    void takeFieldCode(char code) {
        // File and URL codes, since there are no files, and codes that newer versions of the standard have
        // removed.
        constexpr std::string_view kNothing = "fFuUdDnNvm";
        if (code == '%')
            append("%");
        else if (code == 'c')
            append(m_entry.name);
        else if (code == 'k')
            append(std::string(m_file));
        else if (code == 'i')
            takeIcon();
        else
            m_isValid = m_isValid && kNothing.find(code) != kNowhere;
    }

    /// Gives two separate words, so it is ignored inside another word.
    void takeIcon() {
        if (m_entry.icon.empty() || m_isInWord)
            return;
        append("--icon");
        endWord();
        append(m_entry.icon);
        endWord();
    }

    void append(const std::string& text) {
        m_word += text;
        m_isInWord = m_isInWord || !text.empty();
        m_textSize += text.size();
    }
    void endWord() {
        if (m_isInWord)
            m_words.push_back(std::move(m_word));
        m_word.clear();
        m_isInWord = false;
    }

    static constexpr std::size_t kNowhere = std::string_view::npos;

    const DesktopEntry& m_entry;
    const std::string_view m_file;
    std::string_view m_rest;
    std::vector<std::string> m_words;
    std::string m_word;
    std::size_t m_textSize = 0;
    /// The quotation mark of the quoted part that we are in; `kNone` outside.
    char m_quote = kNone;
    /// Whether a word has begun; it may be empty.
    bool m_isInWord = false;
    bool m_isValid = true;
};

} // namespace

std::optional<std::vector<std::string>> execArguments(const DesktopEntry& entry, std::string_view file) {
    return ExecSplitter(entry, file).split();
}

} // namespace glimra::desktop
