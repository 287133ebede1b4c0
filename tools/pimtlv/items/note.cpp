// The note (VJOURNAL) in the tool: the calendar family's common properties.
#include "items/CalendarFamily.h"
#include "pimshared/note/TLVNoteCreator.h"
#include "pimshared/note/TLVNoteParser.h"

namespace PimTool {

const ItemAdapter kNoteItem = {
    "note",
    CalendarFamilyNames(),
    CalendarCommonOps<PimShared::INoteAttributes>(),
    &DecodeWith<PimShared::CTLVNoteParser, CalendarCommonRecorder<PimShared::INoteReceiver>>,
    &EncodeWith<PimShared::INoteAttributes, PimShared::CTLVNoteCreator>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
