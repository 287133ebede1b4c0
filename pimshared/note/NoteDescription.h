#ifndef PIMTLV_PIMSHARED_NOTE_NOTEDESCRIPTION_H
#define PIMTLV_PIMSHARED_NOTE_NOTEDESCRIPTION_H

// The note as code that iterates items sees it (see
// pimshared/common/ItemDescription.h). Its operations are listed under
// INoteAttributes, where a new property is declared and listed.

#include "pimshared/common/CalendarFamilyDescription.h"
#include "pimshared/note/INoteReceiver.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"

namespace PimShared {

PIMTLV_DESCRIBE_ITEM(NoteItem, "note", INoteAttributes, INoteReceiver, CTLVNoteParser,
                     CTLVNoteCreator, NoteOperations, TNoteReceiverFor, TNoteSlots,
                     PIMTLV_NOTE_OPERATIONS)

}  // namespace PimShared

#endif
