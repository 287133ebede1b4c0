#ifndef PIMTLV_BRIDGES_COMMON_MERGE_H
#define PIMTLV_BRIDGES_COMMON_MERGE_H

// What a merge of item streams onto an original text hands back. A sync
// service keeps the full text (an .ics resource, a .vcf card) and sends the
// device streams that carry only part of it; when the device sends its
// streams back, the merge takes from each item what the item carries and
// keeps from the original whatever the item cannot carry, so that a round
// trip through the device loses nothing.
//
// How an item finds its counterpart, the same for every text format:
//   1. the original's components (VEVENT/VTODO/VJOURNAL, or cards) are
//      numbered in text order from 0, as the import numbered its instances;
//   2. an item with a unique identifier (UID) matches the component with the
//      same UID; among several components that share it (a recurring master
//      and its overrides) the one whose number is the item's instance number;
//      failing that, the first of them not yet matched;
//   3. an item without a UID matches the component whose number is its
//      instance number, if that component has no UID either;
//   4. anything else is new: it is added as a plain export writes it.
// Components of the original that no item matches stay as they are: deleting
// is the sync protocol's business, not the merge's.

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "bridges/common/Bridge.h"

namespace PimBridge {

/// How a merge treats the original: two-way, or three-way against the text
/// the device was sent.
struct MergeOptions {
    /// The text that was sent to the device, when the service has it: the
    /// merge is then three-way. A property changed only on the device takes
    /// the device's value, one changed only in the original keeps the
    /// original's, one changed on both sides is a conflict.
    const char* base = nullptr;
    std::size_t baseSize = 0;  ///< the length of base in bytes
    /// How a conflict is resolved: the original (the server) wins unless this
    /// is set.
    bool preferDevice = false;
};

/// One property (or parameter, or component) that differs between the
/// original and the merged item, by the name it has in the text format.
struct PropertyChange {
    /// Whether the merged item added, removed or changed it.
    enum class Kind { Added, Removed, Changed };
    std::string name;           ///< "SUMMARY", "ATTENDEE", "TEL"
    Kind kind = Kind::Changed;  ///< added, removed or changed
};

/// A property changed on both sides in a three-way merge.
struct Conflict {
    std::string name;        ///< the property, by its name in the text format
    bool deviceWon = false;  ///< whose value the merged text has
};

/// What the merge did with one item.
struct MergedItem {
    /// Whether the item changed its counterpart, was added or failed.
    enum class Outcome {
        Unchanged,  ///< the item carries what the original's component carried
        Changed,    ///< the component was updated from the item: see changes
        Added,      ///< no counterpart: written as a plain export writes it
        Failed,     ///< the item could not be read or placed: see diagnostics
    };
    std::string kind;                      ///< "event", "task", "note", "contact"
    std::size_t offset = 0;                ///< where its stream starts in the streams given
    std::string uid;                       ///< the item's unique identifier, empty when none
    unsigned int instance = 0;             ///< the item's instance number
    Outcome outcome = Outcome::Unchanged;  ///< what the merge did with it
    std::vector<PropertyChange> changes;   ///< in text order; empty unless Changed
    std::vector<Conflict> conflicts;       ///< three-way merges only
    bool malformed = false;                ///< its parser stopped early
    std::vector<Diagnostic> diagnostics;   ///< what its parser reported
    std::vector<Loss> losses;              ///< what the text format has no place for
};

/// What a merge gives: the merged text and, per item, what it did.
struct MergeResult {
    bool ok = false;  ///< false when no merged text could be written
    /// When !ok: why, in one line, and the 1-based line of the original (or the
    /// base) it concerns, 0 when none. text is then empty.
    std::string error;
    unsigned int errorLine = 0;     ///< see error
    std::string text;               ///< the merged text
    std::vector<MergedItem> items;  ///< in stream order

    /// Whether the service may skip the write: every item unchanged.
    bool Unchanged() const {
        for (const MergedItem& item : items) {
            if (item.outcome != MergedItem::Outcome::Unchanged) return false;
        }
        return true;
    }
};

/// The matching rule above over the original's components, given in text
/// order. Each component is matched at most once.
class ComponentMatcher {
  public:
    /// What Match answers for an item without a counterpart.
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// The next component (its number is the count added before it); uid
    /// empty when it has none.
    void Add(const std::string& uid) {
        const std::size_t number = m_matched.size();
        m_matched.push_back(false);
        m_hasUid.push_back(!uid.empty());
        if (!uid.empty()) m_byUid[uid].push_back(number);
    }
    /// How many components were added.
    std::size_t Size() const { return m_matched.size(); }
    /// Whether component number has been matched.
    bool Matched(std::size_t number) const { return m_matched[number]; }

    /// The component an item with this UID and instance number matches, now
    /// marked as matched; kNone when the item is new.
    std::size_t Match(const std::string& uid, unsigned int instance) {
        if (uid.empty()) {
            if (instance < m_matched.size() && !m_hasUid[instance]) return Claim(instance);
            return kNone;
        }
        const auto found = m_byUid.find(uid);
        if (found == m_byUid.end()) return kNone;
        for (const std::size_t n : found->second) {
            if (n == instance && !m_matched[n]) return Claim(n);
        }
        for (const std::size_t n : found->second) {
            if (!m_matched[n]) return Claim(n);
        }
        return kNone;
    }

    /// Marks a component matched by other means (an item whose stream is the
    /// very one the original's component gives, UID and number included).
    std::size_t Claim(std::size_t number) {
        m_matched[number] = true;
        return number;
    }

  private:
    std::unordered_map<std::string, std::vector<std::size_t>> m_byUid;
    std::vector<bool> m_matched;
    std::vector<bool> m_hasUid;
};

/// The three-way decision for one property (by name): whose value the merged
/// text takes. Two-way merges pass the original as the base, so that whatever
/// the device changed wins.
struct MergeDecision {
    bool takeDevice = false;  ///< the merged text takes the device's value
    bool conflict = false;    ///< both sides changed the property differently
};

inline MergeDecision Decide(bool deviceChanged, bool originalChanged, bool sidesAgree,
                            bool preferDevice) {
    MergeDecision d;
    if (!deviceChanged || sidesAgree) return d;
    if (!originalChanged) {
        d.takeDevice = true;
        return d;
    }
    d.conflict = true;
    d.takeDevice = preferDevice;
    return d;
}

/// Marks an item that could not be read or placed, saying why.
inline void Fail(MergedItem& item, std::string why) {
    item.outcome = MergedItem::Outcome::Failed;
    item.diagnostics.push_back(Diagnostic{0, std::move(why)});
}

/// One item of the report in words: "unchanged", "added", "changed: SUMMARY
/// changed, LOCATION removed", each conflict after it ("conflict: SUMMARY,
/// server's value kept"), "failed: why".
inline std::string Describe(const MergedItem& item) {
    std::string said;
    switch (item.outcome) {
        case MergedItem::Outcome::Unchanged:
            said = "unchanged";
            break;
        case MergedItem::Outcome::Added:
            said = "added";
            break;
        case MergedItem::Outcome::Failed:
            said = "failed";
            for (const Diagnostic& d : item.diagnostics) {
                if (d.text.empty()) continue;  // a parser code without words
                said += (said.size() == 6 ? ": " : "; ") + d.text;
            }
            break;
        case MergedItem::Outcome::Changed:
            said = "changed";
            for (std::size_t i = 0; i < item.changes.size(); ++i) {
                const PropertyChange& c = item.changes[i];
                said += (i == 0 ? ": " : ", ") + c.name +
                        (c.kind == PropertyChange::Kind::Added     ? " added"
                         : c.kind == PropertyChange::Kind::Removed ? " removed"
                                                                   : " changed");
            }
            break;
    }
    for (const Conflict& c : item.conflicts) {
        said += "; conflict: " + c.name +
                (c.deviceWon ? ", device's value taken" : ", server's value kept");
    }
    return said;
}

}  // namespace PimBridge

#endif
