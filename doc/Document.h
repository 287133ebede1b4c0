#ifndef PIMTLV_DOC_DOCUMENT_H
#define PIMTLV_DOC_DOCUMENT_H

// Item documents: an item stream as data a program can read and change (the
// item kind, the receiver calls its parser makes, each with its operation
// name and named arguments, the parser's diagnostics and its result), and
// back to the stream by replaying the calls into the item's creator.
//
// Documents hold plain values (no JSON); PimDoc/DocumentJson.h turns them
// into the JSON form the pimtlv tool prints and reads. Nothing here keeps
// global state; every function may run on any thread at the same time.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "pimshared/common/ItemDescription.h"

namespace PimDoc {

using Bytes = std::vector<std::uint8_t>;

struct Value;
struct Field;
using List = std::vector<Value>;
using Record = std::vector<Field>;

// One argument value. Texts, date-times ("YYYYMMDDTHHMMSSZ") and unset
// pointers are Text or Null; integers, enumerations and flags Integer or
// Bool; data (a pointer and its length) Bytes or Null; lists List; records
// (an extension parameter, a mailbox) Record.
struct Value {
    std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Bytes, List, Record> data;

    Value() : data(nullptr) {}
    Value(std::nullptr_t) : data(nullptr) {}
    Value(bool v) : data(v) {}
    Value(std::int64_t v) : data(v) {}
    Value(double v) : data(v) {}  // never an argument's value: refused as such
    Value(std::string v) : data(std::move(v)) {}
    Value(Bytes v) : data(std::move(v)) {}
    Value(List v) : data(std::move(v)) {}
    Value(Record v) : data(std::move(v)) {}

    bool IsNull() const { return std::holds_alternative<std::nullptr_t>(data); }
    template <typename T>
    const T* Get() const {
        return std::get_if<T>(&data);
    }
};

struct Field {
    std::string name;
    Value value;
};

// One argument of a call, by the name the item's description gives it.
struct Argument {
    std::string name;
    Value value;
};

struct Call {
    std::string op;
    std::vector<Argument> args;  // a length that travels with its data has none

    // The argument called name, or null.
    const Value* Find(const std::string& name) const;
};

// A parser's TraceMessage; call is the index of the call that followed it.
struct Diagnostic {
    int code = 0;
    std::string text;
    std::size_t call = 0;
};

struct Result {
    bool ok = false;
    std::uint32_t consumed = 0;
};

struct Document {
    std::string item;  // "event", "task", "note", "contact", "email", "im", "sms", "calllist"
    std::vector<Call> calls;
    std::vector<Diagnostic> diagnostics;
    Result result;  // of decoding; ignored by Encode
};

// Data in the documents' text forms (JSON, Python): lower-case hex, two
// digits a byte.
std::string HexOf(const Bytes& bytes);
// Hex text back to bytes, white space anywhere ignored (as a person edits
// it); false for any other character or an odd number of digits.
bool BytesOfHex(const std::string& text, Bytes& out);

// A document that cannot be replayed (unknown item, operation or argument,
// a value of the wrong kind or out of range); what() says which call and
// argument, as the tool does.
class DocumentError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The item kinds and their operations, from the items' descriptions.
struct ItemInfo {
    const char* kind;
    const PimShared::Description::OperationInfo* operations;
    std::size_t operationCount;
    unsigned int root;                     // the stream's root node
    std::vector<unsigned int> components;  // the first node inside it (empty: any)
};
const std::vector<ItemInfo>& Items();
const ItemInfo* FindItem(const std::string& kind);
// The kind of the item whose root node is root and whose first inner node
// is component (hasComponent false: it has none); null when unknown.
const ItemInfo* DetectItem(unsigned int root, bool hasComponent, unsigned int component);

struct DecodeOptions {
    std::string item;    // decode every item as this kind; empty: tell from each item's frame
    bool trace = false;  // keep the calendar parsers' code-0 trace lines
};

struct DecodeResult {
    std::vector<Document> documents;  // every item, the failing one as far as its parser read it
    bool ok = true;                   // false: an item is malformed or cannot be cut or told
    std::size_t errorOffset = 0;      // where in the input the failing item starts
    std::string error;                // a sentence saying why
};

// The documents of every item of data (a file of items one after another).
DecodeResult Decode(const std::uint8_t* data, std::size_t size, const DecodeOptions& options = {});
// The same, handing each document to onDocument as soon as its item is read
// instead of keeping it (the result's documents stay empty): a large file
// need not be held as documents whole.
DecodeResult Decode(const std::uint8_t* data, std::size_t size, const DecodeOptions& options,
                    const std::function<void(Document&&)>& onDocument);
// The document of one item of the given kind (the whole of data).
Document DecodeItem(const ItemInfo& item, const std::uint8_t* data, std::size_t size,
                    bool trace = false);

struct EncodeResult {
    Bytes bytes;                       // every document's stream, one after another
    std::vector<std::string> refused;  // "call N (Op)" for each call a creator refused
};

// Replays calls into one item's creator as they come, so that a document
// need not be held whole.
class Encoder {
  public:
    explicit Encoder(const ItemInfo& item);
    ~Encoder();
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;

    // Makes call number index (for messages); false when the creator refused
    // it. Throws DocumentError for a call it cannot make.
    bool Call(const PimDoc::Call& call, std::size_t index);
    // The stream of the calls made. Throws DocumentError when the creator
    // cannot finish it.
    Bytes Finish();

    struct Session;

  private:
    std::unique_ptr<Session> m_session;
};

// Replays each document's calls into its item's creator. Throws
// DocumentError for a call it cannot make, or a stream a creator cannot
// finish.
EncodeResult Encode(const std::vector<Document>& documents);
EncodeResult Encode(const Document& document);

}  // namespace PimDoc

#endif
