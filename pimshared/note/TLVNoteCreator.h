#ifndef PIMTLV_PIMSHARED_NOTE_TLVNOTECREATOR_H
#define PIMTLV_PIMSHARED_NOTE_TLVNOTECREATOR_H

#include "pimshared/common/CalendarFamilyCreator.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/note/INoteAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// Writes one note: node 3 { node 105 { UInt32 10 = instance, property nodes
/// in call order } }. Every property is one that events and tasks share, and
/// is written exactly as they write it.
class PIMTLV_API CTLVNoteCreator
    : public TCalendarFamilyCreator<INoteCreator, TypeIdObjTypeNote, TypeIdCompTypeVJournal> {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVNoteCreator() = default;
    /// @}
    ~CTLVNoteCreator() override;
};

}  // namespace PimShared

#endif
