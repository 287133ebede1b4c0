#ifndef PIMTLV_DOC_CALLLISTWRITER_H
#define PIMTLV_DOC_CALLLISTWRITER_H

// The library only reads call lists; documents of call lists are written
// back with this, in the layout the call-list parser reads, so that test
// streams can be made.

#include "parsercreatorcollection/src/tlv/creator/TLVCreator.h"
#include "pimshared/callstack/CallstackTypeIds.h"
#include "pimshared/callstack/ICallstackReceiver.h"

namespace PimDoc {

// Writes the receiver's calls back as the stream the parser reads: Begin
// opens node 5 with its instance leaf and the entry node of the kind, each
// property is one leaf, End closes both nodes.
class CCallListWriter : public PimShared::ICallstackReceiver {
  public:
    bool Begin(const unsigned int& kind, const unsigned int& instance) override {
        if (kind != 1 && kind != 2) return false;
        m_entry = kind == 1 ? PimShared::CallstackTypeIds::TypeIdCompTypeCallEntry1
                            : PimShared::CallstackTypeIds::TypeIdCompTypeCallEntry2;
        return m_tlv.NodeBegin(PimShared::CallstackTypeIds::TypeIdObjTypeCallList) &&
               m_tlv.LeafUInt32(PimShared::CallstackTypeIds::TypeIdValTypeInstance, instance) &&
               m_tlv.NodeBegin(m_entry);
    }
    bool End() override {
        return m_tlv.NodeEnd(m_entry) &&
               m_tlv.NodeEnd(PimShared::CallstackTypeIds::TypeIdObjTypeCallList);
    }
    bool CallByte(const unsigned char& v) override {
        return m_tlv.LeafUInt8(PimShared::CallstackTypeIds::TypeIdPropTypeCallByte, v);
    }
    bool CallText1(const char* t) override {
        return m_tlv.LeafString(PimShared::CallstackTypeIds::TypeIdPropTypeCallText1, t);
    }
    bool CallText2(const char* t) override {
        return m_tlv.LeafString(PimShared::CallstackTypeIds::TypeIdPropTypeCallText2, t);
    }
    bool CallText3(const char* t) override {
        return m_tlv.LeafString(PimShared::CallstackTypeIds::TypeIdPropTypeCallText3, t);
    }
    bool CallText4(const char* t) override {
        return m_tlv.LeafString(PimShared::CallstackTypeIds::TypeIdPropTypeCallText4, t);
    }
    bool CallText5(const char* t) override {
        return m_tlv.LeafString(PimShared::CallstackTypeIds::TypeIdPropTypeCallText5, t);
    }
    bool CallFlag(const bool& v) override {
        const unsigned char byte = v ? 1 : 0;
        return m_tlv.LeafUInt8(PimShared::CallstackTypeIds::TypeIdPropTypeCallFlag, byte);
    }
    bool TraceMessage(const int&, const char*) override { return true; }
    bool GetData(const void*& data, unsigned int& length) { return m_tlv.GetData(data, length); }

  private:
    ParserCreatorCollection::CTLVCreator m_tlv;
    unsigned int m_entry = PimShared::CallstackTypeIds::TypeIdCompTypeCallEntry1;
};

}  // namespace PimDoc

#endif
