// The SMS in the tool.
#include "Items.h"
#include "pimshared/sms/SMSTypeIds.h"
#include "pimshared/sms/TLVSMSCreator.h"
#include "pimshared/sms/TLVSMSParser.h"

namespace PimTool {

namespace {

using I = PimShared::ISMSAttributes;
using CText = const char*;

std::vector<OpEntry> SmsOps() {
    return {
        Op<&I::Begin>("Begin", "instance"),
        Op<&I::End>("End"),
        Op<&I::Body>("Body", "text"),
        Op<&I::Concat>("Concat", "first", "second", "third"),
        Op<&I::Destination>("Destination", "text"),
        Op<&I::ReadStatus>("ReadStatus", "status"),
        Op<&I::DownloadState>("DownloadState", "state"),
        Op<&I::Folder>("Folder", "text"),
        Op<&I::Instance>("Instance", "text"),
        Op<&I::Originator>("Originator", "text"),
        Op<&I::OriginatorName>("OriginatorName", "part1", "part2", "part3", "part4", "part5",
                               "part6"),
        Op<&I::OriginatorFName>("OriginatorFName", "text"),
        Op<&I::DestinationFName>("DestinationFName", "text"),
        Op<&I::ServiceCenter>("ServiceCenter", "text"),
        Op<&I::SMSState>("SMSState", "state"),
        Op<&I::SMSType>("SMSType", "type"),
        Op<&I::StorageType>("StorageType", "type"),
        Op<&I::StorageIndex>("StorageIndex", "index"),
        Op<&I::SendingState>("SendingState", "text"),
        Op<&I::Subject>("Subject", "text"),
        Op<&I::Timestamp>("Timestamp", "text"),
        Op<&I::TimestampLocal>("TimestampLocal", "text"),
        Op<&I::Priority>("Priority", "priority"),
    };
}

class SmsRecorder : public PimShared::ISMSReceiver {
  public:
    explicit SmsRecorder(Recorder& recorder) : m_rec(recorder) {}

    bool Begin(const unsigned int& instance) override { return m_rec.Put<&I::Begin>(instance); }
    bool End() override { return m_rec.Put<&I::End>(); }
    bool Body(CText t) override { return m_rec.Put<&I::Body>(t); }
    bool Concat(const unsigned char& a, const unsigned char& b, const unsigned char& c) override {
        return m_rec.Put<&I::Concat>(a, b, c);
    }
    bool Destination(CText t) override { return m_rec.Put<&I::Destination>(t); }
    bool ReadStatus(const eReadStatus& v) override { return m_rec.Put<&I::ReadStatus>(v); }
    bool DownloadState(const eDownloadState& v) override { return m_rec.Put<&I::DownloadState>(v); }
    bool Folder(CText t) override { return m_rec.Put<&I::Folder>(t); }
    bool Instance(CText t) override { return m_rec.Put<&I::Instance>(t); }
    bool Originator(CText t) override { return m_rec.Put<&I::Originator>(t); }
    bool OriginatorName(CText a, CText b, CText c, CText d, CText e, CText f) override {
        return m_rec.Put<&I::OriginatorName>(a, b, c, d, e, f);
    }
    bool OriginatorFName(CText t) override { return m_rec.Put<&I::OriginatorFName>(t); }
    bool DestinationFName(CText t) override { return m_rec.Put<&I::DestinationFName>(t); }
    bool ServiceCenter(CText t) override { return m_rec.Put<&I::ServiceCenter>(t); }
    bool SMSState(const eSMSState& v) override { return m_rec.Put<&I::SMSState>(v); }
    bool SMSType(const eSMSType& v) override { return m_rec.Put<&I::SMSType>(v); }
    bool StorageType(const eStorageType& v) override { return m_rec.Put<&I::StorageType>(v); }
    bool StorageIndex(const unsigned short& v) override { return m_rec.Put<&I::StorageIndex>(v); }
    bool SendingState(CText t) override { return m_rec.Put<&I::SendingState>(t); }
    bool Subject(CText t) override { return m_rec.Put<&I::Subject>(t); }
    bool Timestamp(CText t) override { return m_rec.Put<&I::Timestamp>(t); }
    bool TimestampLocal(CText t) override { return m_rec.Put<&I::TimestampLocal>(t); }
    bool Priority(const ePriority& v) override { return m_rec.Put<&I::Priority>(v); }
    bool TraceMessage(const int& code, const char* text) override {
        return m_rec.Trace(code, text);
    }

  private:
    Recorder& m_rec;
};

std::vector<TypeName> SmsNames() {
    using namespace PimShared::SMSTypeIds;
#define NODE(c)                \
    TypeName {                 \
        c, true, kNoParent, #c \
    }
#define LEAF(c)                 \
    TypeName {                  \
        c, false, kNoParent, #c \
    }
    return {
        NODE(TypeIdCompTypeSMS),
        NODE(TypeIdPropTypeConcat),
        LEAF(TypeIdValTypeSMSState),
        LEAF(TypeIdValTypeSMSType),
        LEAF(TypeIdValTypeTimestamp),
        LEAF(TypeIdValTypeTimestampLocal),
        LEAF(TypeIdValTypeStorageType),
        LEAF(TypeIdValTypeStorageIndex),
        LEAF(TypeIdValTypeSubject),
        LEAF(TypeIdValTypeServiceCenter),
        LEAF(TypeIdValTypeOriginator),
        LEAF(TypeIdValTypeDestination),
        LEAF(TypeIdValTypeOriginatorFName),
        LEAF(TypeIdValTypeDestinationFName),
        LEAF(TypeIdValTypeReadStatus),
        LEAF(TypeIdValTypeDownloadState),
        LEAF(TypeIdValTypeConcat1),
        LEAF(TypeIdValTypeConcat2),
        LEAF(TypeIdValTypeConcat3),
        LEAF(TypeIdValTypeBody),
        LEAF(TypeIdValTypeSendingState),
        LEAF(TypeIdValTypeFolder),
        LEAF(TypeIdValTypeInstanceName),
        LEAF(TypeIdValTypeMessagePriority),
        LEAF(TypeIdValTypeNamePart1),
        LEAF(TypeIdValTypeNamePart2),
        LEAF(TypeIdValTypeNamePart3),
        LEAF(TypeIdValTypeNamePart4),
        LEAF(TypeIdValTypeNamePart5),
    };
#undef NODE
#undef LEAF
}

}  // namespace

const ItemAdapter kSmsItem = {
    "sms",
    SmsNames(),
    SmsOps(),
    &DecodeWith<PimShared::CTLVSMSParser, SmsRecorder>,
    &EncodeWith<I, PimShared::CTLVSMSCreator>,
    "OriginatorName comes back as one call per name part; its first part and empty parts are "
    "not carried, and OriginatorFName and DestinationFName refuse empty texts.",
};

}  // namespace PimTool
