#include "pimshared/common/MimeMessageParser.h"

#include <cstring>
#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"

#include "pimshared/common/DiagnosticFormat.h"
#include "pimshared/common/TypeIds.h"
#include "pimshared/common/WalkInline.h"

namespace PimShared {

using ParserCreatorCollection::ClassDisplayName;
namespace Tlv = ParserCreatorCollection;

namespace {

constexpr const char* kBodyConflictText = "Body content and body content link are set";

// A body with neither content nor link is delivered as empty content.
constexpr char kEmptyContent[] = "";

constexpr unsigned int kTextBase = 2;
constexpr unsigned int kByteBase = kTextBase + kMimeTextCount;
constexpr unsigned int kTypedNodeBase = kByteBase + kMimeByteCount;
constexpr unsigned int kTypedValueBase = kTypedNodeBase + kMimeTypedCount;
constexpr unsigned int kTypedTokenBase = kTypedValueBase + kMimeTypedCount;
constexpr unsigned int kFixedBase = kTypedTokenBase + kMimeTypedCount;

}  // namespace

// What a type ID is in the item: the roles are dense, so each element finds its
// handling with one table look-up. The ranges of text, byte and typed roles
// follow the order of MimeText, MimeByte and MimeTyped.
enum CMimeMessageParserEngine::Role : unsigned char {
    RoleNone = 0,
    RoleComponent = 1,
    RoleCutoffState = kFixedBase,
    RoleBody,
    RoleBodyEncoding,
    RoleBodyCharset,
    RoleBodyContent,
    RoleBodyLink,
    RoleTypeParam,
    RoleParamName,
    RoleParamValue,
    RoleParamNameToken,
    RoleParamValueToken,
    RoleDispParam,
    RoleDispParamName,
    RoleDispParamValue,
    RoleDispParamNameToken,
    RoleMailbox,
    RoleMailboxFieldType,
    RoleMailboxDisplayName,
    RoleMailboxAddress,
    RoleGroup,
    RoleGroupName,
};

namespace {

// Index of role r within the range starting at base, or count when outside.
unsigned int InRange(unsigned int r, unsigned int base, unsigned int count) {
    return r >= base && r < base + count ? r - base : count;
}

}  // namespace

CMimeMessageParserEngine::CMimeMessageParserEngine(IMimeMessageAttributes& receiver,
                                                   const MimeMessageIds& ids)
    : CTLVParser(static_cast<ITLV&>(*this)), m_receiver(receiver) {
    std::memset(m_roles, RoleNone, sizeof m_roles);
    auto set = [this](unsigned int id, unsigned int role) {
        if (id < sizeof m_roles) m_roles[id] = static_cast<unsigned char>(role);
    };
    set(ids.component, RoleComponent);
    for (unsigned int i = 0; i < kMimeTextCount; ++i) set(ids.text[i], kTextBase + i);
    for (unsigned int i = 0; i < kMimeByteCount; ++i) set(ids.byte[i], kByteBase + i);
    for (unsigned int i = 0; i < kMimeTypedCount; ++i) {
        set(ids.typed[i].node, kTypedNodeBase + i);
        set(ids.typed[i].value, kTypedValueBase + i);
        set(ids.typed[i].token, kTypedTokenBase + i);
    }
    // The plain-byte priority level keeps RoleNone: it is written but refused
    // on reading, the enumerated priority being the one that travels.
    set(ids.cutoffState, RoleCutoffState);
    set(ids.body.node, RoleBody);
    set(ids.body.encoding, RoleBodyEncoding);
    set(ids.body.charset, RoleBodyCharset);
    set(ids.body.content, RoleBodyContent);
    set(ids.body.contentLink, RoleBodyLink);
    set(ids.typeParam.node, RoleTypeParam);
    set(ids.typeParam.name, RoleParamName);
    set(ids.typeParam.value, RoleParamValue);
    set(ids.typeParam.nameToken, RoleParamNameToken);
    set(ids.typeParam.valueToken, RoleParamValueToken);
    set(ids.dispositionParam.node, RoleDispParam);
    set(ids.dispositionParam.name, RoleDispParamName);
    set(ids.dispositionParam.value, RoleDispParamValue);
    set(ids.dispositionParam.nameToken, RoleDispParamNameToken);
    set(ids.mailbox.node, RoleMailbox);
    set(ids.mailbox.fieldType, RoleMailboxFieldType);
    set(ids.mailbox.displayName, RoleMailboxDisplayName);
    set(ids.mailbox.address, RoleMailboxAddress);
    set(ids.group.node, RoleGroup);
    set(ids.group.name, RoleGroupName);
    ResetShared();
}

CMimeMessageParserEngine::~CMimeMessageParserEngine() = default;

CMimeMessageParserEngine::Role CMimeMessageParserEngine::RoleOf(
    unsigned int typeId) const noexcept {
    return typeId < sizeof m_roles ? static_cast<Role>(m_roles[typeId]) : RoleNone;
}

void CMimeMessageParserEngine::ResetBody() noexcept {
    m_bodyOpen = false;
    m_bodyEncoding = 1;
    m_bodyCharset = 1;
    m_bodyContent = nullptr;
    m_bodyLength = 0;
    m_bodyLink = nullptr;
}

void CMimeMessageParserEngine::ResetMailbox() noexcept {
    m_mailboxOpen = false;
    m_mailbox = MailboxFields{0, TypeIdNone, nullptr, nullptr};
}

void CMimeMessageParserEngine::ResetTypeParam() noexcept {
    m_typeParamOpen = false;
    m_paramName = kMimeExtensionMember;
    m_paramValue = kMimeExtensionMember;
    m_paramNameToken = nullptr;
    m_paramValueToken = nullptr;
}

void CMimeMessageParserEngine::ResetDispParam() noexcept {
    m_dispParamOpen = false;
    m_dispParamName = kMimeExtensionMember;
    m_dispParamValue = nullptr;
    m_dispParamNameToken = nullptr;
}

void CMimeMessageParserEngine::ResetShared() noexcept {
    m_inObject = false;
    m_depth = 0;
    m_instance = 0;
    ResetBody();
    for (Typed& t : m_typed) t = Typed{false, kMimeExtensionMember, nullptr};
    ResetTypeParam();
    ResetDispParam();
    ResetMailbox();
    m_groupOpen = false;
    m_groupName = nullptr;
}

bool CMimeMessageParserEngine::AnyOpen() const noexcept {
    bool open = m_bodyOpen || m_typeParamOpen || m_dispParamOpen || m_mailboxOpen || m_groupOpen;
    for (const Typed& t : m_typed) open = open || t.open;
    return open;
}

bool CMimeMessageParserEngine::Refuse(const char* classWord, unsigned int typeId) {
    // AlertUnexpectedTypeId speaks to a receiver; the item's receiver is
    // reached through Trace.
    struct Reporter {
        CMimeMessageParserEngine& engine;
        bool TraceMessage(const int& code, const char* text) { return engine.Trace(code, text); }
    } reporter{*this};
    return AlertUnexpectedTypeId(reporter, m_text, classWord, typeId);
}

bool CMimeMessageParserEngine::RefuseLeaf(Tlv::eClass elementClass, unsigned int typeId) {
    return Refuse(ClassDisplayName(elementClass), typeId);
}

CMimeMessageParserEngine::Answer CMimeMessageParserEngine::AdditionNodeBegin(unsigned int) {
    return Answer::Refuse;
}
CMimeMessageParserEngine::Answer CMimeMessageParserEngine::AdditionNodeEnd(unsigned int) {
    return Answer::Refuse;
}
CMimeMessageParserEngine::Answer CMimeMessageParserEngine::AdditionUInt8(unsigned int,
                                                                         unsigned char) {
    return Answer::Refuse;
}
CMimeMessageParserEngine::Answer CMimeMessageParserEngine::AdditionString(unsigned int,
                                                                          const char*) {
    return Answer::Refuse;
}
CMimeMessageParserEngine::Answer CMimeMessageParserEngine::AdditionInt32(unsigned int, int) {
    return Answer::Refuse;
}

bool CMimeMessageParserEngine::Unknown(const Tlv::eClass& elementClass, const unsigned int& typeId,
                                       const void*, const unsigned int&) {
    FormatDiagnostic(m_text, kUnexpectedClassText, static_cast<int>(elementClass),
                     static_cast<int>(typeId));
    return Trace(1, m_text.c_str());
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnNodeBegin(unsigned int typeId) {
    if (typeId == TypeIdObjTypeMessage) {
        if (m_inObject) return RefuseLeaf(Tlv::Node, typeId);
        m_inObject = true;
        return true;
    }
    const Role role = RoleOf(typeId);
    if (role == RoleComponent) {
        if (!m_inObject || AnyOpen() || AdditionBlocksEntity()) {
            return RefuseLeaf(Tlv::Node, typeId);
        }
        return m_depth++ == 0 ? m_receiver.Begin(m_instance) : m_receiver.BeginEntity();
    }
    if (m_depth == 0) return RefuseLeaf(Tlv::Node, typeId);
    const unsigned int typed = InRange(role, kTypedNodeBase, kMimeTypedCount);
    bool* open = nullptr;
    if (typed < kMimeTypedCount) {
        open = &m_typed[typed].open;
        if (!*open) m_typed[typed] = Typed{false, kMimeExtensionMember, nullptr};
    } else if (role == RoleBody) {
        open = &m_bodyOpen;
        if (!*open) ResetBody();
    } else if (role == RoleTypeParam) {
        open = &m_typeParamOpen;
        if (!*open) ResetTypeParam();
    } else if (role == RoleDispParam) {
        open = &m_dispParamOpen;
        if (!*open) ResetDispParam();
    } else if (role == RoleMailbox) {
        open = &m_mailboxOpen;
        if (!*open) ResetMailbox();
    } else if (role == RoleGroup) {
        open = &m_groupOpen;
        if (!*open) {
            m_groupName = nullptr;
            ClearGroup();
        }
    } else if (role == RoleNone) {
        const Answer answer = AdditionNodeBegin(typeId);
        if (answer != Answer::Refuse) return answer == Answer::Go;
    }
    if (open == nullptr || *open) return RefuseLeaf(Tlv::Node, typeId);
    *open = true;
    return true;
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnNodeEnd(unsigned int typeId) {
    if (typeId == TypeIdObjTypeMessage) {
        if (!m_inObject || m_depth != 0) return Refuse(kNodeEndWord, typeId);
        const bool ok = m_receiver.End();
        m_inObject = false;
        return ok;
    }
    if (m_depth == 0) return Refuse(kNodeEndWord, typeId);
    const Role role = RoleOf(typeId);
    if (role == RoleComponent) {
        const bool ok = m_depth > 1 ? m_receiver.EndEntity() : true;
        --m_depth;
        return ok;
    }
    const unsigned int typed = InRange(role, kTypedNodeBase, kMimeTypedCount);
    if (typed < kMimeTypedCount && m_typed[typed].open) {
        const Typed t = m_typed[typed];
        m_typed[typed] = Typed{false, kMimeExtensionMember, nullptr};
        switch (static_cast<MimeTyped>(typed)) {
            case MimeTyped::ContentType:
                return m_receiver.ContentType(
                    static_cast<IMimeMessageAttributes::eContentType>(t.value), t.token);
            case MimeTyped::ContentSubtype:
                return m_receiver.ContentSubtype(
                    static_cast<IMimeMessageAttributes::eContentSubtype>(t.value), t.token);
            default:
                return m_receiver.ContentDispositionType(
                    static_cast<IMimeMessageAttributes::eContentDispositionType>(t.value), t.token);
        }
    }
    if (role == RoleBody && m_bodyOpen) return EndBody();
    if (role == RoleTypeParam && m_typeParamOpen) {
        const bool ok = m_receiver.ContentTypeParam(
            static_cast<IMimeMessageAttributes::eContentParamName>(m_paramName),
            static_cast<IMimeMessageAttributes::eContentParamValue>(m_paramValue), m_paramNameToken,
            m_paramValueToken);
        ResetTypeParam();
        return ok;
    }
    if (role == RoleDispParam && m_dispParamOpen) {
        const bool ok = m_receiver.ContentDispositionTypeParam(
            static_cast<IMimeMessageAttributes::eContentDispositionParamName>(m_dispParamName),
            m_dispParamValue, m_dispParamNameToken);
        ResetDispParam();
        return ok;
    }
    if (role == RoleMailbox && m_mailboxOpen) {
        bool ok = true;
        if (m_groupOpen) {
            AppendToGroup(m_mailbox);
        } else {
            ok = DeliverMailbox(m_mailbox);
        }
        ResetMailbox();
        return ok;
    }
    if (role == RoleGroup && m_groupOpen) {
        const bool ok = DeliverGroup(m_groupName);
        m_groupOpen = false;
        m_groupName = nullptr;
        ClearGroup();
        return ok;
    }
    if (role == RoleNone) {
        const Answer answer = AdditionNodeEnd(typeId);
        if (answer != Answer::Refuse) return answer == Answer::Go;
    }
    return Refuse(kNodeEndWord, typeId);
}

// Content and link together are contradictory and nothing is delivered; a
// link is described by the content-type token when one is known; otherwise
// whatever the body holds goes out with its encoding and charset.
PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::EndBody() {
    using A = IMimeMessageAttributes;
    const A::eBodyEncoding encoding = static_cast<A::eBodyEncoding>(m_bodyEncoding);
    const A::eBodyCharset charset = static_cast<A::eBodyCharset>(m_bodyCharset);
    const char* typeToken = m_typed[static_cast<unsigned>(MimeTyped::ContentType)].token;
    bool ok;
    if (m_bodyContent != nullptr && m_bodyLink != nullptr) {
        ok = Trace(3, kBodyConflictText);
    } else if (m_bodyLink != nullptr) {
        ok = typeToken != nullptr ? m_receiver.Body(typeToken, kEmptyContent, m_bodyLink)
                                  : m_receiver.Body(encoding, charset, m_bodyLink);
    } else if (m_bodyContent != nullptr) {
        ok = m_receiver.Body(encoding, charset, m_bodyContent, m_bodyLength);
    } else {
        const unsigned int none = 0;
        ok = m_receiver.Body(encoding, charset, kEmptyContent, none);
    }
    ResetBody();
    return ok;
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::DeliverText(unsigned int index,
                                                              const char* text) {
    IMimeMessageAttributes& r = m_receiver;
    switch (static_cast<MimeText>(index)) {
        case MimeText::Comments:
            return r.Comments(text);
        case MimeText::ContentDescription:
            return r.ContentDescription(text);
        case MimeText::ContentId:
            return r.ContentId(text);
        case MimeText::Folder:
            return r.Folder(text);
        case MimeText::InReplyTo:
            return r.InReplyTo(text);
        case MimeText::Instance:
            return r.Instance(text);
        case MimeText::Keywords:
            return r.Keywords(text);
        case MimeText::MessageId:
            return r.MessageId(text);
        case MimeText::MimeVersion:
            return r.MimeVersion(text);
        case MimeText::OrigDate:
            return r.OrigDate(text);
        case MimeText::SendingState:
            return r.SendingState(text);
        case MimeText::OrigDateLocal:
            return r.OrigDateLocal(text);
        case MimeText::References:
            return r.References(text);
        default:
            return r.Subject(text);
    }
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::DeliverByte(unsigned int index,
                                                              unsigned char value) {
    using A = IMimeMessageAttributes;
    A& r = m_receiver;
    switch (static_cast<MimeByte>(index)) {
        case MimeByte::AttachmentAvailable:
            return r.AttachmentAvailable(static_cast<A::eAttachmentAvailable>(value));
        case MimeByte::ContentTransferEncoding:
            return r.ContentTransferEncodingEnum(static_cast<A::eContentTransferEncoding>(value));
        case MimeByte::ReadStatus:
            return r.ReadStatus(static_cast<A::eReadStatus>(value));
        case MimeByte::DownloadState:
            return r.DownloadState(static_cast<A::eDownloadState>(value));
        default:
            return DeliverPriority(value);
    }
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnString(unsigned int typeId, const char* text) {
    if (m_depth == 0) return RefuseLeaf(Tlv::String, typeId);
    const Role role = RoleOf(typeId);
    const unsigned int textIndex = InRange(role, kTextBase, kMimeTextCount);
    if (textIndex < kMimeTextCount) return DeliverText(textIndex, text);
    const unsigned int typed = InRange(role, kTypedTokenBase, kMimeTypedCount);
    const char** slot = nullptr;
    if (typed < kMimeTypedCount) {
        if (m_typed[typed].open) slot = &m_typed[typed].token;
    } else if (role == RoleBodyLink) {
        if (m_bodyOpen) slot = &m_bodyLink;
    } else if (role == RoleParamNameToken || role == RoleParamValueToken) {
        if (m_typeParamOpen)
            slot = role == RoleParamNameToken ? &m_paramNameToken : &m_paramValueToken;
    } else if (role == RoleDispParamValue || role == RoleDispParamNameToken) {
        if (m_dispParamOpen) {
            slot = role == RoleDispParamValue ? &m_dispParamValue : &m_dispParamNameToken;
        }
    } else if (role == RoleMailboxDisplayName || role == RoleMailboxAddress) {
        if (m_mailboxOpen) {
            slot = role == RoleMailboxDisplayName ? &m_mailbox.displayName : &m_mailbox.address;
        }
    } else if (role == RoleGroupName) {
        if (m_groupOpen) slot = &m_groupName;
    } else if (role == RoleNone) {
        const Answer answer = AdditionString(typeId, text);
        if (answer != Answer::Refuse) return answer == Answer::Go;
    }
    if (slot == nullptr) return RefuseLeaf(Tlv::String, typeId);
    *slot = text;
    return true;
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnUInt8(unsigned int typeId,
                                                          unsigned char value) {
    if (m_depth == 0) return RefuseLeaf(Tlv::UInt8, typeId);
    const Role role = RoleOf(typeId);
    const unsigned int byteIndex = InRange(role, kByteBase, kMimeByteCount);
    if (byteIndex < kMimeByteCount) return DeliverByte(byteIndex, value);
    const unsigned int typed = InRange(role, kTypedValueBase, kMimeTypedCount);
    unsigned int* slot = nullptr;
    if (typed < kMimeTypedCount) {
        if (m_typed[typed].open) slot = &m_typed[typed].value;
    } else if (role == RoleBodyEncoding || role == RoleBodyCharset) {
        if (m_bodyOpen) slot = role == RoleBodyEncoding ? &m_bodyEncoding : &m_bodyCharset;
    } else if (role == RoleParamName || role == RoleParamValue) {
        if (m_typeParamOpen) slot = role == RoleParamName ? &m_paramName : &m_paramValue;
    } else if (role == RoleDispParamName) {
        if (m_dispParamOpen) slot = &m_dispParamName;
    } else if (role == RoleMailboxFieldType) {
        if (m_mailboxOpen) slot = &m_mailbox.fieldType;
    } else if (role == RoleNone) {
        const Answer answer = AdditionUInt8(typeId, value);
        if (answer != Answer::Refuse) return answer == Answer::Go;
    }
    if (slot == nullptr) return RefuseLeaf(Tlv::UInt8, typeId);
    *slot = value;
    return true;
}

bool CMimeMessageParserEngine::LeafBitfield16(const unsigned int& typeId,
                                              const unsigned short& value) {
    if (m_depth == 0 || RoleOf(typeId) != RoleCutoffState) {
        return RefuseLeaf(Tlv::Bitfield16, typeId);
    }
    return m_receiver.CutoffState(value);
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnByteStream(unsigned int typeId,
                                                               const void* data,
                                                               unsigned int length) {
    if (m_depth == 0 || RoleOf(typeId) != RoleBodyContent || !m_bodyOpen) {
        return RefuseLeaf(Tlv::ByteStream, typeId);
    }
    m_bodyContent = data;
    m_bodyLength = length;
    return true;
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnUInt32(unsigned int typeId,
                                                           unsigned int value) {
    if (typeId != TypeIdValTypeInstance || !m_inObject) return RefuseLeaf(Tlv::UInt32, typeId);
    m_instance = value;
    return true;
}

PIMTLV_WALK_INLINE bool CMimeMessageParserEngine::OnInt32(unsigned int typeId, int value) {
    const Answer answer = AdditionInt32(typeId, value);
    if (answer != Answer::Refuse) return answer == Answer::Go;
    return RefuseLeaf(Tlv::Int32, typeId);
}

bool CMimeMessageParserEngine::LeafInt8(const unsigned int& typeId, const signed char&) {
    return RefuseLeaf(Tlv::Int8, typeId);
}
bool CMimeMessageParserEngine::LeafInt16(const unsigned int& typeId, const short&) {
    return RefuseLeaf(Tlv::Int16, typeId);
}
bool CMimeMessageParserEngine::LeafUInt16(const unsigned int& typeId, const unsigned short&) {
    return RefuseLeaf(Tlv::UInt16, typeId);
}
bool CMimeMessageParserEngine::LeafBitfield8(const unsigned int& typeId, const unsigned char&) {
    return RefuseLeaf(Tlv::Bitfield8, typeId);
}

bool CMimeMessageParserEngine::NodeBegin(const unsigned int& typeId) {
    return OnNodeBegin(typeId);
}
bool CMimeMessageParserEngine::NodeEnd(const unsigned int& typeId) {
    return OnNodeEnd(typeId);
}
bool CMimeMessageParserEngine::LeafUInt8(const unsigned int& typeId, const unsigned char& value) {
    return OnUInt8(typeId, value);
}
bool CMimeMessageParserEngine::LeafString(const unsigned int& typeId, const char* text) {
    return OnString(typeId, text);
}
bool CMimeMessageParserEngine::LeafByteStream(const unsigned int& typeId, const void* data,
                                              const unsigned int& length) {
    return OnByteStream(typeId, data, length);
}
bool CMimeMessageParserEngine::LeafUInt32(const unsigned int& typeId, const unsigned int& value) {
    return OnUInt32(typeId, value);
}
bool CMimeMessageParserEngine::LeafInt32(const unsigned int& typeId, const int& value) {
    return OnInt32(typeId, value);
}

bool CMimeMessageParserEngine::Parse(const void* data, const unsigned int& length,
                                     const char*& errorText, unsigned int& consumed) {
    consumed = 0;
    if (data == nullptr) {
        errorText = "";
        return false;
    }
    ResetShared();
    ClearGroup();
    ResetAdditions();
    TWalkTarget<CMimeMessageParserEngine> direct{*this};
    if (ParseInto(direct, data, length, errorText, consumed)) return true;
    Trace(3, errorText);
    return false;
}

}  // namespace PimShared
