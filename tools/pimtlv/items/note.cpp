// The note (VJOURNAL) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/note/NoteDescription.h"

namespace PimTool {

const ItemAdapter kNoteItem = {
    PimShared::NoteItem::kKind,
    CalendarFamilyNames(),
    OperationsOf<PimShared::NoteOperations>(),
    &DecodeItem<PimShared::NoteItem>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
