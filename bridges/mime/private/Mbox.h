#ifndef PIMTLV_BRIDGES_MIME_PRIVATE_MBOX_H
#define PIMTLV_BRIDGES_MIME_PRIVATE_MBOX_H

// The mbox container around messages, for import and export alike. A
// message starts after a "From " separator line and ends with an empty
// line, which is the container's. Body lines that would read as a separator
// are quoted the mboxrd way: a line of any number of '>' and then "From "
// gets one '>' more on writing and one less on reading, which gives every
// body back as it was. Files written the mboxo way (only "From " quoted, a
// ">From " of the body left as it is) read the same, except that such a
// body line loses a '>': the two cannot be told apart.

#include <cstddef>
#include <string>
#include <vector>

namespace PimBridge {
namespace Mime {

struct MboxMessage {
    std::size_t offset = 0;  // the message's text, after its separator line
    std::size_t size = 0;
    unsigned int line = 0;  // 1-based line of its separator
    // Lines of its text that read as separators but follow no empty line:
    // body text, unless the writer left the empty line out. The first, and
    // how many.
    unsigned int lookalikeLine = 0;
    unsigned int lookalikes = 0;
};

// The messages of an mbox, in order. A separator is a line "From ", an
// address and a date (a time h:mm and a four-digit year) at the start of the
// text or after an empty line; the text's first line counts as one whenever
// it starts with "From ". Text before the first separator is in no message.
std::vector<MboxMessage> SplitMbox(const char* text, std::size_t size);

// Whether the text has a line of '>'s and "From " (one to unquote).
bool HasQuotedFromLine(const char* text, std::size_t size);
// text with one '>' taken from each such line.
std::string UnquoteFromLines(const char* text, std::size_t size);
// Adds one '>' to each line of text, from offset on, that is any number of
// '>' and then "From ".
void QuoteFromLines(std::string& text, std::size_t offset);

}  // namespace Mime
}  // namespace PimBridge

#endif
