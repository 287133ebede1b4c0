#ifndef PIMTLV_TOOL_ITEMS_H
#define PIMTLV_TOOL_ITEMS_H

#include <memory>
#include <string>
#include <vector>

#include "Json.h"
#include "Stream.h"
#include "doc/Document.h"
#include "pimshared/common/ItemKind.h"

namespace PimTool {

// The name of a type ID in an item's context. parent is the enclosing node
// the meaning holds in, or kNoParent for anywhere in the item.
struct TypeName {
    unsigned int id;
    bool node;
    unsigned int parent;
    const char* name;
};

// What the tool knows of every item kind, whether or not this build has its
// codec: its names, and the library's kind, which the library tells from a
// stream by the same rule for every command and bridge.
struct Kind {
    const char* name;  // as --item takes it
    const char* title;
    PimShared::ItemKind kind;
};
const std::vector<Kind>& Kinds();
const Kind* FindKind(const std::string& name);
// Null when the frame tells no item.
const Kind* DetectKind(const ParserCreatorCollection::ItemFrame& frame);
std::string KindNames();  // "event, task, ..." for messages

// The result of running an item's parser.
struct ParseRun {
    bool ok = false;
    unsigned int consumed = 0;
    ParserCreatorCollection::TLVError error;  // why the walk stopped, when it did
};

// Replays calls into one item's creator as they come, so that a document
// need not be held whole: the calls of its JSON form, then the stream.
class EncodeSession {
  public:
    explicit EncodeSession(const char* kind);
    // Makes call number index (a JSON object of the decode form). A refused
    // call is listed in refused; throws UsageError for a call it cannot make.
    void Call(const Json& call, std::size_t index, std::vector<std::string>& refused);
    // The stream of the calls made. Throws UsageError when the creator cannot
    // finish it.
    Bytes Finish();

  private:
    const PimDoc::ItemInfo& m_item;
    PimDoc::Encoder m_encoder;
};

// One item's adapter between its codec and the tool.
struct ItemAdapter {
    const char* kind;
    std::vector<TypeName> names;
    std::vector<OpEntry> ops;
    // Runs the item's parser with a receiver that records into recorder.
    ParseRun (*decode)(ByteView data, Recorder& recorder);
    // Where a stream does not come back byte for byte after decode and
    // encode, by design; shown by the tool's help.
    const char* asymmetries;
};

// Each adapter file defines one of these; the registry refers only to those
// this build has.
extern const ItemAdapter kEventItem, kTaskItem, kNoteItem, kContactItem, kEmailItem, kImItem,
    kSmsItem, kCallListItem;

// The adapters this build has, in the order of Kinds().
const std::vector<const ItemAdapter*>& Adapters();
const ItemAdapter* FindAdapter(const std::string& kind);

// The constant name of a type ID in the context of an item (may be null,
// then only the frame's shared names are known); null when none.
const char* NameOf(const ItemAdapter* item, bool node, unsigned int parent, unsigned int id,
                   unsigned int depth);

// Runs Parser over data with Receiver (constructed from the recorder).
template <typename Parser, typename Receiver>
ParseRun DecodeWith(ByteView data, Recorder& recorder) {
    Receiver receiver(recorder);
    Parser parser(receiver);
    static const std::uint8_t empty = 0;
    const char* errorText = nullptr;
    ParseRun run;
    run.ok = parser.Parse(data.size == 0 ? &empty : data.data, static_cast<unsigned int>(data.size),
                          errorText, run.consumed);
    run.error = parser.LastError();
    return run;
}

// The same for an item of the library, as its description names it.
template <typename Item>
ParseRun DecodeItem(ByteView data, Recorder& recorder) {
    return DecodeWith<typename Item::Parser, typename Item::template ReceiverFor<Recorder>>(
        data, recorder);
}

}  // namespace PimTool

#endif
