#include "pimshared/note/TLVNoteCreator.h"

namespace PimShared {

// Out of line so that the class has one home for its virtual table.
CTLVNoteCreator::~CTLVNoteCreator() = default;

}  // namespace PimShared
