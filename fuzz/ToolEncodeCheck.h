#ifndef PIMTLV_FUZZ_TOOLENCODECHECK_H
#define PIMTLV_FUZZ_TOOLENCODECHECK_H

// Any bytes as the JSON document of the tool's encode, through the tool's own
// functions. Bad documents must be refused with a UsageError; a stream that
// encode writes must walk cleanly and decode without an error escaping. When
// the calls describe one item and the creator took them all, the item's
// parser must read the stream to its end without a diagnostic, and decode
// then encode must give back the same bytes, except where the item's parser
// and creator differ by design (kAsymmetries).

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <sstream>
#include <string>

#include "Commands.h"
#include "fuzz/TlvWalkCheck.h"

namespace PimTlvFuzz {

// Where a stream does not come back byte for byte after decode and encode,
// by design (the tool's help lists why): a document that uses one of these
// operations, or an empty item where that is not closed when read, is held
// only to a clean stream and a clean read.
struct Asymmetries {
    const char* item;
    bool emptyItemUnclosed;  // End right after Begin is read as a diagnostic
    const char* ops[12];
};
constexpr Asymmetries kAsymmetries[] = {
    // The parser reads the creator's one-byte send status as its text.
    {"event", true, {"SendStatus"}},
    {"task", true, {"SendStatus"}},
    {"note", true, {"SendStatus"}},
    // Only the numbers, texts and components the layout has room for.
    {"contact",
     false,
     {"XUCI", "XUID", "Handle", "Name", "Address", "Categories", "Agent", "Birthday", "Revision",
      "Timezone"}},
    // A priority byte is read as an unexpected element, a typed link as a
    // plain one.
    {"email", false, {"PriorityLevel", "BodyTypedLink"}},
    {"im", false, {"PriorityLevel", "BodyTypedLink"}},
    // One call per name part, the first and empty parts not carried.
    {"sms", false, {"OriginatorName"}},
};

namespace Detail {

// REQUIRES: calls describe one item (DescribesOneItem).
inline bool IsAsymmetric(const std::string& item, const PimTool::Json& calls) {
    for (const Asymmetries& a : kAsymmetries) {
        if (item != a.item) continue;
        if (a.emptyItemUnclosed && calls.size() == 2) return true;
        for (const PimTool::Json& call : calls) {
            const std::string op = call["op"].get<std::string>();
            for (const char* name : a.ops) {
                if (name != nullptr && op == name) return true;
            }
        }
    }
    return false;
}

// One item, Begin first and End last, its entities paired. The creators
// write the calls they are given and leave the pairing to the caller, so a
// document that closes an entity it never opened makes a stream its parser
// reads as another item: valid, but not what the document describes.
inline bool DescribesOneItem(const PimTool::Json& calls) {
    if (!calls.is_array() || calls.empty()) return false;
    long entities = 0;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const std::string op = calls[i]["op"].get<std::string>();
        const bool first = i == 0, last = i + 1 == calls.size();
        if ((op == "Begin") != first || (op == "End") != last) return false;
        if (op == "BeginEntity") ++entities;
        if (op == "EndEntity" && --entities < 0) return false;
    }
    return entities == 0;
}

// A fault text with what the tool said.
inline const char* Said(const std::string& fault, const std::exception& e) {
    static std::string text;
    text = fault + ": " + e.what();
    return text.c_str();
}

inline const char* Escaped(const char* where, const std::exception& e) {
    return Said(std::string(where) + " let an exception other than UsageError escape", e);
}

}  // namespace Detail

// How far a document got through the check.
enum class Reached {
    Refused,    // encode refused the document
    Stream,     // encode wrote a stream, which walked
    Read,       // ... which the item's parser read to its end
    SameBytes,  // ... without a diagnostic, and decode and encode gave it back
};

inline const char* CheckToolEncodeReaching(const std::uint8_t* data, std::size_t size,
                                           Reached& reached) {
    using namespace PimTool;
    reached = Reached::Refused;
    const std::string text(reinterpret_cast<const char*>(data), size);
    Encoded first;
    try {
        first = EncodeDocument(text);
    } catch (const UsageError&) {
        return nullptr;  // refused with a message: what bad input gets
    } catch (const std::exception& e) {
        return Detail::Escaped("encode", e);
    }

    const WalkResult walk = CheckWalk(first.bytes.data(), first.bytes.size(), 0);
    if (walk.fault != nullptr) return walk.fault;
    reached = Reached::Stream;
    // Without calls (or with all of them refused) the creators hand out an
    // empty stream, which holds no item to read back.
    if (first.bytes.empty()) return nullptr;
    if (!walk.ok) return "encode wrote a stream that does not walk to its end";

    Options options;
    options.item = first.item;
    std::ostringstream out, err;
    Json decoded;
    int status = 0;
    try {
        status = DecodeStream(options, first.bytes, out, err);
        decoded = Json::parse(out.str());
    } catch (const std::exception& e) {
        return Detail::Escaped("decode", e);
    }
    // After a refused call the stream holds what the creator could still
    // write (a property without its item, say), and calls that do not make
    // one item make what they say: it must walk, but it need not be an item
    // its parser reads.
    const Json calls = Json::parse(text)["calls"];
    if (!first.refused.empty() || !Detail::DescribesOneItem(calls)) return nullptr;
    if (status != 0) return "the item's parser did not read encode's stream to its end";
    if (decoded["result"]["consumed"].get<std::size_t>() != first.bytes.size()) {
        return "the item's parser stopped before the end of encode's stream";
    }

    reached = Reached::Read;
    if (Detail::IsAsymmetric(first.item, calls)) return nullptr;
    if (!decoded["diagnostics"].empty()) {
        static std::string fault;
        fault = "the item's parser reported a diagnostic on encode's stream: " +
                decoded["diagnostics"][0]["text"].get<std::string>();
        return fault.c_str();
    }
    Encoded second;
    try {
        second = EncodeDocument(out.str());
    } catch (const std::exception& e) {
        return Detail::Said("encode refused the document decode made of its stream", e);
    }
    if (second.bytes != first.bytes) {
        return "decode and encode did not give back encode's stream";
    }
    reached = Reached::SameBytes;
    return nullptr;
}

inline const char* CheckToolEncode(const std::uint8_t* data, std::size_t size) {
    Reached reached;
    return CheckToolEncodeReaching(data, size, reached);
}

// The body of the target: a fault is printed and aborts, which libFuzzer
// records as a crash.
inline int RunToolEncodeCheck(const std::uint8_t* data, std::size_t size) {
    if (const char* fault = CheckToolEncode(data, size)) {
        std::fprintf(stderr, "tool encode fault: %s\n", fault);
        std::abort();
    }
    return 0;
}

}  // namespace PimTlvFuzz

#endif
