#include "parsercreatorcollection/src/tlv/parser/TLVError.h"

#include "parsercreatorcollection/src/tlv/parser/TLVParser.h"
#include "parsercreatorcollection/src/tlv/parser/TLVWalk.h"

namespace ParserCreatorCollection {

namespace {

std::string ByteCount(std::size_t n) {
    return std::to_string(n) + (n == 1 ? " byte" : " bytes");
}

// A target that takes everything, for a walk that only looks for a fault;
// final, so that the walk binds its calls to the do-nothing ones statically.
class Silent final : public CTLVBase {
  public:
    static constexpr bool kReadsPosition = false;
};

class Explainer final : public CTLVParser {
  public:
    explicit Explainer(Silent& target) : CTLVParser(target), m_silent(target) {}
    bool Run(const void* data, unsigned int length) {
        const char* errorText = nullptr;
        unsigned int consumed = 0;
        return ParseInto(m_silent, data, length, errorText, consumed);
    }

  private:
    Silent& m_silent;
};

}  // namespace

bool TLVError::IsMalformed() const noexcept {
    return reason != Reason::None && reason != Reason::NoData && reason != Reason::OutOfMemory &&
           reason != Reason::TargetStopped;
}

std::string TLVError::Sentence(std::size_t base) const {
    const std::string where = inNode ? "node " + std::to_string(nodeTypeId) + " at offset " +
                                           std::to_string(base + nodeOffset)
                                     : std::string("the stream");
    const std::string what =
        hasElement ? ElementClassName(elementClass) + " " + std::to_string(typeId) : std::string();
    switch (reason) {
        case Reason::None:
            return std::string();
        case Reason::NoData:
            return "no data to walk";
        case Reason::WordCut:
            return "the element header needs 2 bytes, only " + ByteCount(left) + " left (in " +
                   where + ")";
        case Reason::LengthMissing:
            return "the length field is missing after the header word (in " + where + ")";
        case Reason::LengthNoCount:
            return "length field 0x80 gives no byte count (in " + where + ")";
        case Reason::LengthCut:
            // length holds the count announced; left counts from the element,
            // whose word and lead byte come first.
            return "length field announces " + ByteCount(length) + " of length, only " +
                   ByteCount(left > 3 ? left - 3 : 0) + " left (in " + where + ")";
        case Reason::WrongFixedSize:
            return what + " declares a value of " + ByteCount(length) +
                   "; the class takes exactly " + std::to_string(FixedValueSize(elementClass));
        case Reason::ValueTooLong:
            return what + " declares " + ByteCount(length) + ", more than the " + ByteCount(left) +
                   " left in " + where;
        case Reason::TextEmpty:
            return what + " has an empty value; a text needs its zero byte";
        case Reason::TextUnterminated:
            return what + " does not end with a zero byte";
        case Reason::OutOfMemory:
            return "out of memory at " + (hasElement ? what : std::string("an element"));
        case Reason::TargetStopped:
            return "the receiver stopped the walk at " + what;
    }
    return std::string();
}

TLVError ExplainTLV(const void* data, unsigned int length) {
    Silent target;
    Explainer explainer(target);
    explainer.Run(data, length);
    return explainer.LastError();
}

}  // namespace ParserCreatorCollection
