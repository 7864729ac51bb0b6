#pragma once

#include "screenlink/strip_code.h"

#include <chrono>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace glimra::tools {

// The commands of glimra-strip, whether they come from its arguments or from its standard input:
//
//     send TOKEN...         announce, confirm and dark frame of each token
//     frame RRGGBB x 11     a frame of these colours
//     calibrate             the test pattern
//     off                   a dark frame
//     wait MS               leaves the screen as it is for so long
//     stage NAME            says "stage NAME" on standard output
//     demo                  the demonstration
//
// A TOKEN is one character U+0000 to U+007F or a prefix character ` [ ] { } and one such character;
// \xHH, \0 and \\ stand for characters that are awkward to write.

struct SendToken {
    screenlink::Token token;
};
struct ShowFrame {
    screenlink::StripFrame frame;
};
struct Wait {
    std::chrono::milliseconds time;
};
struct Stage {
    std::string name;
};

/// What the painter of the strip does, one after another.
using Action = std::variant<SendToken, ShowFrame, Wait, Stage>;

/// A command that cannot be understood; what() tells why in one printable line.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The actions of one command and its arguments. Any bytes may be given. Throws CommandError.
std::vector<Action> parseCommand(std::span<const std::string> words);

/// The same for a line, words parted by blanks; a blank line and one that begins with # have none.
std::vector<Action> parseLine(std::string_view line);

} // namespace glimra::tools
