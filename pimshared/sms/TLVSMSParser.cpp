#include "pimshared/sms/TLVSMSParser.h"

#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/sms/SMSLayout.h"

namespace PimShared {

using namespace SMSTypeIds;
using ParserCreatorCollection::ClassDisplayName;
using ParserCreatorCollection::eClass;

namespace {

using SMSLayout::eForm;
using SMSLayout::Row;
using SMSLayout::tOperation;

constexpr unsigned int kConcatNode = Row(SMSLayout::Concat).node;

}  // namespace

CTLVSMSParser::CTLVSMSParser(ISMSReceiver& receiver)
    : ITLV(), CTLVParser(static_cast<ITLV&>(*this)), m_receiver(receiver) {}

CTLVSMSParser::~CTLVSMSParser() = default;

bool CTLVSMSParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                          unsigned int& consumed) {
    consumed = 0;
    if (data == nullptr) {
        errorText = m_lastError.c_str();
        return false;
    }
    m_lastError.truncate(0);
    m_inObject = false;
    m_inMessage = false;
    m_inConcat = false;
    // The instance number and the concatenation bytes carry over on purpose:
    // a stream without its instance leaf continues the previous message.
    if (CTLVParser::Parse(data, length, errorText, consumed)) return true;
    const int code = 3;
    m_receiver.TraceMessage(code, errorText);
    return false;
}

bool CTLVSMSParser::Refuse(eClass elementClass, unsigned int typeId) {
    return AlertUnexpectedTypeId(m_receiver, m_message, ClassDisplayName(elementClass), typeId);
}

bool CTLVSMSParser::RefuseNodeEnd(unsigned int typeId) {
    return AlertUnexpectedTypeId(m_receiver, m_message, kNodeEndWord, typeId);
}

bool CTLVSMSParser::Unknown(const eClass& elementClass, const unsigned int& typeId,
                            const void* /*value*/, const unsigned int& /*length*/) {
    FormatDiagnostic(m_message, kUnexpectedClassText, static_cast<int>(elementClass),
                     static_cast<int>(typeId));
    const int code = 1;
    return m_receiver.TraceMessage(code, m_message.c_str());
}

bool CTLVSMSParser::NodeBegin(const unsigned int& typeId) {
    if (typeId == TypeIdObjTypeMessage && !m_inObject) {
        m_inObject = true;
        return true;
    }
    if (typeId == TypeIdCompTypeSMS && m_inObject && !m_inMessage) {
        m_inMessage = true;
        return m_receiver.Begin(m_instance);
    }
    if (typeId == kConcatNode && m_inMessage && !m_inConcat) {
        m_inConcat = true;
        return true;
    }
    return Refuse(eClass::Node, typeId);
}

bool CTLVSMSParser::NodeEnd(const unsigned int& typeId) {
    if (typeId == kConcatNode && m_inMessage && m_inConcat) {
        const bool answer = m_receiver.Concat(m_concat[0], m_concat[1], m_concat[2]);
        m_concat[0] = m_concat[1] = m_concat[2] = 0;
        m_inConcat = false;
        return answer;
    }
    if (typeId == TypeIdCompTypeSMS && m_inMessage) {
        m_inMessage = false;
        return true;
    }
    if (typeId == TypeIdObjTypeMessage && m_inObject && !m_inMessage) {
        m_inObject = false;
        return m_receiver.End();
    }
    return RefuseNodeEnd(typeId);
}

bool CTLVSMSParser::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    if (const tOperation* row = SMSLayout::Find(typeId)) {
        if (row->form == eForm::ByteGroup) {
            static_assert(sizeof m_concat == Row(SMSLayout::Concat).count, "a byte per leaf");
            // The bytes wait for the group's node to end; only inside it are
            // they taken.
            if (!m_inConcat) return Refuse(eClass::UInt8, typeId);
            m_concat[typeId - row->id] = value;
            return true;
        }
        if (row->form == eForm::Byte && m_inMessage) return row->number(m_receiver, value);
    }
    return Refuse(eClass::UInt8, typeId);
}

bool CTLVSMSParser::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    const tOperation* row = m_inMessage ? SMSLayout::Find(typeId) : nullptr;
    if (row == nullptr || row->form != eForm::Word) return Refuse(eClass::UInt16, typeId);
    return row->number(m_receiver, value);
}

bool CTLVSMSParser::LeafString(const unsigned int& typeId, const char* text) {
    const tOperation* row = m_inMessage ? SMSLayout::Find(typeId) : nullptr;
    if (row == nullptr) return Refuse(eClass::String, typeId);
    switch (row->form) {
        case eForm::Text:
        case eForm::NonEmptyText:
            return row->text(m_receiver, text);
        case eForm::TextParts: {
            // One call per leaf, with the leaf's text at its argument and
            // every other argument null.
            constexpr unsigned int kArguments =
                Row(SMSLayout::OriginatorName).argument + Row(SMSLayout::OriginatorName).count;
            const char* parts[kArguments] = {};
            parts[row->argument + (typeId - row->id)] = text;
            return m_receiver.OriginatorName(parts[0], parts[1], parts[2], parts[3], parts[4],
                                             parts[5]);
        }
        default:
            return Refuse(eClass::String, typeId);
    }
}

bool CTLVSMSParser::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    if (typeId != TypeIdValTypeInstance || !m_inObject || m_inMessage) {
        return Refuse(eClass::UInt32, typeId);
    }
    m_instance = value;
    return true;
}

// The layout has no leaves of these classes.
bool CTLVSMSParser::LeafInt8(const unsigned int& typeId, const signed char& /*value*/) {
    return Refuse(eClass::Int8, typeId);
}

bool CTLVSMSParser::LeafInt16(const unsigned int& typeId, const short& /*value*/) {
    return Refuse(eClass::Int16, typeId);
}

bool CTLVSMSParser::LeafBitfield8(const unsigned int& typeId, const unsigned char& /*value*/) {
    return Refuse(eClass::Bitfield8, typeId);
}

bool CTLVSMSParser::LeafBitfield16(const unsigned int& typeId, const unsigned short& /*value*/) {
    return Refuse(eClass::Bitfield16, typeId);
}

bool CTLVSMSParser::LeafByteStream(const unsigned int& typeId, const void* /*data*/,
                                   const unsigned int& /*length*/) {
    return Refuse(eClass::ByteStream, typeId);
}

bool CTLVSMSParser::LeafInt32(const unsigned int& typeId, const int& /*value*/) {
    return Refuse(eClass::Int32, typeId);
}

}  // namespace PimShared
