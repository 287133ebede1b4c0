#include "pimshared/contact/TLVContactParser.h"
#include "pimshared/common/ParserFrame.h"

#include <new>
#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "pimshared/contact/ContactLayout.h"

namespace PimShared {

using ParserCreatorCollection::eClass;
using namespace ContactLayout;

class CTLVContactParser::CTLVContactParserImpl final : public ParserCreatorCollection::ITLV,
                                                       public ParserCreatorCollection::CTLVParser {
  public:
    explicit CTLVContactParserImpl(IContactReceiver& receiver)
        : CTLVParser(static_cast<ITLV&>(*this)), m_receiver(receiver) {}
    ~CTLVContactParserImpl() override = default;
    CTLVContactParserImpl(const CTLVContactParserImpl&) = delete;
    CTLVContactParserImpl& operator=(const CTLVContactParserImpl&) = delete;

    bool Parse(const void* data, const unsigned int& length, const char*& errorText,
               unsigned int& consumed) override {
        consumed = 0;
        for (unsigned int i = 0; i < PropertyCount; ++i) {
            if ((m_written >> i) & 1u) ResetStore(i, true);
        }
        m_pendingXParamName = nullptr;
        if (data == nullptr) {
            errorText = m_emptyText;
            return false;
        }
        m_parsingState = ParsingStateBegin;
        m_currentProperty = TypeIdNone;
        m_currentIndex = PropertyCount;
        m_instanceSeen = false;
        m_skip = false;
        if (!ParseInto(*this, data, length, errorText, consumed)) {
            const int code = 6;
            m_receiver.TraceMessage(code, errorText);
            return false;
        }
        return true;
    }

    // The element class of an undefined element says nothing about contacts.
    bool Unknown(const eClass&, const unsigned int&, const void*, const unsigned int&) override {
        return true;
    }

    bool NodeBegin(const unsigned int& typeId) override {
        switch (m_parsingState) {
            case ParsingStateBegin:
                if (typeId != TypeIdObjTypeContact) return Report(1);
                m_instanceSeen = false;
                m_skip = false;
                m_parsingState = ParsingStateContactContext;
                return true;
            case ParsingStateContactContext: {
                bool known = false;
                if (isContactPropertyType(typeId, known)) {
                    m_pendingXParamName = nullptr;
                    m_currentProperty = typeId;
                    m_currentIndex = IndexOfNode(typeId);
                    m_parsingState = ParsingStatePropertyContext;
                    return true;
                }
                if (!known) return Report(2);
                m_skip = true;
                m_currentProperty = typeId;
                m_currentIndex = IndexOfNode(typeId);
                m_parsingState = ParsingStatePropertyContext;
                return Report(4);
            }
            case ParsingStatePropertyContext:
                return Report(2);
            default:
                return Report(6);
        }
    }

    bool NodeEnd(const unsigned int& typeId) override {
        if (m_parsingState == ParsingStateContactContext && typeId == TypeIdObjTypeContact) {
            m_receiver.End();
            m_parsingState = ParsingStateBegin;
            return true;
        }
        if (m_parsingState == ParsingStatePropertyContext && typeId == m_currentProperty) {
            if (m_skip) {
                m_skip = false;
            } else {
                callPropertyCallbackAndResetDataMemebr(typeId);
            }
            m_currentProperty = TypeIdNone;
            m_currentIndex = PropertyCount;
            m_parsingState = ParsingStateContactContext;
            return true;
        }
        return Report(6);
    }

    bool LeafInt8(const unsigned int& typeId, const signed char& value) override {
        return LeafNode(ParserCreatorCollection::Int8, typeId, Number(value));
    }
    bool LeafInt16(const unsigned int& typeId, const short& value) override {
        return LeafNode(ParserCreatorCollection::Int16, typeId, Number(value));
    }
    bool LeafUInt8(const unsigned int& typeId, const unsigned char& value) override {
        return LeafNode(ParserCreatorCollection::UInt8, typeId, Number(value));
    }
    bool LeafUInt16(const unsigned int& typeId, const unsigned short& value) override {
        return LeafNode(ParserCreatorCollection::UInt16, typeId, Number(value));
    }
    bool LeafBitfield8(const unsigned int& typeId, const unsigned char& value) override {
        return LeafNode(ParserCreatorCollection::Bitfield8, typeId, Number(value));
    }
    bool LeafBitfield16(const unsigned int& typeId, const unsigned short& value) override {
        return LeafNode(ParserCreatorCollection::Bitfield16, typeId, Number(value));
    }
    bool LeafString(const unsigned int& typeId, const char* text) override {
        uTlvValue value;
        value.text = text;
        return LeafNode(ParserCreatorCollection::String, typeId, value);
    }
    bool LeafByteStream(const unsigned int& typeId, const void* data,
                        const unsigned int& length) override {
        uTlvValue value;
        value.bytes.data = data;
        value.bytes.length = length;
        return LeafNode(ParserCreatorCollection::ByteStream, typeId, value);
    }
    bool LeafUInt32(const unsigned int& typeId, const unsigned int& value) override {
        return LeafNode(ParserCreatorCollection::UInt32, typeId, Number(value));
    }
    bool LeafInt32(const unsigned int& typeId, const int& value) override {
        return LeafNode(ParserCreatorCollection::Int32, typeId, Number(value));
    }

  private:
    static constexpr unsigned int ParsingStateBegin = 0;
    static constexpr unsigned int ParsingStateContactContext = 1;
    static constexpr unsigned int ParsingStatePropertyContext = 2;

    // A leaf's value as it came. Numbers of every class are kept widened to
    // 32 bits (signed ones sign-extended), so a store reads the low 8 or 16
    // bits whatever class the stream used.
    union uTlvValue {
        unsigned int number;
        const char* text;
        struct {
            const void* data;
            unsigned int length;
        } bytes;
    };
    template <typename T>
    static uTlvValue Number(T value) {
        uTlvValue v;
        v.number = static_cast<unsigned int>(static_cast<long long>(value));
        return v;
    }
    // Leaves are taken by type ID alone. A store still never reads a pointer
    // out of a number: a text or data ID arriving with a numeric class
    // yields null, and a number ID arriving as text or bytes yields 0.
    static bool IsPointerClass(eClass c) {
        return c == ParserCreatorCollection::String || c == ParserCreatorCollection::ByteStream;
    }
    static const char* TextOf(eClass c, const uTlvValue& v) {
        return c == ParserCreatorCollection::String ? v.text : nullptr;
    }
    static unsigned int NumberOf(eClass c, const uTlvValue& v) {
        return IsPointerClass(c) ? 0 : v.number;
    }

    struct tSlot {
        const char* text;
        const void* data;
        unsigned int length;
        unsigned short u16;
        unsigned char u8;
        bool flag;
    };
    // One group per property, columns in the order of the row's values.
    struct tPropertyStore {
        tSlot slots[MaxValues];
        PAL::TVector<const char*> list;
        PAL::TVector<IContactAttributes::tXParam> xParams;
    };

    // The one way this parser reports: a numeric code, and the empty text.
    bool Report(int code) { return m_receiver.TraceMessage(code, m_emptyText); }

    static bool isContactPropertyType(unsigned int typeId, bool& known) {
        const unsigned int index = IndexOfNode(typeId);
        if (index == PropertyCount) {
            known = false;
            return false;
        }
        const eAcceptance acceptance = Row(static_cast<eProperty>(index)).acceptance;
        known = acceptance == eAcceptance::Skipped;
        return acceptance == eAcceptance::Accepted;
    }

    bool LeafNode(eClass elementClass, unsigned int typeId, const uTlvValue& value) {
        switch (m_parsingState) {
            case ParsingStateBegin:
                return Report(2);
            case ParsingStateContactContext:
                if (typeId != TypeIdValTypeInstance) return Report(2);
                if (m_instanceSeen) return Report(3);
                m_instanceSeen = true;
                m_receiver.Begin(NumberOf(elementClass, value));
                return true;
            case ParsingStatePropertyContext:
                // Problems met while storing are reported, but never stop the walk.
                if (!m_skip) storePropertyValue(elementClass, typeId, value);
                return true;
            default:
                return Report(6);
        }
    }

    void storePropertyValue(eClass elementClass, unsigned int typeId, const uTlvValue& value) {
        const unsigned int index = m_currentIndex;
        if (index == PropertyCount) {
            Report(6);
            return;
        }
        const tProperty& row = Row(static_cast<eProperty>(index));
        if (row.store == eStorePolicy::NoStore) {
            Report(6);
            return;
        }
        tPropertyStore& store = m_store[index];
        m_written |= 1ull << index;
        if (row.xParams && typeId == TypeIdValTypeXparamName) {
            handleXParamName(TextOf(elementClass, value));
            return;
        }
        if (row.xParams && typeId == TypeIdValTypeXparamValue) {
            handleXParamValue(store, TextOf(elementClass, value));
            return;
        }
        for (unsigned int c = 0, n = ColumnCount(row); c < n; ++c) {
            if (row.values[c].id != typeId) continue;
            tSlot& slot = store.slots[c];
            switch (row.values[c].kind) {
                case eValueKind::Text:
                    slot.text = TextOf(elementClass, value);
                    break;
                case eValueKind::TextList:
                    // A list entry that is not a text is dropped rather than
                    // handed on as a null.
                    if (elementClass == ParserCreatorCollection::String) {
                        store.list.pushBack(value.text);
                    }
                    break;
                case eValueKind::Data:
                    slot.data = elementClass == ParserCreatorCollection::ByteStream
                                    ? value.bytes.data
                                    : nullptr;
                    slot.length = elementClass == ParserCreatorCollection::ByteStream
                                      ? value.bytes.length
                                      : 0;
                    break;
                case eValueKind::UInt8:
                    slot.u8 = static_cast<unsigned char>(NumberOf(elementClass, value) & 0xFFu);
                    break;
                case eValueKind::UInt16:
                    slot.u16 = static_cast<unsigned short>(NumberOf(elementClass, value) & 0xFFFFu);
                    break;
                case eValueKind::Flag:
                    slot.flag = (NumberOf(elementClass, value) & 0xFFu) != 0;
                    break;
            }
            return;
        }
        if (row.store == eStorePolicy::Report) handleUnexpectedPropValueId();
    }

    void handleXParamName(const char* name) { m_pendingXParamName = name; }

    void handleXParamValue(tPropertyStore& store, const char* text) {
        if (m_pendingXParamName == nullptr) {
            Report(6);
            return;
        }
        store.xParams.pushBack({m_pendingXParamName, text != nullptr ? text : m_emptyText});
        m_pendingXParamName = nullptr;
    }

    void handleUnexpectedPropValueId() { Report(2); }

    // Clears one property's values. The XUCI numbers survive their callback
    // (only a new parse clears them); readers have relied on that.
    void ResetStore(unsigned int index, bool everything) {
        tPropertyStore& store = m_store[index];
        const bool keepNumbers = !everything && Row(static_cast<eProperty>(index)).store ==
                                                    eStorePolicy::DropQuietlyKeepNumbers;
        for (tSlot& slot : store.slots) {
            slot.text = nullptr;
            slot.data = nullptr;
            slot.length = 0;
            if (!keepNumbers) {
                slot.u16 = 0;
                slot.u8 = 0;
                slot.flag = false;
            }
        }
        store.list.clear();
        store.xParams.clear();
        if (!keepNumbers) m_written &= ~(1ull << index);
    }

    bool callPropertyCallbackAndResetDataMemebr(unsigned int typeId) {
        const unsigned int index = IndexOfNode(typeId);
        if (index == PropertyCount) return Report(6);
        const bool answer = CallReceiver(static_cast<eProperty>(index), m_store[index]);
        ResetStore(index, false);
        return answer;
    }

    // The property's receiver operation with its stored columns.
    bool CallReceiver(eProperty property, tPropertyStore& s) {
        IContactReceiver& r = m_receiver;
        const tSlot* v = s.slots;
        switch (property) {
            case ContactLayout::FormattedName:
                return r.FormattedName(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Name:
                return r.Name(v[0].text, v[1].text, v[2].text, v[3].text, v[4].text, v[5].text,
                              s.xParams);
            case ContactLayout::Nickname:
                return r.Nickname(s.list, v[1].text, s.xParams);
            case ContactLayout::Photo:
                return r.Photo(v[0].text, v[1].text, v[2].data, v[2].length, v[3].text);
            case ContactLayout::Birthday:
                return r.Birthday(v[0].text, v[1].text);
            case ContactLayout::Address:
                return r.Address(v[0].text, v[1].text, v[2].text, v[3].text, v[4].text, v[5].text,
                                 v[6].text, v[7].u8, v[8].text, s.xParams);
            case ContactLayout::Label:
                return r.Label(v[0].text, v[1].u8, v[2].text, s.xParams);
            case ContactLayout::Telephone:
                return r.Telephone(v[0].text, v[1].u16, v[2].u8, v[3].u16, v[4].text, s.xParams);
            case ContactLayout::Email:
                return r.Email(v[0].text, v[1].u8);
            case ContactLayout::Mailer:
                return r.Mailer(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Timezone:
                return r.Timezone(v[0].text, v[1].text);
            case ContactLayout::GeographicPosition:
                return r.GeographicPosition(v[0].text, v[1].text);
            case ContactLayout::Title:
                return r.Title(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Role:
                return r.Role(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Logo:
                return r.Logo(v[0].text, v[1].text, v[2].data, v[2].length, v[3].text);
            case ContactLayout::Agent:
                return r.Agent(v[0].text, v[1].text);
            case ContactLayout::Organization:
                return r.Organization(v[0].text, s.list);
            case ContactLayout::Categories:
                return r.Categories(s.list, v[1].text, s.xParams);
            case ContactLayout::Note:
                return r.Note(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Revision:
                return r.Revision(v[0].text, v[1].text);
            case ContactLayout::SortString:
                return r.SortString(v[0].text, v[1].text, s.xParams);
            case ContactLayout::Sound:
                return r.Sound(v[0].text, v[1].text, v[2].data, v[2].length, v[3].text, v[4].text,
                               v[5].text, v[6].text, v[7].text, v[8].text, v[9].text);
            case ContactLayout::UID:
                return r.UID(v[0].text);
            case ContactLayout::SpeedDial:
                return r.SpeedDial(v[0].text);
            case ContactLayout::XUID:
                return r.XUID(v[0].text);
            case ContactLayout::XUCI:
                return r.XUCI(v[0].text, static_cast<int>(v[1].u16), v[2].u16);
            case ContactLayout::Handle:
                return r.Handle(v[0].text);
            case ContactLayout::URL:
                return r.URL(v[0].text);
            case ContactLayout::Version:
                return r.Version(v[0].text);
            case ContactLayout::Classification:
                return r.Classification(v[0].text);
            case ContactLayout::ProdID:
                return r.ProdID(v[0].text);
            case ContactLayout::Key:
                return r.Key(v[0].text, v[1].text, v[2].data, v[2].length);
            case ContactLayout::PhotoAvailability:
                return r.PhotoAvailability(v[0].flag);
            case ContactLayout::NonStandardProperty:
                return r.NonStandardProperty(v[0].text, v[1].text, v[2].data, v[2].length,
                                             s.xParams);
            case ContactLayout::PropertyCount:
                break;
        }
        return Report(6);
    }

    IContactReceiver& m_receiver;
    unsigned int m_parsingState = ParsingStateBegin;
    unsigned int m_currentProperty = TypeIdNone;
    unsigned int m_currentIndex = PropertyCount;  // the current property's row, looked up once
    const char* m_pendingXParamName = nullptr;
    bool m_instanceSeen = false;
    bool m_skip = false;
    char m_emptyText[1] = {0};
    tPropertyStore m_store[PropertyCount] = {};
    // Stores holding anything since their last reset: a parse starts by
    // emptying only those, not the whole store.
    unsigned long long m_written = 0;
    static_assert(PropertyCount <= 64, "one bit per property store");
};

CTLVContactParser::CTLVContactParser(IContactReceiver& receiver)
    : m_impl(new (std::nothrow) CTLVContactParserImpl(receiver)) {}

CTLVContactParser::~CTLVContactParser() = default;

bool CTLVContactParser::Parse(const void* data, const unsigned int& length, const char*& errorText,
                              unsigned int& consumed) {
    return ForwardParse(m_impl.get(), data, length, errorText, consumed);
}

const ParserCreatorCollection::TLVError& CTLVContactParser::LastError() const noexcept {
    return ForwardLastError(m_impl.get());
}

}  // namespace PimShared
