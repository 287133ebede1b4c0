#include "pimshared/task/TLVTaskParser.h"

#include <new>

#include "pimshared/common/CalendarFamilyParser.h"
#include "pimshared/common/ParserFrame.h"
#include "pimshared/common/TypeIds.h"

namespace PimShared {

using namespace CalendarFamily;
using namespace CalendarTypeIds;

namespace {

const tParserItem kTask = {
    CalendarLayout::kTask,
    "NodeBegin(): [state ParsingStateBegin] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeCalendarTask)",
    "NodeBegin(): [state ParsingStateTaskContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVtodo)",
    "LeafNode(): [state ParsingStateTaskContext] Unexpected typeId: %d",
    "NodeEnd(): [state ParsingStateTaskContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdObjTypeCalendarTask)",
    "NodeBegin(): [state ParsingStateVtodoContext] Unimplemented typeId. TypeId: %d.",
    "NodeEnd(): [state ParsingStateVtodoContext] Unexpected typeId: %d  Expected: %d "
    "(TypeIdCompTypeVtodo)",
    kUnimplementedInTasks,
    sizeof kUnimplementedInTasks / sizeof kUnimplementedInTasks[0],
    true,  // a name waiting for its value pairs with the next stream's first 1014
};

}  // namespace

class CTLVTaskParser::CTLVTaskParserImpl final : public TReceivingEngine<ITaskReceiver> {
  public:
    // The task's names of the engine's states.
    static constexpr unsigned int ParsingStateTaskContext = ParsingStateObjectContext;
    static constexpr unsigned int ParsingStateVtodoContext = ParsingStateComponentContext;

    explicit CTLVTaskParserImpl(ITaskReceiver& receiver) : TReceivingEngine(kTask, receiver) {}
};

CTLVTaskParser::CTLVTaskParser(ITaskReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVTaskParserImpl(receiver)) {}

CTLVTaskParser::~CTLVTaskParser() = default;

bool CTLVTaskParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                           unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVTaskParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
