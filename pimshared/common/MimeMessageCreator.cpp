#include "pimshared/common/MimeMessageCreator.h"

#include "parsercreatorcollection/src/tlv/creator/private/TLVCreatorImpl.h"

namespace PimShared {

namespace {

// Enumerations travel as their low byte.
unsigned char LowByte(unsigned int value) {
    return static_cast<unsigned char>(value & 0xFFu);
}

}  // namespace

template <typename Leaves>
bool CTLVMimeMessageFrame::InNode(unsigned int node, Leaves leaves) {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(node) && leaves(*tlv) && tlv->NodeEnd(node);
}

bool CTLVMimeMessageFrame::WriteBegin(unsigned int instance) {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeBegin(TypeIdObjTypeMessage) &&
           tlv->LeafUInt32(TypeIdValTypeInstance, instance) && tlv->NodeBegin(m_ids.component);
}

bool CTLVMimeMessageFrame::WriteEnd() {
    TlvWriter* tlv = Writer();
    return tlv != nullptr && tlv->NodeEnd(m_ids.component) && tlv->NodeEnd(TypeIdObjTypeMessage);
}

bool CTLVMimeMessageFrame::WriteEntityBegin() {
    return Writer() != nullptr && Writer()->NodeBegin(m_ids.component);
}

bool CTLVMimeMessageFrame::WriteEntityEnd() {
    return Writer() != nullptr && Writer()->NodeEnd(m_ids.component);
}

bool CTLVMimeMessageFrame::WriteText(MimeText property, const char* text) {
    return WriteTextLeaf(m_ids.text[static_cast<unsigned>(property)], text);
}

bool CTLVMimeMessageFrame::WriteByte(MimeByte property, unsigned int value) {
    return WriteByteLeaf(m_ids.byte[static_cast<unsigned>(property)], value);
}

bool CTLVMimeMessageFrame::WriteTextLeaf(unsigned int typeId, const char* text) {
    return Writer() != nullptr && Writer()->LeafString(typeId, text);
}

bool CTLVMimeMessageFrame::WriteByteLeaf(unsigned int typeId, unsigned int value) {
    return Writer() != nullptr && Writer()->LeafUInt8(typeId, LowByte(value));
}

bool CTLVMimeMessageFrame::WritePriorityLevel(unsigned char level) {
    return WriteByteLeaf(m_ids.priorityLevel, level);
}

bool CTLVMimeMessageFrame::WriteCutoffState(unsigned short value) {
    return Writer() != nullptr && Writer()->LeafBitfield16(m_ids.cutoffState, value);
}

bool CTLVMimeMessageFrame::WriteBodyContent(unsigned int encoding, unsigned int charset,
                                            const void* content, unsigned int length) {
    const auto& b = m_ids.body;
    return InNode(b.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(b.encoding, LowByte(encoding)) &&
               tlv.LeafUInt8(b.charset, LowByte(charset)) &&
               tlv.LeafByteStream(b.content, content, length);
    });
}

bool CTLVMimeMessageFrame::WriteBodyLink(unsigned int encoding, unsigned int charset,
                                         const char* link) {
    const auto& b = m_ids.body;
    return InNode(b.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(b.encoding, LowByte(encoding)) &&
               tlv.LeafUInt8(b.charset, LowByte(charset)) && tlv.LeafString(b.contentLink, link);
    });
}

bool CTLVMimeMessageFrame::WriteBodyTokens(const char* typeToken, const char* subtypeToken,
                                           const char* link) {
    const unsigned int typeTokenId =
        m_ids.typed[static_cast<unsigned>(MimeTyped::ContentType)].token;
    const unsigned int subtypeTokenId =
        m_ids.typed[static_cast<unsigned>(MimeTyped::ContentSubtype)].token;
    return InNode(m_ids.body.node, [&](TlvWriter& tlv) {
        return tlv.LeafString(typeTokenId, typeToken) &&
               tlv.LeafString(subtypeTokenId, subtypeToken) &&
               tlv.LeafString(m_ids.body.contentLink, link);
    });
}

bool CTLVMimeMessageFrame::WriteTyped(MimeTyped property, unsigned int value, const char* token) {
    const auto& t = m_ids.typed[static_cast<unsigned>(property)];
    return InNode(t.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(t.value, LowByte(value)) &&
               (value != kMimeExtensionMember || tlv.LeafString(t.token, token));
    });
}

bool CTLVMimeMessageFrame::WriteTypeParam(unsigned int name, unsigned int value,
                                          const char* nameToken, const char* valueToken) {
    const auto& p = m_ids.typeParam;
    return InNode(p.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(p.name, LowByte(name)) && tlv.LeafUInt8(p.value, LowByte(value)) &&
               (name != kMimeExtensionMember || tlv.LeafString(p.nameToken, nameToken)) &&
               (value != kMimeExtensionMember || tlv.LeafString(p.valueToken, valueToken));
    });
}

bool CTLVMimeMessageFrame::WriteDispositionParam(unsigned int name, const char* value,
                                                 const char* nameToken) {
    const auto& p = m_ids.dispositionParam;
    return InNode(p.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(p.name, LowByte(name)) && tlv.LeafString(p.value, value) &&
               (name != kMimeExtensionMember || tlv.LeafString(p.nameToken, nameToken));
    });
}

bool CTLVMimeMessageFrame::WriteMailbox(unsigned int fieldType, const char* displayName,
                                        const char* address, unsigned int clientId,
                                        unsigned int client) {
    const auto& m = m_ids.mailbox;
    return InNode(m.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(m.fieldType, LowByte(fieldType)) &&
               (client == TypeIdNone || tlv.LeafUInt8(clientId, LowByte(client))) &&
               (displayName == nullptr || tlv.LeafString(m.displayName, displayName)) &&
               (address == nullptr || tlv.LeafString(m.address, address));
    });
}

bool CTLVMimeMessageFrame::GroupBegin(const char* name) {
    return Writer() != nullptr && Writer()->NodeBegin(m_ids.group.node) &&
           Writer()->LeafString(m_ids.group.name, name);
}

bool CTLVMimeMessageFrame::GroupMember(unsigned int fieldType, const char* displayName,
                                       const char* address) {
    const auto& m = m_ids.mailbox;
    return InNode(m.node, [&](TlvWriter& tlv) {
        return tlv.LeafUInt8(m.fieldType, LowByte(fieldType)) &&
               tlv.LeafString(m.displayName, displayName) && tlv.LeafString(m.address, address);
    });
}

bool CTLVMimeMessageFrame::GroupEnd() {
    return Writer() != nullptr && Writer()->NodeEnd(m_ids.group.node);
}

}  // namespace PimShared
