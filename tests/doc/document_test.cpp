// The document library against the tool (same documents for every sample),
// its round trips, the documents it refuses and malformed streams.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ToolRun.h"
#include "doc/DocumentJson.h"

namespace {

using PimDoc::Json;

const std::vector<std::string> kItems = {"event", "task", "note", "contact",
                                         "email", "im",   "sms",  "calllist"};

std::string Sample(const std::string& item, const char* ext) {
    return ToolRun::Slurp(std::string(PIMTLV_SAMPLES_DIR) + "/" + item + "." + ext);
}

PimDoc::DecodeResult DecodeText(const std::string& bytes, const PimDoc::DecodeOptions& o = {}) {
    return PimDoc::Decode(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), o);
}

std::string Text(const PimDoc::Bytes& b) {
    return std::string(b.begin(), b.end());
}

class SampleDocument : public testing::TestWithParam<std::string> {};

TEST_P(SampleDocument, IsWhatTheToolDecodesAndEncodesBackToTheSameBytes) {
    const std::string tlv = Sample(GetParam(), "tlv");
    const PimDoc::DecodeResult decoded = DecodeText(tlv);
    ASSERT_TRUE(decoded.ok) << decoded.error;
    ASSERT_EQ(decoded.documents.size(), 1u);
    EXPECT_EQ(decoded.documents[0].item, GetParam());

    const ToolRun::Result tool = ToolRun::Tool("decode -", tlv);
    ASSERT_EQ(tool.status, 0) << tool.err;
    EXPECT_EQ(PimDoc::ToJson(decoded.documents[0]), Json::parse(tool.out));

    EXPECT_EQ(Text(PimDoc::Encode(decoded.documents).bytes), tlv);
    // The sample's own description, read as the tool's encode reads it.
    const auto described = PimDoc::DocumentsFromJson(Json::parse(Sample(GetParam(), "json")));
    EXPECT_EQ(Text(PimDoc::Encode(described).bytes), tlv);
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleDocument, testing::ValuesIn(kItems));

TEST(Documents, AFileOfSeveralItemsDecodesItemByItemAndStopsAtAMalformedOne) {
    const std::string file = Sample("sms", "tlv") + Sample("event", "tlv") + Sample("note", "tlv");
    PimDoc::DecodeResult all = DecodeText(file);
    ASSERT_TRUE(all.ok) << all.error;
    ASSERT_EQ(all.documents.size(), 3u);
    EXPECT_EQ(all.documents[1].item, "event");
    EXPECT_EQ(Text(PimDoc::Encode(all.documents).bytes), file);

    // Every cut of the file: no crash, the items before the cut kept whole.
    for (std::size_t size = 0; size < file.size(); size += 7) {
        const PimDoc::DecodeResult cut = DecodeText(file.substr(0, size));
        if (size == 0) {
            EXPECT_TRUE(cut.ok);
            continue;
        }
        ASSERT_FALSE(cut.ok) << size;
        EXPECT_FALSE(cut.error.empty());
        for (std::size_t i = 0; i + 1 < cut.documents.size(); ++i) {
            EXPECT_TRUE(cut.documents[i].result.ok);
        }
    }

    // A damaged length inside an item: that item's document goes as far as
    // its parser read, and the error names where the item starts.
    std::string damaged = file;
    const std::size_t second = Sample("sms", "tlv").size();
    damaged[second + 7] = static_cast<char>(0x7F);
    const PimDoc::DecodeResult bad = DecodeText(damaged);
    EXPECT_FALSE(bad.ok);
    EXPECT_EQ(bad.errorOffset, second);
    ASSERT_EQ(bad.documents.size(), 2u);
    EXPECT_FALSE(bad.documents[1].result.ok);
}

TEST(Documents, ForcedKindAndCodeZeroTracesFollowTheOptions) {
    const std::string event = Sample("event", "tlv");
    PimDoc::DecodeOptions asTask;
    asTask.item = "task";
    const PimDoc::DecodeResult task = DecodeText(event, asTask);
    ASSERT_EQ(task.documents.size(), 1u);
    EXPECT_EQ(task.documents[0].item, "task");
    PimDoc::DecodeOptions unknown;
    unknown.item = "fax";
    EXPECT_THROW(DecodeText(event, unknown), PimDoc::DocumentError);

    PimDoc::DecodeOptions trace;
    trace.trace = true;
    const ToolRun::Result tool = ToolRun::Tool("decode --trace -", event);
    EXPECT_EQ(PimDoc::ToJson(DecodeText(event, trace).documents[0]), Json::parse(tool.out));
}

// Documents that cannot be replayed get the tool's sentence, naming the
// call and argument.
TEST(Documents, RefusedDocumentsSayWhichCallAndArgument) {
    struct Case {
        const char* json;
        const char* message;
    };
    const Case cases[] = {
        {R"({"item":"fax","calls":[]})", "unknown item 'fax'"},
        {R"({"item":"sms","calls":[{"op":"Fly"}]})", "call 0: unknown operation 'Fly'"},
        {R"({"item":"sms","calls":[{"op":"Body","args":{"txt":"a"}}]})",
         "call 0 (Body): unknown argument 'txt'"},
        {R"({"item":"sms","calls":[{"op":"Body","args":{"text":5}}]})",
         "call 0 (Body): argument 'text' must be a string or null"},
        {R"({"item":"sms","calls":[{"op":"Begin","args":{"instance":-1}}]})",
         "call 0 (Begin): argument 'instance' must be an integer from 0 to 4294967295"},
        {R"({"item":"sms","calls":[{"op":"StorageIndex","args":{"index":70000}}]})",
         "call 0 (StorageIndex): argument 'index' must be an integer from 0 to 65535"},
        {R"({"item":"contact","calls":[{"op":"Key","args":{"data":"0g"}}]})",
         "call 0 (Key): argument 'data' must be a hex string or null"},
        {R"({"item":"event","calls":[{"op":"Version","args":{"xParams":[{"nom":"a"}]}}]})",
         "call 0 (Version): argument 'xParams' has an unknown field 'nom'"},
        {R"({"item":"event","calls":[{"op":"LastModified","args":{"dateTime":"soon"}}]})",
         "call 0 (LastModified): argument 'dateTime' must be a date-time text such as "
         "\"20261122T093000Z\""},
        {R"({"item":"sms","calls":[{"op":"Begin","args":{"instance":1}}]})",
         "the creator could not finish the stream"},
    };
    for (const Case& c : cases) {
        try {
            PimDoc::Encode(PimDoc::DocumentsFromJson(Json::parse(c.json)));
            ADD_FAILURE() << c.json;
        } catch (const PimDoc::DocumentError& e) {
            EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos)
                << c.json << ": " << e.what();
        }
    }
}

TEST(Documents, ValuesBuiltInCodeEncodeWithoutJson) {
    PimDoc::Document sms;
    sms.item = "sms";
    sms.calls = {{"Begin", {{"instance", PimDoc::Value(std::int64_t{5})}}},
                 {"Body", {{"text", PimDoc::Value(std::string("hi"))}}},
                 {"OriginatorFName", {{"text", PimDoc::Value(std::string())}}},
                 {"End", {}}};
    const PimDoc::EncodeResult out = PimDoc::Encode(sms);
    ASSERT_EQ(out.refused.size(), 1u);  // an empty name is refused, and said so
    EXPECT_EQ(out.refused[0], "call 2 (OriginatorFName)");
    const PimDoc::DecodeResult back =
        PimDoc::Decode(out.bytes.data(), out.bytes.size(), PimDoc::DecodeOptions{});
    ASSERT_TRUE(back.ok);
    const PimDoc::Value* text = back.documents[0].calls[1].Find("text");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(*text->Get<std::string>(), "hi");
}

}  // namespace
