#ifndef PIMTLV_PIMSHARED_COMMON_CREATORFRAME_H
#define PIMTLV_PIMSHARED_COMMON_CREATORFRAME_H

#include <memory>

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "pimshared/common/XParam.h"
#include "platform/CDateAndTime.h"
#include "platform/CString.h"
#include "platform/PalExport.h"
#include "platform/TVector.h"

namespace PimShared {

/// The engine behind CTLVCreator.
using TlvWriter = ParserCreatorCollection::CTLVCreator::CTLVCreatorImpl;

/// What every item creator shares: one owned CTLVCreator (every operation is
/// false without it), the extension-parameter writer, the date-time writer and
/// the forwarding of Reset and GetData. An item creator derives from its
/// I<Item>Creator interface and from this frame.
class PIMTLV_API CTLVCreatorFrame {
  public:
    /// Makes an empty creator; creators are not copied.
    /// @{
    CTLVCreatorFrame();
    virtual ~CTLVCreatorFrame();
    CTLVCreatorFrame(const CTLVCreatorFrame&) = delete;
    CTLVCreatorFrame& operator=(const CTLVCreatorFrame&) = delete;
    /// @}

    /// For each pair in order: LeafString(1013, name) and, only if that
    /// succeeded, LeafString(1014, value). Stops at the first failure.
    bool AddXParams(const PAL::TVector<tXParam>& xParams);

    /// LeafString(1007, the date-time as iCalendar text) and then, only if that
    /// succeeded and zone is not null, LeafString(323, zone).
    bool AddDateTime(const PAL::CDateAndTime& dateTime, const char* zone);

  protected:
    /// The owned creator, or null when it could not be made.
    ParserCreatorCollection::CTLVCreator* Tlv() noexcept { return m_creator.get(); }
    /// Its engine, null with it. The library's item creators write through it
    /// (its definition is private to the library, in TLVCreatorImpl.h), so that
    /// the common case of each element costs no call.
    TlvWriter* Writer() noexcept { return m_writer; }

    bool FrameReset();
    bool FrameGetData(const void*& data, unsigned int& length);

  private:
    std::unique_ptr<ParserCreatorCollection::CTLVCreator> m_creator;
    TlvWriter* m_writer;
    PAL::CString m_dateText;  ///< reused for every date-time written
};

/// The zone text written beside a date-time (calendar family).
constexpr unsigned int TypeIdValTypeDateTimeZone = 323;

}  // namespace PimShared

#endif
