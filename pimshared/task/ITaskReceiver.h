#ifndef PIMTLV_PIMSHARED_TASK_ITASKRECEIVER_H
#define PIMTLV_PIMSHARED_TASK_ITASKRECEIVER_H

#include "pimshared/common/ReceiverBases.h"
#include "pimshared/task/ITaskAttributes.h"
#include "platform/PalExport.h"

namespace PimShared {

/// What a CTLVTaskParser reports to: the operations of
/// ITaskAttributes, slot for slot, called with each property's values when
/// its node closes, then TraceMessage for every diagnostic. Texts and lists are
/// valid only during the call. A false answer to a call made at a leaf ends
/// the walk.
class PIMTLV_API ITaskReceiver : public ITaskAttributes {
  public:
    /// Code 0 is a trace line, 1 a wrong root, 2 an unexpected element, 4 an
    /// unimplemented property (its values are skipped), 6 an internal or
    /// stream error.
    virtual bool TraceMessage(const int& code, const char* text) = 0;
    /// Special members; an interface is made and copied only as part of the class
    /// that implements it.
    /// @{
    virtual ~ITaskReceiver() = default;
    /// @}
};

/// A ITaskReceiver that answers true to every call and keeps nothing: derive
/// from it and override only the calls you need.
class CTaskReceiverBase : public TCalendarFamilyReceiverBase<ITaskReceiver> {
  public:
    bool Location(const char* /*text*/, const char* /*altRep*/, const char* /*language*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool Priority(const unsigned char& /*priority*/,
                  const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeStart(const PAL::CDateAndTime& /*dateTime*/, const char* /*timeZone*/,
                       const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeStartLocal(const PAL::CDateAndTime& /*dateTime*/,
                            const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
    bool DateTimeDueLocal(const PAL::CDateAndTime& /*dateTime*/,
                          const PAL::TVector<tXParam>& /*xParams*/) override {
        return true;
    }
};

}  // namespace PimShared

#endif
