#include "pimshared/common/CreatorFrame.h"

#include <new>

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

CTLVCreatorFrame::CTLVCreatorFrame()
    : m_creator(new (std::nothrow) ParserCreatorCollection::CTLVCreator()),
      m_writer(m_creator ? m_creator->Engine() : nullptr) {}

CTLVCreatorFrame::~CTLVCreatorFrame() = default;

bool CTLVCreatorFrame::AddXParams(const PAL::TVector<tXParam>& xParams) {
    if (m_writer == nullptr) return false;
    bool ok = true;
    for (const tXParam& x : xParams) {
        ok = m_writer->LeafString(TypeIdValTypeXparamName, x.name) &&
             m_writer->LeafString(TypeIdValTypeXparamValue, x.value);
        if (!ok) break;
    }
    return ok;
}

bool CTLVCreatorFrame::AddDateTime(const PAL::CDateAndTime& dateTime, const char* zone) {
    if (m_writer == nullptr) return false;
    const PAL::DateAndTimeUtilities::STimeZoneOffset offset;
    if (!PAL::DateAndTimeUtilities::ToString(
            dateTime, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar, 0, offset, m_dateText)) {
        return false;
    }
    bool ok = m_writer->LeafString(TypeIdValTypeDateTime, m_dateText.c_str());
    if (ok && zone != nullptr) ok = m_writer->LeafString(TypeIdValTypeDateTimeZone, zone);
    return ok;
}

bool CTLVCreatorFrame::FrameReset() {
    return m_writer != nullptr && m_writer->Reset();
}

bool CTLVCreatorFrame::FrameGetData(const void*& data, unsigned int& length) {
    return m_writer != nullptr && m_writer->GetData(data, length);
}

}  // namespace PimShared
