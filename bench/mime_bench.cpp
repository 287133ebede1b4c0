// A mailbox of 1,000 messages, a third of them with a 64 KB attachment:
// imported into e-mail streams and exported back to an mbox, each beside
// what GMime alone takes for the same text in the same run (parsing every
// message; writing every parsed message as it was read, and again with every
// body decoded first, so that writing encodes it as an export must). Import
// and export are read as ratios against those.

#include <benchmark/benchmark.h>
#include <gmime/gmime.h>

#include <string>
#include <vector>

#include "bridges/mime/MimeBridge.h"

namespace {

std::string Base64Lines(const std::vector<unsigned char>& bytes) {
    gchar* encoded = g_base64_encode(bytes.data(), bytes.size());
    const std::string all(encoded);
    g_free(encoded);
    std::string lines;
    for (std::size_t i = 0; i < all.size(); i += 76) lines += all.substr(i, 76) + "\n";
    return lines;
}

const std::string& Mailbox() {
    static const std::string mbox = [] {
        std::vector<unsigned char> attachment(64 * 1024);
        for (std::size_t i = 0; i < attachment.size(); ++i)
            attachment[i] = static_cast<unsigned char>(i * 131u >> 3);
        const std::string encoded = Base64Lines(attachment);
        std::string text;
        for (int i = 0; i < 1000; ++i) {
            const std::string n = std::to_string(i);
            text += "From sender" + n + "@example.org Mon Mar  3 09:00:00 2025\n";
            text += "From: =?UTF-8?Q?J=C3=BCrgen_" + n + "?= <sender" + n + "@example.org>\n";
            text += "To: Team <team@example.org>, b" + n + "@example.org\n";
            text += "Cc: list: c@example.org, d@example.org;\n";
            text += "Subject: Weekly report number " + n + " with a longer subject line\n";
            text += "Date: Mon, 3 Mar 2025 09:00:00 +0100\n";
            text += "Message-ID: <msg" + n + "@example.org>\n";
            text += "References: <prev" + n + "@example.org>\n";
            text += "MIME-Version: 1.0\n";
            text += "Content-Type: multipart/mixed; boundary=\"b" + n + "\"\n\n";
            text += "--b" + n + "\nContent-Type: text/plain; charset=utf-8\n";
            text += "Content-Transfer-Encoding: quoted-printable\n\n";
            for (int line = 0; line < 20; ++line)
                text += "Gr=C3=BC=C3=9Fe, this is line " + std::to_string(line) + " of the text.\n";
            if (i % 3 == 0) {
                text += "--b" + n + "\nContent-Type: application/octet-stream; name=data.bin\n";
                text += "Content-Transfer-Encoding: base64\n";
                text += "Content-Disposition: attachment; filename=data.bin\n\n" + encoded;
            }
            text += "--b" + n + "--\n\n";
        }
        return text;
    }();
    return mbox;
}

// Every message GMime reads in the text.
std::vector<GMimeMessage*> ParseAll(const std::string& text) {
    GMimeStream* stream = g_mime_stream_mem_new_with_buffer(text.data(), text.size());
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    g_mime_parser_set_format(parser, GMIME_FORMAT_MBOX);
    std::vector<GMimeMessage*> messages;
    while (!g_mime_parser_eos(parser)) {
        GMimeMessage* message = g_mime_parser_construct_message(parser, nullptr);
        if (message == nullptr) break;
        messages.push_back(message);
    }
    g_object_unref(parser);
    g_object_unref(stream);
    return messages;
}

void Release(std::vector<GMimeMessage*>& messages) {
    for (GMimeMessage* m : messages) g_object_unref(m);
    messages.clear();
}

void Bytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
}

void GMimeParse(benchmark::State& state) {
    const std::string& text = Mailbox();
    for (auto _ : state) {
        std::vector<GMimeMessage*> messages = ParseAll(text);
        benchmark::DoNotOptimize(messages.size());
        Release(messages);
    }
    Bytes(state, text.size());
}

void Import(benchmark::State& state) {
    const std::string& text = Mailbox();
    for (auto _ : state) {
        PimBridge::ImportResult result = PimBridge::ImportMbox(text.data(), text.size());
        if (!result.ok || result.items.size() != 1000) state.SkipWithError("import failed");
        benchmark::DoNotOptimize(result.streams.data());
    }
    Bytes(state, text.size());
}

// Each part's content decoded into memory, as an export has it: writing
// then encodes every body again.
void DecodeContents(GMimeObject*, GMimeObject* part, gpointer) {
    if (!GMIME_IS_PART(part)) return;
    GMimeDataWrapper* content = g_mime_part_get_content(GMIME_PART(part));
    if (content == nullptr) return;
    GMimeStream* decoded = g_mime_stream_mem_new();
    g_mime_data_wrapper_write_to_stream(content, decoded);
    g_mime_stream_reset(decoded);
    GMimeDataWrapper* wrapper =
        g_mime_data_wrapper_new_with_stream(decoded, GMIME_CONTENT_ENCODING_DEFAULT);
    g_mime_part_set_content(GMIME_PART(part), wrapper);
    g_object_unref(wrapper);
    g_object_unref(decoded);
}

// GMime writing the parsed messages: as read, or with every body decoded.
void GMimeWrite(benchmark::State& state, bool decoded) {
    const std::string& text = Mailbox();
    std::vector<GMimeMessage*> messages = ParseAll(text);
    if (decoded) {
        for (GMimeMessage* m : messages) g_mime_message_foreach(m, DecodeContents, nullptr);
    }
    for (auto _ : state) {
        GMimeStream* out = g_mime_stream_mem_new();
        for (GMimeMessage* m : messages)
            g_mime_object_write_to_stream(GMIME_OBJECT(m), nullptr, out);
        benchmark::DoNotOptimize(g_mime_stream_length(out));
        g_object_unref(out);
    }
    Release(messages);
    Bytes(state, text.size());
}

void Export(benchmark::State& state) {
    const std::string& text = Mailbox();
    const PimBridge::ImportResult streams = PimBridge::ImportMbox(text.data(), text.size());
    for (auto _ : state) {
        PimBridge::ExportResult result =
            PimBridge::ExportMbox(streams.streams.data(), streams.streams.size());
        if (!result.ok) state.SkipWithError("export failed");
        benchmark::DoNotOptimize(result.text.data());
    }
    Bytes(state, text.size());
}

}  // namespace

// GMime is set up once, before anything runs; the bridge's own setup then
// finds it done.
int main(int argc, char** argv) {
    g_mime_init();
    benchmark::RegisterBenchmark("MIME/GMimeParse", GMimeParse)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MIME/Import", Import)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MIME/GMimeWrite", GMimeWrite, false)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MIME/GMimeWriteEncoding", GMimeWrite, true)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("MIME/Export", Export)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
