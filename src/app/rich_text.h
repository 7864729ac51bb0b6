#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace glimra::app {

/// Characters that look alike.
struct TextRun {
    std::string text; // UTF-8
    bool bold = false;
    bool monospace = false;
    /// Half points, as RTF counts them.
    int size = 24;

    friend bool operator==(const TextRun&, const TextRun&) = default;
};

struct Paragraph {
    std::vector<TextRun> runs;
    /// Twentieths of a point from the left edge.
    int leftIndent = 0;

    friend bool operator==(const Paragraph&, const Paragraph&) = default;
};

/// Reads the RTF that the help text is written in: paragraphs, indents, bold, sizes, a second font for what
/// is typed, bullets, tabs, line breaks (U+2028), and characters by code, in Windows-1252 or Unicode. What it
/// does not know it leaves out; it never fails. The format is published by its vendor as version 1.9.1.
std::vector<Paragraph> readRichText(std::string_view rtf);

} // namespace glimra::app
