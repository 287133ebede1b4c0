// An address book of 10,000 vCard 3.0 cards, a small photo in one card of
// ten: import into contact streams and export back to text, each beside the
// content-line layer alone reading and writing the same text, which is the
// floor the bridge stands on (the bridge's own layer, since no packaged vCard
// library fitted). And the merge of the book's streams, a tenth of them
// edited, back onto the book, beside the bridge's own import and export of it.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bridges/vcard/Vcard.h"
#include "bridges/vcard/private/ContentLine.h"

namespace {

using namespace PimBridge::Vcard;

const std::string& Book() {
    static const std::string book = [] {
        std::string photo;
        for (int i = 0; i < 12; ++i) photo += "iVBORw0KGgoAAAANSUhEUgAAABAAAAAQCAYAAAAf8/9hAAAA";
        std::string text;
        for (int i = 0; i < 10000; ++i) {
            const std::string n = std::to_string(i);
            text += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
            text += "FN:Person " + n + " Example\r\n";
            text += "N:Example;Person " + n + ";;Dr.;\r\n";
            text += "ORG:Example\\, Inc.;Research\r\n";
            text += "TITLE:Engineer\r\n";
            text += "item1.TEL;TYPE=work,voice,pref:+1 555 0100 " + n + "\r\n";
            text += "TEL;TYPE=cell:+1 555 0199 " + n + "\r\n";
            text += "EMAIL;TYPE=internet,pref:person" + n + "@example.org\r\n";
            text += "ADR;TYPE=home:;;" + n + " Main Street;Springfield;IL;62701;USA\r\n";
            text += "NOTE:Met at the conference\\, talked about folding\\nand escaping.\r\n";
            text += "BDAY:1980-01-01\r\nUID:urn:uuid:" + n + "\r\nX-ABLabel:colleague\r\n";
            if (i % 10 == 0) {
                text += "PHOTO;ENCODING=b;TYPE=PNG:";
                std::string line = photo;
                while (line.size() > 48) {
                    text += line.substr(0, 48) + "\r\n ";
                    line.erase(0, 48);
                }
                text += line + "\r\n";
            }
            text += "END:VCARD\r\n";
        }
        return text;
    }();
    return book;
}

// Built before any benchmark runs, so that none of them counts it.
const std::string& kBook = Book();
const std::vector<std::uint8_t> kStreams =
    PimBridge::ImportVcard(kBook.data(), kBook.size()).streams;

std::vector<ContentLine> Lines() {
    Reader reader(kBook.data(), kBook.size());
    std::vector<ContentLine> lines;
    ContentLine line;
    std::string error;
    while (reader.Next(line, error) == Reader::Result::Line) lines.push_back(line);
    return lines;
}

const std::vector<ContentLine> kLines = Lines();

void ContentLayerRead(benchmark::State& state) {
    ContentLine line;
    std::string error;
    for (auto _ : state) {
        Reader reader(kBook.data(), kBook.size());
        std::size_t values = 0;
        while (reader.Next(line, error) == Reader::Result::Line) values += line.value.size();
        benchmark::DoNotOptimize(values);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

void Import(benchmark::State& state) {
    for (auto _ : state) {
        const PimBridge::ImportResult r = PimBridge::ImportVcard(kBook.data(), kBook.size());
        if (!r.ok) state.SkipWithError(r.error.c_str());
        benchmark::DoNotOptimize(r.streams.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

// The layer writing the lines it read: parameters, escaped value, folding.
[[gnu::noinline]] void WriteLines(const std::vector<ContentLine>& lines, std::string& text) {
    std::string line;
    text.clear();
    for (const ContentLine& l : lines) {
        line.clear();
        if (!l.group.empty()) (line += l.group) += '.';
        line += l.name;
        for (const Param& p : l.params) AppendParam(line, p.name, p.values.front());
        line += ':';
        AppendEscaped(line, l.value, "\\\r\n,");
        AppendFolded(text, line);
    }
}

void ContentLayerWrite(benchmark::State& state) {
    std::string text;
    for (auto _ : state) {
        WriteLines(kLines, text);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

void Export(benchmark::State& state) {
    for (auto _ : state) {
        const PimBridge::ExportResult r = PimBridge::ExportVcard(kStreams.data(), kStreams.size());
        if (!r.ok) state.SkipWithError(r.error.c_str());
        benchmark::DoNotOptimize(r.text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

// The bridge's own round trip of the book: what a service that overwrote
// the original with the device's export would spend at the least.
void ImportAndExport(benchmark::State& state) {
    for (auto _ : state) {
        const PimBridge::ImportResult in = PimBridge::ImportVcard(kBook.data(), kBook.size());
        const PimBridge::ExportResult out =
            PimBridge::ExportVcard(in.streams.data(), in.streams.size());
        if (!in.ok || !out.ok) state.SkipWithError("round trip failed");
        benchmark::DoNotOptimize(out.text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

// The book's streams, a tenth of the cards edited (a new formatted name),
// merged back onto the book.
void MergeTenthEdited(benchmark::State& state) {
    std::string edited = kBook;
    for (int i = 0; i < 10000; i += 10) {
        const std::string from = "\nFN:Person " + std::to_string(i) + " Example\r\n";
        edited.replace(edited.find(from), from.size(),
                       "\nFN:Person " + std::to_string(i) + " Moved\r\n");
    }
    const PimBridge::ImportResult device = PimBridge::ImportVcard(edited.data(), edited.size());
    for (auto _ : state) {
        const PimBridge::MergeResult m = PimBridge::MergeVcard(
            kBook.data(), kBook.size(), device.streams.data(), device.streams.size());
        if (!m.ok || m.items.size() != 10000) state.SkipWithError("merge failed");
        benchmark::DoNotOptimize(m.text.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long long>(kBook.size()));
}

BENCHMARK(ContentLayerRead)->Unit(benchmark::kMillisecond);
BENCHMARK(Import)->Unit(benchmark::kMillisecond);
BENCHMARK(ContentLayerWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(Export)->Unit(benchmark::kMillisecond);
BENCHMARK(ImportAndExport)->Unit(benchmark::kMillisecond);
BENCHMARK(MergeTenthEdited)->Unit(benchmark::kMillisecond);

}  // namespace
