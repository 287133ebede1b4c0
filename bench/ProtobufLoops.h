#ifndef PIMTLV_BENCH_PROTOBUFLOOPS_H
#define PIMTLV_BENCH_PROTOBUFLOOPS_H

// The two Protocol Buffers yardsticks every item benchmark has: building a
// message and serialising it, and parsing those bytes back. Build fills a
// cleared message with the item's content and serialises it into out.

#include <benchmark/benchmark.h>

#include <string>

namespace PimTlvBench {

template <class Message, void (*Build)(Message&, std::string&)>
void ProtobufBuildAndSerialize(benchmark::State& state) {
    Message message;
    std::string out;
    for (auto _ : state) {
        message.Clear();
        Build(message, out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * out.size()));
}

template <class Message, void (*Build)(Message&, std::string&)>
void ProtobufParse(benchmark::State& state) {
    Message message;
    std::string bytes;
    Build(message, bytes);
    for (auto _ : state) {
        if (!message.ParseFromString(bytes)) {
            state.SkipWithError("parse failed");
            break;
        }
        benchmark::DoNotOptimize(message);
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}

}  // namespace PimTlvBench

#endif
