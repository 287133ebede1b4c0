// The note (VJOURNAL) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/note/NoteDescription.h"

namespace pimtlv_tool {

const ItemAdapter kNoteItem = {
    PimShared::NoteItem::kKind,
    CalendarFamilyNames(),
    OperationsOf<PimShared::NoteOperations>(),
    &DecodeItem<PimShared::NoteItem>,
    kCalendarAsymmetries,
};

}  // namespace pimtlv_tool
