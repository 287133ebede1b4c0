#ifndef PIMTLV_PIMSHARED_NOTE_NOTEDESCRIPTION_H
#define PIMTLV_PIMSHARED_NOTE_NOTEDESCRIPTION_H

// The note's operations, described once (see pimshared/common/ItemDescription.h):
// a new property is added to INoteAttributes and to this list.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/note/INoteReceiver.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"

#define PIMTLV_NOTE_OPERATIONS(OP, OP0, OVERLOAD) \
    PIMTLV_CALENDAR_COMMON_OPERATIONS(OP, OP0, OVERLOAD)

namespace PimShared {

PIMTLV_DESCRIBE_OPERATIONS(NoteOperations, INoteAttributes, PIMTLV_NOTE_OPERATIONS)
PIMTLV_DESCRIBE_RECEIVER(TNoteReceiverFor, TNoteSlots, INoteReceiver, NoteOperations,
                         PIMTLV_NOTE_OPERATIONS)

// The item as code that iterates items sees it.
struct NoteItem {
    static constexpr const char* kKind = "note";
    using Operations = NoteOperations;
    using Attributes = INoteAttributes;
    using Receiver = INoteReceiver;
    using Parser = CTLVNoteParser;
    using Creator = CTLVNoteCreator;
    template <typename Sink>
    using ReceiverFor = TNoteReceiverFor<Sink>;
    template <typename Base, typename Sink>
    using SlotsFor = TNoteSlots<Base, Sink>;
};

}  // namespace PimShared

#endif
