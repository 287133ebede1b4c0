#include "pimshared/common/CreatorFrame.h"

#include <new>

#include "pimshared/common/TypeIds.h"

namespace PimShared {

CTLVCreatorFrame::CTLVCreatorFrame()
    : m_creator(new (std::nothrow) ParserCreatorCollection::CTLVCreator()) {}

CTLVCreatorFrame::~CTLVCreatorFrame() = default;

bool CTLVCreatorFrame::AddXParams(const PAL::TVector<tXParam>& xParams) {
    if (!m_creator) return false;
    bool ok = true;
    for (const tXParam& x : xParams) {
        ok = m_creator->LeafString(TypeIdValTypeXparamName, x.name) &&
             m_creator->LeafString(TypeIdValTypeXparamValue, x.value);
        if (!ok) break;
    }
    return ok;
}

bool CTLVCreatorFrame::AddDateTime(const PAL::CDateAndTime& dateTime, const char* zone) {
    if (!m_creator) return false;
    const PAL::DateAndTimeUtilities::STimeZoneOffset offset;
    if (!PAL::DateAndTimeUtilities::ToString(
            dateTime, PAL::DateAndTimeUtilities::eDateTimeFormatICalendar, 0, offset, m_dateText)) {
        return false;
    }
    bool ok = m_creator->LeafString(TypeIdValTypeDateTime, m_dateText.c_str());
    if (ok && zone != nullptr) ok = m_creator->LeafString(TypeIdValTypeDateTimeZone, zone);
    return ok;
}

bool CTLVCreatorFrame::FrameReset() {
    return m_creator && m_creator->Reset();
}

bool CTLVCreatorFrame::FrameGetData(const void*& data, unsigned int& length) {
    return m_creator && m_creator->GetData(data, length);
}

}  // namespace PimShared
