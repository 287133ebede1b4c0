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

PIMTLV_DESCRIBE_ITEM(NoteItem, "note", INoteAttributes, INoteReceiver, CTLVNoteParser,
                     CTLVNoteCreator, NoteOperations, TNoteReceiverFor, TNoteSlots,
                     PIMTLV_NOTE_OPERATIONS)

}  // namespace PimShared

#endif
