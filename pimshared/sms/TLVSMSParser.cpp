#include "pimshared/sms/TLVSMSParser.h"

#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/sms/SMSTypeIds.h"

namespace PimShared {

using namespace SMSTypeIds;
using ParserCreatorCollection::ClassDisplayName;
using ParserCreatorCollection::eClass;

namespace {

// Text leaves of node 700, each delivered as it comes.
struct TextLeaf {
    unsigned int typeId;
    bool (ISMSReceiver::*deliver)(const char*);
};
constexpr TextLeaf kTextLeaves[] = {
    {TypeIdValTypeBody, &ISMSReceiver::Body},
    {TypeIdValTypeDestination, &ISMSReceiver::Destination},
    {TypeIdValTypeFolder, &ISMSReceiver::Folder},
    {TypeIdValTypeInstanceName, &ISMSReceiver::Instance},
    {TypeIdValTypeOriginator, &ISMSReceiver::Originator},
    {TypeIdValTypeOriginatorFName, &ISMSReceiver::OriginatorFName},
    {TypeIdValTypeDestinationFName, &ISMSReceiver::DestinationFName},
    {TypeIdValTypeServiceCenter, &ISMSReceiver::ServiceCenter},
    {TypeIdValTypeSendingState, &ISMSReceiver::SendingState},
    {TypeIdValTypeSubject, &ISMSReceiver::Subject},
    {TypeIdValTypeTimestamp, &ISMSReceiver::Timestamp},
    {TypeIdValTypeTimestampLocal, &ISMSReceiver::TimestampLocal},
};
static_assert(sizeof kTextLeaves / sizeof kTextLeaves[0] == 12, "twelve text attributes");

// The wire byte widened back to the enumeration it was cut from.
template <typename Enum, bool (ISMSAttributes::*Operation)(const Enum&)>
bool DeliverEnum(ISMSReceiver& receiver, unsigned char value) {
    const Enum widened = static_cast<Enum>(value);
    return (receiver.*Operation)(widened);
}

// Byte leaves of node 700 (the enumerations).
struct ByteLeaf {
    unsigned int typeId;
    bool (*deliver)(ISMSReceiver&, unsigned char);
};
constexpr ByteLeaf kByteLeaves[] = {
    {TypeIdValTypeReadStatus, &DeliverEnum<ISMSReceiver::eReadStatus, &ISMSReceiver::ReadStatus>},
    {TypeIdValTypeDownloadState,
     &DeliverEnum<ISMSReceiver::eDownloadState, &ISMSReceiver::DownloadState>},
    {TypeIdValTypeSMSState, &DeliverEnum<ISMSReceiver::eSMSState, &ISMSReceiver::SMSState>},
    {TypeIdValTypeSMSType, &DeliverEnum<ISMSReceiver::eSMSType, &ISMSReceiver::SMSType>},
    {TypeIdValTypeStorageType,
     &DeliverEnum<ISMSReceiver::eStorageType, &ISMSReceiver::StorageType>},
    {TypeIdValTypeMessagePriority, &DeliverEnum<ISMSReceiver::ePriority, &ISMSReceiver::Priority>},
};
static_assert(sizeof kByteLeaves / sizeof kByteLeaves[0] == 6, "six enumerations");

template <typename Entry, unsigned int N>
const Entry* Find(const Entry (&table)[N], unsigned int typeId) {
    for (const Entry& entry : table) {
        if (entry.typeId == typeId) return &entry;
    }
    return nullptr;
}

// The originator's name arrives as the contact's five name parts; part k
// (508 + k - 1) is the receiver's argument k + 1, the first argument having no
// leaf of its own.
constexpr unsigned int kNameArguments = 6;
static_assert(TypeIdValTypeNamePart5 - TypeIdValTypeNamePart1 + 2 == kNameArguments,
              "five name parts after the unwritten first argument");

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
    if (typeId == TypeIdPropTypeConcat && m_inMessage && !m_inConcat) {
        m_inConcat = true;
        return true;
    }
    return Refuse(eClass::Node, typeId);
}

bool CTLVSMSParser::NodeEnd(const unsigned int& typeId) {
    if (typeId == TypeIdPropTypeConcat && m_inMessage && m_inConcat) {
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
    if (typeId >= TypeIdValTypeConcat1 && typeId <= TypeIdValTypeConcat3) {
        if (!m_inConcat) return Refuse(eClass::UInt8, typeId);
        m_concat[typeId - TypeIdValTypeConcat1] = value;
        return true;
    }
    const ByteLeaf* leaf = m_inMessage ? Find(kByteLeaves, typeId) : nullptr;
    if (leaf == nullptr) return Refuse(eClass::UInt8, typeId);
    return leaf->deliver(m_receiver, value);
}

bool CTLVSMSParser::LeafUInt16(const unsigned int& typeId, const unsigned short& value) {
    if (typeId != TypeIdValTypeStorageIndex || !m_inMessage) return Refuse(eClass::UInt16, typeId);
    return m_receiver.StorageIndex(value);
}

bool CTLVSMSParser::LeafString(const unsigned int& typeId, const char* text) {
    if (!m_inMessage) return Refuse(eClass::String, typeId);
    if (const TextLeaf* leaf = Find(kTextLeaves, typeId)) return (m_receiver.*leaf->deliver)(text);
    if (typeId >= TypeIdValTypeNamePart1 && typeId <= TypeIdValTypeNamePart5) {
        const char* parts[kNameArguments] = {};
        parts[typeId - TypeIdValTypeNamePart1 + 1] = text;
        return m_receiver.OriginatorName(parts[0], parts[1], parts[2], parts[3], parts[4],
                                         parts[5]);
    }
    return Refuse(eClass::String, typeId);
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
