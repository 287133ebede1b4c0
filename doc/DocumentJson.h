#ifndef PIMTLV_DOC_DOCUMENTJSON_H
#define PIMTLV_DOC_DOCUMENTJSON_H

// The JSON form of item documents, as the pimtlv tool prints (decode) and
// reads (encode) them: {"item", "calls": [{"op", "args": {...}}],
// "diagnostics": [{"code", "text", "call"}], "result": {"ok", "consumed"}}.
// Data travels as one unbroken hex string. A separate layer, so that the
// documents themselves need no JSON library.

#include <nlohmann/json.hpp>
#include <vector>

#include "doc/Document.h"

namespace PimDoc {

using Json = nlohmann::ordered_json;

Json ToJson(const Value& value);
Json ToJson(const Document& document);

// Reads one document (its "item" and "calls"; "diagnostics" and "result"
// are read back when present). Throws DocumentError naming the call and
// argument of anything it cannot read.
Document DocumentFromJson(const Json& json);
// Call number index (for messages) of a document of item.
Call CallFromJson(const Json& json, std::size_t index, const ItemInfo& item);
// One document, or an array of them.
std::vector<Document> DocumentsFromJson(const Json& json);

}  // namespace PimDoc

#endif
