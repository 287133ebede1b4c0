// The task (VTODO) in the tool.
#include "items/CalendarFamily.h"
#include "pimshared/task/TLVTaskCreator.h"
#include "pimshared/task/TLVTaskParser.h"

namespace PimTool {

namespace {

using PimShared::ITaskAttributes;
using PimShared::ITaskReceiver;

class TaskRecorder : public EventTaskRecorder<ITaskReceiver> {
  public:
    using EventTaskRecorder::EventTaskRecorder;

    bool DateTimeDueLocal(const PAL::CDateAndTime& dt, const XParams& x) override {
        return m_rec.Put<&ITaskAttributes::DateTimeDueLocal>(dt, x);
    }
};

std::vector<OpEntry> TaskOps() {
    using I = ITaskAttributes;
    return Joined(Joined(CalendarCommonOps<I>(), EventTaskOps<I>()),
                  {Op<&I::DateTimeDueLocal>("DateTimeDueLocal", "dateTime", "xParams")});
}

}  // namespace

const ItemAdapter kTaskItem = {
    "task",
    CalendarFamilyNames(),
    TaskOps(),
    &DecodeWith<PimShared::CTLVTaskParser, TaskRecorder>,
    &EncodeWith<ITaskAttributes, PimShared::CTLVTaskCreator>,
    kCalendarAsymmetries,
};

}  // namespace PimTool
