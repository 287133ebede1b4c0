#ifndef PIMTLV_BRIDGES_COMMON_BRIDGE_H
#define PIMTLV_BRIDGES_COMMON_BRIDGE_H

// What every bridge between a text format (iCalendar, vCard, MIME) and the
// item codecs hands back: the item streams an import wrote with what each
// item could not carry, and the text an export wrote with what the item
// parsers said on the way. Nothing is dropped silently: whatever a bridge
// could not place is named in the result.

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#if defined(__GNUC__) || defined(__clang__)
#define PIMTLV_BRIDGE_API __attribute__((visibility("default")))
#else
#define PIMTLV_BRIDGE_API
#endif

namespace PimBridge {

/// Something of the input that did not reach the output: a property, a
/// parameter, a component or a header field, by the name it has in the text
/// format ("RRULE", "VALARM", "X-WR-CALNAME", "TEL;PREF", "Received").
///
/// Not everything a bridge reports is a loss. What the other direction writes
/// anew by a fixed rule (an iCalendar DTSTAMP, say) is only noted; content that
/// arrives changed in a way the bridge can name (text converted from another
/// charset, a DURATION written as DTEND) is a warning like a loss.
struct Loss {
    /// How the content fared.
    enum class Kind {
        NotCarried,   ///< the content is gone
        Regenerated,  ///< gone from the item, but written anew by rule on the way back
        Converted,    ///< kept, in another form: detail says which
        Limit,        ///< cut at a limit of the bridge: detail names it
    };
    std::string name;        ///< what was affected, by the text format's name
    unsigned int count = 0;  ///< how often in this item
    unsigned int line = 0;   ///< first occurrence, 1-based line of the input; 0 when none applies
    Kind kind = Kind::NotCarried;  ///< lost, regenerated, converted or cut
    std::string detail;            ///< for Converted and Limit: how ("from windows-1252", "16 MiB")

    /// Whether this changes the user's content: everything but a regenerated value.
    bool Changes() const { return kind != Kind::Regenerated; }
};

/// One item an import wrote.
struct ImportedItem {
    std::string kind;        ///< the tool's item names: "event", "task", "note", "contact", "email"
    std::size_t offset = 0;  ///< where its stream starts in ImportResult::streams
    std::size_t size = 0;    ///< its stream's size
    unsigned int line = 0;   ///< where the item starts in the input, 1-based
    std::vector<Loss> losses;  ///< in order of first occurrence
};

/// What an import gives: the items' streams and, per item, what did not arrive unchanged.
struct ImportResult {
    bool ok = false;  ///< false when the input could not be read to its end
    /// When !ok: why, in one line, and the 1-based line of the input it
    /// concerns (0 when it concerns no line). Items written before the fault
    /// stay in streams and items.
    std::string error;
    unsigned int errorLine = 0;         ///< see error
    std::vector<std::uint8_t> streams;  ///< the items' streams, one after another
    std::vector<ImportedItem> items;    ///< in input order
    /// What belongs to no item: a container's own properties and components
    /// (a calendar's time zones, say), text outside any item.
    std::vector<Loss> losses;

    /// Appends one finished item: its stream (copied: a creator's bytes live
    /// only until its next use) and what it could not carry.
    void AddItem(const char* kind, unsigned int line, const void* data, unsigned int length,
                 std::vector<Loss> itemLosses) {
        ImportedItem item;
        item.kind = kind;
        item.offset = streams.size();
        item.size = length;
        item.line = line;
        item.losses = std::move(itemLosses);
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        streams.insert(streams.end(), bytes, bytes + length);
        items.push_back(std::move(item));
    }

    /// Whether anything of the input did not arrive as it was (regenerated
    /// values aside): what --strict refuses.
    bool HasLoss() const {
        for (const Loss& loss : losses) {
            if (loss.Changes()) return true;
        }
        for (const ImportedItem& item : items) {
            for (const Loss& loss : item.losses) {
                if (loss.Changes()) return true;
            }
        }
        return false;
    }
};

/// A TraceMessage of an item parser other than its code-0 trace lines.
struct Diagnostic {
    int code = 0;      ///< the parser's diagnostic code
    std::string text;  ///< the diagnostic's text, possibly empty
};

/// One item an export read.
struct ExportedItem {
    std::string kind;        ///< the item kind, as the tool names it ("event", "contact", ...)
    std::size_t offset = 0;  ///< where its stream starts in the input
    bool malformed = false;  ///< its parser stopped early (false result)
    std::vector<Diagnostic> diagnostics;  ///< what its parser reported, in order
    std::vector<Loss> losses;             ///< what the text format has no place for (line 0)
};

/// What an export gives: the text and, per item, what its parser reported and what the format could
/// not take.
struct ExportResult {
    bool ok = false;  ///< false when no text could be written
    /// When !ok: why, in one line (an input that is no sequence of items, an
    /// item the format does not carry). text is then empty.
    std::string error;
    std::string text;                 ///< the exported text
    std::vector<ExportedItem> items;  ///< in input order
};

}  // namespace PimBridge

#endif
