#include "pimshared/callstack/TLVCallstackParser.h"

#include "pimshared/callstack/CallstackLayout.h"

namespace PimShared {

using namespace CallstackTypeIds;
using ParserCreatorCollection::eClass;

namespace {

using CallstackLayout::eForm;
using CallstackLayout::tOperation;

// The entry kind named by an entry node, 0 for any other node.
constexpr unsigned int EntryKind(unsigned int typeId) {
    return typeId == TypeIdCompTypeCallEntry1 ? 1u : typeId == TypeIdCompTypeCallEntry2 ? 2u : 0u;
}

}  // namespace

CTLVCallstackParser::LeafValue CTLVCallstackParser::Number(unsigned int number) {
    return {number, static_cast<unsigned char>(number & 0xFFu), nullptr};
}

CTLVCallstackParser::CTLVCallstackParser(ICallstackReceiver& receiver)
    : ITLV(), CTLVParser(static_cast<ITLV&>(*this)), m_receiver(receiver) {}

CTLVCallstackParser::~CTLVCallstackParser() = default;

bool CTLVCallstackParser::Parse(const void* data, const unsigned int& length,
                                const char*& errorText, unsigned int& consumed) {
    consumed = 0;
    m_instanceSeen = false;
    m_byte = 0;
    for (PAL::CString& text : m_texts) text.truncate(0);
    m_flag = false;
    if (data == nullptr) {
        errorText = m_emptyText;
        return false;
    }
    // The entry-seen flag is left alone: it belongs to the call-list node.
    m_state = StateOutside;
    if (CTLVParser::Parse(data, length, errorText, consumed)) return true;
    const int code = ReportBadStructure;
    m_receiver.TraceMessage(code, errorText);
    return false;
}

bool CTLVCallstackParser::Send(Report code) {
    const int number = code;
    return m_receiver.TraceMessage(number, m_emptyText);
}

bool CTLVCallstackParser::NodeBegin(const unsigned int& typeId) {
    switch (m_state) {
        case StateOutside:
            if (typeId != TypeIdObjTypeCallList) return Send(ReportWrongRoot);
            m_instance = 0;
            m_entryKind = 0;
            m_entrySeen = false;
            m_state = StateCallList;
            return true;
        case StateCallList: {
            // One call list carries one entry.
            if (m_entrySeen) return Send(ReportSecondEntry);
            const unsigned int kind = EntryKind(typeId);
            if (kind == 0) return Send(ReportWrongEntry);
            m_entryKind = kind;
            m_receiver.Begin(m_entryKind, m_instance);
            m_entrySeen = true;
            m_state = StateEntry;
            return true;
        }
        case StateEntry:
            return Send(ReportUnexpected);
        default:
            return Send(ReportBadStructure);
    }
}

bool CTLVCallstackParser::NodeEnd(const unsigned int& typeId) {
    if (m_state == StateCallList && typeId == TypeIdObjTypeCallList) {
        m_state = StateOutside;
        return true;
    }
    if (m_state == StateEntry && EntryKind(typeId) != 0 && EntryKind(typeId) == m_entryKind) {
        m_receiver.End();
        m_entryKind = 0;
        m_state = StateCallList;
        return true;
    }
    return Send(ReportBadStructure);
}

bool CTLVCallstackParser::Leaf(unsigned int typeId, const LeafValue& value) {
    switch (m_state) {
        case StateCallList:
            if (typeId != TypeIdValTypeInstance) return Send(ReportUnexpected);
            // The instance reaches the receiver with Begin; only the first
            // one of a Parse counts.
            if (m_instanceSeen) return Send(ReportSecondInstance);
            m_instance = value.number;
            m_instanceSeen = true;
            return true;
        case StateEntry:
            if (typeId == TypeIdValTypeInstance) return true;  // tolerated, not used
            return Deliver(typeId, value);
        case StateOutside:
            return Send(ReportUnexpected);
        default:
            return Send(ReportBadStructure);
    }
}

// Keeps the value in its slot only for the call that delivers it, so a
// property is reported once per leaf, in stream order.
bool CTLVCallstackParser::Deliver(unsigned int typeId, const LeafValue& value) {
    const tOperation* row = CallstackLayout::Find(typeId);
    if (row == nullptr) return Send(ReportUnexpected);
    switch (row->form) {
        case eForm::Byte:
            m_byte = value.firstByte;
            m_receiver.CallByte(m_byte);
            m_byte = 0;
            break;
        case eForm::Text: {
            static_assert(CallstackLayout::TextCount() == kTextCount, "a slot per text row");
            PAL::CString& slot = m_texts[row->store];
            const char* text = value.text != nullptr ? value.text : "";
            // Without memory for the copy the walk's own text serves: it is
            // valid for the duration of the call all the same.
            row->text(m_receiver, slot.assign(text) ? slot.c_str() : text);
            slot.truncate(0);
            break;
        }
        case eForm::Flag:
            m_flag = value.firstByte != 0;
            m_receiver.CallFlag(m_flag);
            m_flag = false;
            break;
        case eForm::NotImplemented:
            return Send(ReportNotImplemented);
    }
    return true;
}

bool CTLVCallstackParser::Unknown(const eClass& /*elementClass*/, const unsigned int& /*typeId*/,
                                  const void* /*value*/, const unsigned int& /*length*/) {
    return Send(ReportUnknownClass);
}

bool CTLVCallstackParser::LeafInt8(const unsigned int& typeId, const signed char& value) {
    return Leaf(typeId, Number(static_cast<unsigned int>(static_cast<int>(value))));
}

bool CTLVCallstackParser::LeafInt16(const unsigned int& typeId, const short& value) {
    return Leaf(typeId, Number(static_cast<unsigned int>(static_cast<int>(value))));
}

bool CTLVCallstackParser::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    return Leaf(typeId, Number(value));
}

bool CTLVCallstackParser::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    return Leaf(typeId, Number(value));
}

bool CTLVCallstackParser::LeafBitfield8(const unsigned int& typeId, const unsigned char& value) {
    return Leaf(typeId, Number(value));
}

bool CTLVCallstackParser::LeafBitfield16(const unsigned int& typeId, const unsigned short& value) {
    return Leaf(typeId, Number(value));
}

bool CTLVCallstackParser::LeafString(const unsigned int& typeId, const char* text) {
    const LeafValue value{0, static_cast<unsigned char>(text != nullptr ? text[0] : 0), text};
    return Leaf(typeId, value);
}

bool CTLVCallstackParser::LeafByteStream(const unsigned int& typeId, const void* data,
                                         const unsigned int& length) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    const LeafValue value{
        0, bytes != nullptr && length > 0 ? bytes[0] : static_cast<unsigned char>(0), nullptr};
    return Leaf(typeId, value);
}

bool CTLVCallstackParser::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    return Leaf(typeId, Number(value));
}

bool CTLVCallstackParser::LeafInt32(const unsigned int& typeId, const int& value) {
    return Leaf(typeId, Number(static_cast<unsigned int>(value)));
}

}  // namespace PimShared
