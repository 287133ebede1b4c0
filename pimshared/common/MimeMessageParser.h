#ifndef PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEPARSER_H
#define PIMTLV_PIMSHARED_COMMON_MIMEMESSAGEPARSER_H

#include "parsercreatorcollection/src/tlv/parser/ITLV.h"
#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/common/IMimeMessageAttributes.h"
#include "pimshared/common/MimeMessageIds.h"
#include "pimshared/common/WalkTarget.h"
#include "platform/CString.h"

namespace PimShared {

// The reader of a MIME message item (e-mail, instant message), driven by the
// item's ID table. It keeps no parse states: one flag for the object node, a
// depth counter for the component nodes (the message at depth 1, entities
// below), and one independent open flag per structured node, so a content
// type inside a body is fine. Bare leaves reach the receiver at once;
// structured nodes collect their leaves and reach it when they close. Every
// element refused in its place is reported with code 2 and changes nothing.
//
// An item derives from this, wires its receiver's operations that are not
// shared (mailbox, group, priority, diagnostics) and may add elements through
// the Addition hooks, which see every element the shared table does not know.
class CMimeMessageParserEngine : public ParserCreatorCollection::ITLV,
                                 public ParserCreatorCollection::CTLVParser {
  public:
    CMimeMessageParserEngine(IMimeMessageAttributes& receiver, const MimeMessageIds& ids);
    ~CMimeMessageParserEngine() override;
    CMimeMessageParserEngine(const CMimeMessageParserEngine&) = delete;
    CMimeMessageParserEngine& operator=(const CMimeMessageParserEngine&) = delete;

    // False with an empty errorText and no receiver call for null data; a
    // broken stream is reported with code 3 and the walk's text.
    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed) override;
    bool Unknown(const ParserCreatorCollection::eClass& elementClass, const unsigned int& typeId,
                 const void* value, const unsigned int& length) final;
    bool NodeBegin(const unsigned int& typeId) final;
    bool NodeEnd(const unsigned int& typeId) final;
    bool LeafInt8(const unsigned int& typeId, const signed char& value) final;
    bool LeafInt16(const unsigned int& typeId, const short& value) final;
    bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) final;
    bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) final;
    bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) final;
    bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) final;
    bool LeafString(const unsigned int& typeId, const char* text) final;
    bool LeafByteStream(const unsigned int& typeId, const void* data,
                        const unsigned int& length) final;
    bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) final;
    bool LeafInt32(const unsigned int& typeId, const int& value) final;

  protected:
    // A mailbox as read. The client is used only by items whose mailboxes
    // carry one; it is TypeIdNone until such an item stores it.
    struct MailboxFields {
        unsigned int fieldType;
        unsigned int client;
        const char* displayName;
        const char* address;
    };

    // What an addition hook made of an element: not its element (the engine
    // refuses it), or handled, with the answer for the walk.
    enum class Answer : unsigned char { Refuse, Go, Stop };
    static Answer AnswerOf(bool ok) noexcept { return ok ? Answer::Go : Answer::Stop; }

    // The item's receiver operations that the shared interface does not have.
    virtual bool Trace(int code, const char* text) = 0;
    virtual bool DeliverPriority(unsigned int priority) = 0;
    virtual bool DeliverMailbox(const MailboxFields& mailbox) = 0;
    virtual bool DeliverGroup(const char* name) = 0;
    // The group's list of mailboxes, which has the item's record type. An
    // append that runs out of memory is dropped silently: the group still
    // reaches the receiver with what it has.
    virtual void AppendToGroup(const MailboxFields& mailbox) = 0;
    virtual void ClearGroup() = 0;

    // Additions of an item. Defaults: nothing added.
    virtual void ResetAdditions() {}
    // True while an added structured node is open that must not hold an entity.
    virtual bool AdditionBlocksEntity() const { return false; }
    // Node, UInt8 and String hooks are called only inside the message (depth
    // > 0), for IDs that have no role in the table; outside the message such
    // elements are refused without asking.
    virtual Answer AdditionNodeBegin(unsigned int typeId);
    virtual Answer AdditionNodeEnd(unsigned int typeId);
    virtual Answer AdditionUInt8(unsigned int typeId, unsigned char value);
    virtual Answer AdditionString(unsigned int typeId, const char* text);
    // Called for every Int32 leaf, wherever it stands.
    virtual Answer AdditionInt32(unsigned int typeId, int value);

    bool InObject() const noexcept { return m_inObject; }
    unsigned int EntityDepth() const noexcept { return m_depth; }
    bool MailboxOpen() const noexcept { return m_mailboxOpen; }
    MailboxFields& CurrentMailbox() noexcept { return m_mailbox; }

    // Reports an element refused in its place (code 2); returns the answer.
    bool Refuse(const char* classWord, unsigned int typeId);

  private:
    friend struct TWalkTarget<CMimeMessageParserEngine>;
    // The element calls themselves, by value: the walk binds them statically
    // through its target and the ITLV overrides forward to them.
    static constexpr unsigned int kWalkInlined =
        kWalkInlinesUInt8 | kWalkInlinesByteStream | kWalkInlinesUInt32 | kWalkInlinesInt32;
    bool OnNodeBegin(unsigned int typeId);
    bool OnNodeEnd(unsigned int typeId);
    bool OnUInt8(unsigned int typeId, unsigned char value);
    bool OnString(unsigned int typeId, const char* text);
    bool OnByteStream(unsigned int typeId, const void* data, unsigned int length);
    bool OnUInt32(unsigned int typeId, unsigned int value);
    bool OnInt32(unsigned int typeId, int value);

    enum Role : unsigned char;
    Role RoleOf(unsigned int typeId) const noexcept;
    void ResetShared() noexcept;
    void ResetBody() noexcept;
    void ResetMailbox() noexcept;
    void ResetTypeParam() noexcept;
    void ResetDispParam() noexcept;
    bool AnyOpen() const noexcept;
    bool RefuseLeaf(ParserCreatorCollection::eClass elementClass, unsigned int typeId);
    bool DeliverText(unsigned int index, const char* text);
    bool DeliverByte(unsigned int index, unsigned char value);
    bool EndBody();

    struct Typed {
        bool open;
        unsigned int value;
        const char* token;
    };

    IMimeMessageAttributes& m_receiver;
    unsigned char m_roles[0x1000];  // the role of each 12-bit type ID in this item
    PAL::CString m_text;            // every diagnostic is formatted here

    bool m_inObject = false;
    unsigned int m_depth = 0;
    unsigned int m_instance = 0;

    bool m_bodyOpen = false;
    unsigned int m_bodyEncoding = 1;
    unsigned int m_bodyCharset = 1;
    const void* m_bodyContent = nullptr;
    unsigned int m_bodyLength = 0;
    const char* m_bodyLink = nullptr;

    Typed m_typed[kMimeTypedCount] = {};

    bool m_typeParamOpen = false;
    unsigned int m_paramName = 1;
    unsigned int m_paramValue = 1;
    const char* m_paramNameToken = nullptr;
    const char* m_paramValueToken = nullptr;

    bool m_dispParamOpen = false;
    unsigned int m_dispParamName = 1;
    const char* m_dispParamValue = nullptr;
    const char* m_dispParamNameToken = nullptr;

    bool m_mailboxOpen = false;
    MailboxFields m_mailbox = {};

    bool m_groupOpen = false;
    const char* m_groupName = nullptr;
};

}  // namespace PimShared

#endif
