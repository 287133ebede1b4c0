#include "pimshared/note/TLVNoteCreator.h"

#include "pimshared/common/CalendarLayout.h"

namespace PimShared {

static_assert(CTLVNoteCreator::kRoot == CalendarLayout::kNote.root &&
                  CTLVNoteCreator::kComponent == CalendarLayout::kNote.component,
              "the creator writes the frame its item's layout names");

// Out of line so that the class has one home for its virtual table.
CTLVNoteCreator::~CTLVNoteCreator() = default;

}  // namespace PimShared
