// The call list in the tool. The library only reads call lists; the tool
// writes the layout its parser reads, so that test streams can be made.
#include "Items.h"
#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "pimshared/callstack/CallstackTypeIds.h"
#include "pimshared/callstack/TLVCallstackParser.h"

namespace PimTool {

namespace {

using R = PimShared::ICallstackReceiver;
using namespace PimShared::CallstackTypeIds;

std::vector<OpEntry> CallListOps() {
    return {
        Op<&R::Begin>("Begin", "kind", "instance"), Op<&R::End>("End"),
        Op<&R::CallByte>("CallByte", "value"),      Op<&R::CallText1>("CallText1", "text"),
        Op<&R::CallText2>("CallText2", "text"),     Op<&R::CallText3>("CallText3", "text"),
        Op<&R::CallText4>("CallText4", "text"),     Op<&R::CallText5>("CallText5", "text"),
        Op<&R::CallFlag>("CallFlag", "value"),
    };
}

class CallListRecorder : public R {
  public:
    explicit CallListRecorder(Recorder& recorder) : m_rec(recorder) {}

    bool Begin(const unsigned int& kind, const unsigned int& instance) override {
        return m_rec.Put<&R::Begin>(kind, instance);
    }
    bool End() override { return m_rec.Put<&R::End>(); }
    bool CallByte(const unsigned char& v) override { return m_rec.Put<&R::CallByte>(v); }
    bool CallText1(const char* t) override { return m_rec.Put<&R::CallText1>(t); }
    bool CallText2(const char* t) override { return m_rec.Put<&R::CallText2>(t); }
    bool CallText3(const char* t) override { return m_rec.Put<&R::CallText3>(t); }
    bool CallText4(const char* t) override { return m_rec.Put<&R::CallText4>(t); }
    bool CallText5(const char* t) override { return m_rec.Put<&R::CallText5>(t); }
    bool CallFlag(const bool& v) override { return m_rec.Put<&R::CallFlag>(v); }
    bool TraceMessage(const int& code, const char* text) override {
        return m_rec.Trace(code, text);
    }

  private:
    Recorder& m_rec;
};

// Writes the receiver's calls back as the stream the parser reads: Begin
// opens node 5 with its instance leaf and the entry node of the kind, each
// property is one leaf, End closes both nodes.
class CallListWriter : public R {
  public:
    bool Begin(const unsigned int& kind, const unsigned int& instance) override {
        if (kind != 1 && kind != 2) return false;
        m_entry = kind == 1 ? TypeIdCompTypeCallEntry1 : TypeIdCompTypeCallEntry2;
        return m_tlv.NodeBegin(TypeIdObjTypeCallList) &&
               m_tlv.LeafUInt32(TypeIdValTypeInstance, instance) && m_tlv.NodeBegin(m_entry);
    }
    bool End() override { return m_tlv.NodeEnd(m_entry) && m_tlv.NodeEnd(TypeIdObjTypeCallList); }
    bool CallByte(const unsigned char& v) override {
        return m_tlv.LeafUInt8(TypeIdPropTypeCallByte, v);
    }
    bool CallText1(const char* t) override { return m_tlv.LeafString(TypeIdPropTypeCallText1, t); }
    bool CallText2(const char* t) override { return m_tlv.LeafString(TypeIdPropTypeCallText2, t); }
    bool CallText3(const char* t) override { return m_tlv.LeafString(TypeIdPropTypeCallText3, t); }
    bool CallText4(const char* t) override { return m_tlv.LeafString(TypeIdPropTypeCallText4, t); }
    bool CallText5(const char* t) override { return m_tlv.LeafString(TypeIdPropTypeCallText5, t); }
    bool CallFlag(const bool& v) override {
        const unsigned char byte = v ? 1 : 0;
        return m_tlv.LeafUInt8(TypeIdPropTypeCallFlag, byte);
    }
    bool TraceMessage(const int&, const char*) override { return true; }
    bool GetData(const void*& data, unsigned int& length) { return m_tlv.GetData(data, length); }

  private:
    ParserCreatorCollection::CTLVCreator m_tlv;
    unsigned int m_entry = TypeIdCompTypeCallEntry1;
};

std::vector<TypeName> CallListNames() {
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdCompTypeCallEntry1), NODE(TypeIdCompTypeCallEntry2),
        LEAF(TypeIdPropTypeCallByte),   LEAF(TypeIdPropTypeCallText1),
        LEAF(TypeIdPropTypeCallText2),  LEAF(TypeIdPropTypeCallText3),
        LEAF(TypeIdPropTypeCallText4),  LEAF(TypeIdPropTypeCallText5),
        LEAF(TypeIdPropTypeCallFlag),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kCallListItem = {
    "calllist",
    CallListNames(),
    CallListOps(),
    &DecodeWith<PimShared::CTLVCallstackParser, CallListRecorder>,
    &EncodeWith<R, CallListWriter>,
    "written by the tool, not the library (which only reads call lists); an entry whose "
    "instance leaf is missing or comes after it is written back with its instance first.",
};

}  // namespace PimTool
