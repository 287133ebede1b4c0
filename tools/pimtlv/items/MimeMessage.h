#ifndef PIMTLV_TOOL_ITEMS_MIMEMESSAGE_H
#define PIMTLV_TOOL_ITEMS_MIMEMESSAGE_H

// What the adapters of e-mails and instant messages share: both are MIME
// messages whose common operations are declared once in
// IMimeMessageAttributes, so their table rows and recorder slots are written
// here once.

#include <vector>

#include "Items.h"
#include "pimshared/common/IMimeMessageAttributes.h"

namespace PimTool {

namespace mime {

using M = PimShared::IMimeMessageAttributes;

// Body and Priority are overloaded; each overload has its own operation name
// in the JSON form.
constexpr bool (M::*kBodyContent)(const M::eBodyEncoding&, const M::eBodyCharset&, const void*,
                                  const unsigned int&) = &M::Body;
constexpr bool (M::*kBodyLink)(const M::eBodyEncoding&, const M::eBodyCharset&,
                               const char*) = &M::Body;
constexpr bool (M::*kBodyTypedLink)(const char*, const char*, const char*) = &M::Body;
constexpr bool (M::*kPriorityLevel)(const unsigned char&) = &M::Priority;

}  // namespace mime

// Operations of both message items; I is the item's Attributes interface.
template <typename I>
std::vector<OpEntry> MimeCommonOps() {
    using M = mime::M;
    return {
        Op<&M::Begin, I>("Begin", "instance"),
        Op<&M::End, I>("End"),
        Op<&M::BeginEntity, I>("BeginEntity"),
        Op<&M::EndEntity, I>("EndEntity"),
        Op<&M::AttachmentAvailable, I>("AttachmentAvailable", "value"),
        Op<&M::CutoffState, I>("CutoffState", "value"),
        Op<&M::Comments, I>("Comments", "text"),
        Op<&M::ContentDescription, I>("ContentDescription", "text"),
        Op<&M::ContentId, I>("ContentId", "text"),
        Op<&M::ContentTransferEncodingEnum, I>("ContentTransferEncodingEnum", "value"),
        Op<&M::ReadStatus, I>("ReadStatus", "value"),
        Op<&M::DownloadState, I>("DownloadState", "value"),
        Op<&M::Folder, I>("Folder", "text"),
        Op<&M::InReplyTo, I>("InReplyTo", "text"),
        Op<&M::Instance, I>("Instance", "text"),
        Op<&M::Keywords, I>("Keywords", "text"),
        Op<&M::MessageId, I>("MessageId", "text"),
        Op<&M::MimeVersion, I>("MimeVersion", "text"),
        Op<&M::OrigDate, I>("OrigDate", "text"),
        Op<&M::SendingState, I>("SendingState", "text"),
        Op<&M::OrigDateLocal, I>("OrigDateLocal", "text"),
        Op<mime::kPriorityLevel, I>("PriorityLevel", "level"),
        Op<&M::References, I>("References", "text"),
        Op<&M::Subject, I>("Subject", "text"),
        Op<mime::kBodyContent, I>("Body", "encoding", "charset", "content", nullptr),
        Op<mime::kBodyLink, I>("BodyLink", "encoding", "charset", "contentLink"),
        Op<mime::kBodyTypedLink, I>("BodyTypedLink", "contentTypeToken", "contentSubtypeToken",
                                    "contentLink"),
        Op<&M::ContentDispositionType, I>("ContentDispositionType", "type", "token"),
        Op<&M::ContentDispositionTypeParam, I>("ContentDispositionTypeParam", "name", "value",
                                               "nameToken"),
        Op<&M::ContentSubtype, I>("ContentSubtype", "subtype", "token"),
        Op<&M::ContentType, I>("ContentType", "type", "token"),
        Op<&M::ContentTypeParam, I>("ContentTypeParam", "name", "value", "nameToken", "valueToken"),
    };
}

// A receiver that records the common operations; R is the item's receiver
// interface, which derives from IMimeMessageAttributes.
template <typename R>
class MimeCommonRecorder : public R {
  public:
    using M = mime::M;
    using CText = const char*;
    using R::Body;
    using R::Priority;

    explicit MimeCommonRecorder(Recorder& recorder) : m_rec(recorder) {}

    bool Begin(const unsigned int& instance) override { return m_rec.Put<&M::Begin>(instance); }
    bool End() override { return m_rec.Put<&M::End>(); }
    bool BeginEntity() override { return m_rec.Put<&M::BeginEntity>(); }
    bool EndEntity() override { return m_rec.Put<&M::EndEntity>(); }
    bool AttachmentAvailable(const typename M::eAttachmentAvailable& v) override {
        return m_rec.Put<&M::AttachmentAvailable>(v);
    }
    bool CutoffState(const unsigned short& v) override { return m_rec.Put<&M::CutoffState>(v); }
    bool Comments(CText t) override { return m_rec.Put<&M::Comments>(t); }
    bool ContentDescription(CText t) override { return m_rec.Put<&M::ContentDescription>(t); }
    bool ContentId(CText t) override { return m_rec.Put<&M::ContentId>(t); }
    bool ContentTransferEncodingEnum(const typename M::eContentTransferEncoding& v) override {
        return m_rec.Put<&M::ContentTransferEncodingEnum>(v);
    }
    bool ReadStatus(const typename M::eReadStatus& v) override {
        return m_rec.Put<&M::ReadStatus>(v);
    }
    bool DownloadState(const typename M::eDownloadState& v) override {
        return m_rec.Put<&M::DownloadState>(v);
    }
    bool Folder(CText t) override { return m_rec.Put<&M::Folder>(t); }
    bool InReplyTo(CText t) override { return m_rec.Put<&M::InReplyTo>(t); }
    bool Instance(CText t) override { return m_rec.Put<&M::Instance>(t); }
    bool Keywords(CText t) override { return m_rec.Put<&M::Keywords>(t); }
    bool MessageId(CText t) override { return m_rec.Put<&M::MessageId>(t); }
    bool MimeVersion(CText t) override { return m_rec.Put<&M::MimeVersion>(t); }
    bool OrigDate(CText t) override { return m_rec.Put<&M::OrigDate>(t); }
    bool SendingState(CText t) override { return m_rec.Put<&M::SendingState>(t); }
    bool OrigDateLocal(CText t) override { return m_rec.Put<&M::OrigDateLocal>(t); }
    bool Priority(const unsigned char& level) override {
        return m_rec.Put<mime::kPriorityLevel>(level);
    }
    bool References(CText t) override { return m_rec.Put<&M::References>(t); }
    bool Subject(CText t) override { return m_rec.Put<&M::Subject>(t); }
    bool Body(const typename M::eBodyEncoding& e, const typename M::eBodyCharset& c,
              const void* content, const unsigned int& length) override {
        return m_rec.Put<mime::kBodyContent>(e, c, content, length);
    }
    bool Body(const typename M::eBodyEncoding& e, const typename M::eBodyCharset& c,
              CText link) override {
        return m_rec.Put<mime::kBodyLink>(e, c, link);
    }
    bool Body(CText type, CText subtype, CText link) override {
        return m_rec.Put<mime::kBodyTypedLink>(type, subtype, link);
    }
    bool ContentDispositionType(const typename M::eContentDispositionType& type,
                                CText token) override {
        return m_rec.Put<&M::ContentDispositionType>(type, token);
    }
    bool ContentDispositionTypeParam(const typename M::eContentDispositionParamName& name,
                                     CText value, CText nameToken) override {
        return m_rec.Put<&M::ContentDispositionTypeParam>(name, value, nameToken);
    }
    bool ContentSubtype(const typename M::eContentSubtype& subtype, CText token) override {
        return m_rec.Put<&M::ContentSubtype>(subtype, token);
    }
    bool ContentType(const typename M::eContentType& type, CText token) override {
        return m_rec.Put<&M::ContentType>(type, token);
    }
    bool ContentTypeParam(const typename M::eContentParamName& name,
                          const typename M::eContentParamValue& value, CText nameToken,
                          CText valueToken) override {
        return m_rec.Put<&M::ContentTypeParam>(name, value, nameToken, valueToken);
    }
    bool TraceMessage(const int& code, const char* text) override {
        return m_rec.Trace(code, text);
    }

  protected:
    Recorder& m_rec;
};

// Message-family IDs name bare leaves and nodes alike, so each name holds for
// both.
#define PIMTLV_MESSAGE_NAME(c)                   \
    TypeName{c, true, kNoParent, #c}, TypeName { \
        c, false, kNoParent, #c                  \
    }

}  // namespace PimTool

#endif
